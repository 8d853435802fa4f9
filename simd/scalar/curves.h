/// Tone curves in plain C++, which also serves vectors without a byte shuffle.
#ifndef VLVK_SIMD_SCALAR_CURVES_H
#define VLVK_SIMD_SCALAR_CURVES_H

#include "simd/curve_loads.h"

namespace vlvk::VLVK_TARGET {

/// Pixels that storeCurved takes at once.
inline constexpr int kCurvedPixels = 2;
/// Writes pixels whose first three channels are the curves' entries for those of the source; the fourth stays, or is
/// 255 with kSolid. Both may be the same memory.
template <bool kSolid>
VLVK_INLINE void storeCurved(std::uint8_t* to, const std::uint8_t* from, const ChannelCurves& curves) {
  storeTwoCurved<kSolid>(to, from, curves);
}

}  // namespace vlvk::VLVK_TARGET

#endif
