/// Tone curves by table instructions, with NEON.
#ifndef VLVK_SIMD_NEON_CURVES_H
#define VLVK_SIMD_NEON_CURVES_H

#if defined(__aarch64__)

#include <cstdint>

#include "simd/channel_curves.h"
#include "simd/neon.h"

namespace vlvk::VLVK_TARGET {

/// An extending lookup keeps what is there outside its 64 entries.
VLVK_INLINE uint8x16_t lookUpCurve(const PreparedCurve& curve, uint8x16_t index) {
  const uint8x16_t quarter = vdupq_n_u8(64);
  uint8x16_t found = vqtbl4q_u8(vld1q_u8_x4(curve.entry), index);
  for (int from = 64; from < 256; from += 64) {
    index = vsubq_u8(index, quarter);
    found = vqtbx4q_u8(found, vld1q_u8_x4(curve.entry + from), index);
  }
  return found;
}

inline constexpr int kCurvedPixels = 16;
template <bool kSolid>
VLVK_INLINE void storeCurved(std::uint8_t* to, const std::uint8_t* from, const ChannelCurves& curves) {
  uint8x16x4_t pixels = vld4q_u8(from);
#pragma GCC unroll 3
  for (int c = 0; c < 3; ++c)
    pixels.val[c] = lookUpCurve(curves.channel[c], pixels.val[c]);
  if constexpr (kSolid) pixels.val[3] = vdupq_n_u8(255);
  vst4q_u8(to, pixels);
}

}  // namespace vlvk::VLVK_TARGET

#else
// Table instructions of 32 bytes take more than loads.
#include "simd/scalar/curves.h"  // IWYU pragma: export
#endif

#endif
