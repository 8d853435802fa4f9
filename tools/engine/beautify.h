/// What the engine makes of one picture, and what it takes for skin there.
#ifndef VLVK_TOOLS_ENGINE_BEAUTIFY_H
#define VLVK_TOOLS_ENGINE_BEAUTIFY_H

#include "tools/engine/engine.h"
#include "tools/picture/picture.h"

namespace vlvk::tool {

/// A picture as a frame.
VlvkFrame frameOf(const Picture& picture);

/// The beautified picture, of the same size, with alpha and profile of `source`. Throws Error when memory runs out.
Picture beautify(const Picture& source, const Look& look);

/// A heat map of the weight with which the engine mixes smoothed into unsmoothed luma, which depends on the chroma
/// alone: black where none of the smoothing shows, over violet, red and orange to pale yellow where all of it does. Of
/// the size of `source`, opaque and without profile.
Picture weightMap(const Picture& source);

}  // namespace vlvk::tool

#endif
