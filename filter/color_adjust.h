/// Colour adjustment of a band: colour table, tone curves, or the green curve alone.
#ifndef VLVK_FILTER_COLOR_ADJUST_H
#define VLVK_FILTER_COLOR_ADJUST_H

#include <optional>

#include <vlvk/CFastEdgePreserved.h>
#include "rows/pixel_orders.h"
#include "simd/channel_curves.h"

namespace vlvk {

/// The filter's tone curves, prepared for pixels of that order. Empty where the settings of `p` do not use all of them.
/// All bands of a frame have the same: preparing them takes a good part of the time for a few rows of pixels.
std::optional<ChannelCurves> curvesFor(const CFastEdgePreserved& filter, const CFastEdgePreserved::MakeupParam& p,
                                       PixelOrder order);

/// What colorAdjustRGBA and BGRA do, with curves that are ready.
///
/// @param curves  those of curvesFor
void adjustColors(const CFastEdgePreserved& filter, const CFastEdgePreserved::MakeupParam& p, PixelOrder order,
                  const std::optional<ChannelCurves>& curves);

}  // namespace vlvk

#endif
