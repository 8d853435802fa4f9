/// Quotients and their conversion to bytes, on ARMv7 with NEON and on AArch64.
#ifndef VLVK_SIMD_NEON_QUOTIENTS_H
#define VLVK_SIMD_NEON_QUOTIENTS_H

#include "simd/half_up.h"
#include "simd/neon.h"

namespace vlvk::VLVK_TARGET {

#if defined(__aarch64__)
VLVK_INLINE float32x4_t div4(float32x4_t a, float32x4_t b) {
  return vdivq_f32(a, b);
}
#else
/// There is no division of vectors.
VLVK_INLINE float32x4_t div4(float32x4_t a, float32x4_t b) {
  const float32x4_t quotients = {a[0] / b[0], a[1] / b[1], a[2] / b[2], a[3] / b[3]};
  return quotients;
}
#endif
VLVK_INLINE F32x8 div(F32x8 a, F32x8 b) {
  return {div4(a.low, b.low), div4(a.high, b.high)};
}
VLVK_INLINE uint32x4_t roundHalfUp4(float32x4_t v) {
  const uint32x4_t whole = vandq_u32(vcltq_f32(v, vdupq_n_f32(kWholeBelow)), vcgeq_f32(v, vdupq_n_f32(kSmallest)));
  const int32x4_t truncated = vcvtq_s32_f32(vaddq_f32(v, vdupq_n_f32(kAlmostHalf)));
  return vsubq_u32(vreinterpretq_u32_s32(truncated), whole);
}
VLVK_INLINE U8x8 roundHalfUpToLowBytes(F32x8 v) {
  return {vmovn_u16(lowHalves(roundHalfUp4(v.low), roundHalfUp4(v.high)))};
}

}  // namespace vlvk::VLVK_TARGET

#endif
