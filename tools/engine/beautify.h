/// What the engine makes of one picture, and what it takes for skin there.
#ifndef VLVK_TOOLS_ENGINE_BEAUTIFY_H
#define VLVK_TOOLS_ENGINE_BEAUTIFY_H

#include <cstdint>
#include <vector>

#include "tools/engine/engine.h"
#include "tools/picture/picture.h"

namespace vlvk::tool {

/// A picture as a frame.
VlvkFrame frameOf(const Picture& picture);

/// Luma and chroma of a picture as it is, in the layout of nv21Frame.
std::vector<std::uint8_t> nv21Of(const Picture& source, VlvkRange range);

/// The beautified picture, of the same size, with alpha and profile of `source`. Throws Error when memory runs out.
Picture beautify(const Picture& source, const Look& look);

/// A heat map of the weight with which the engine mixes smoothed into unsmoothed luma, which depends on chroma and mask
/// alone: black where none of the smoothing shows, over violet, red and orange to pale yellow where all of it does. Of
/// the size of `source`, opaque and without profile.
Picture weightMap(const Picture& source, const Mask& mask);

}  // namespace vlvk::tool

#endif
