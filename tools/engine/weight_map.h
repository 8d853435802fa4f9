/// What the engine takes for skin, as a picture.
#ifndef VLVK_TOOLS_ENGINE_WEIGHT_MAP_H
#define VLVK_TOOLS_ENGINE_WEIGHT_MAP_H

#include "tools/options/look.h"
#include "tools/picture/picture.h"

namespace vlvk::tool {

/// A heat map of the weight with which a filter of that look mixes smoothed into unsmoothed luma: black where none of
/// the smoothing shows, over violet, red and orange to pale yellow where all of it does. Of the size of `source`,
/// opaque and without profile. The last width % 8 columns have a weight too, although frames are not smoothed there.
Picture weightMap(const Picture& source, const Look& look);

}  // namespace vlvk::tool

#endif
