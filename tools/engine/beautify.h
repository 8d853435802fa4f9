/// The engine applied to one picture.
#ifndef VLVK_TOOLS_ENGINE_BEAUTIFY_H
#define VLVK_TOOLS_ENGINE_BEAUTIFY_H

#include "tools/options/look.h"
#include "tools/picture/picture.h"

namespace vlvk::tool {

/// The beautified picture, of the same size, with alpha and profile of `source`. Colours go through video chroma (one
/// pair for 2 x 2 pixels) on the way. Throws Error when memory runs out.
Picture beautify(const Picture& source, const Look& look);

}  // namespace vlvk::tool

#endif
