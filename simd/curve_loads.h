/// Tone curves by loads, for targets without a byte shuffle and for curves that have no steps.
#ifndef VLVK_SIMD_CURVE_LOADS_H
#define VLVK_SIMD_CURVE_LOADS_H

#include <cstdint>

#include "simd/channel_curves.h"
#include "simd/inline.h"

namespace vlvk::VLVK_TARGET {

/// See storeCurved: two pixels. Bytes are loaded and stored one by one, as taking words apart and putting them together
/// costs more; all loads come before the stores, which might change what is loaded as far as the compiler can tell.
template <bool kSolid>
VLVK_INLINE void storeTwoCurved(std::uint8_t* to, const std::uint8_t* from, const ChannelCurves& curves) {
  std::uint8_t found[2][3];
#pragma GCC unroll 2
  for (int i = 0; i < 2; ++i) {
#pragma GCC unroll 3
    for (int c = 0; c < 3; ++c)
      found[i][c] = curves.channel[c].entry[from[4 * i + c]];
  }
#pragma GCC unroll 2
  for (int i = 0; i < 2; ++i) {
#pragma GCC unroll 3
    for (int c = 0; c < 3; ++c)
      to[4 * i + c] = found[i][c];
    to[4 * i + 3] = kSolid ? std::uint8_t{255} : from[4 * i + 3];
  }
}

}  // namespace vlvk::VLVK_TARGET

#endif
