/// Even and odd columns apart, on ARMv7 with NEON and on AArch64: what the box sums of pairs gain, and samples.
#ifndef VLVK_SIMD_NEON_PAIRS_H
#define VLVK_SIMD_NEON_PAIRS_H

#include "simd/inside_columns.h"
#include "simd/neon.h"

namespace vlvk::VLVK_TARGET {

struct PairSteps {
  U32x8 pair;
  U32x8 odd;
};

#if defined(__aarch64__)

inline constexpr InsideColumns kInsideColumns = kInPairsOneStepLate;

VLVK_INLINE uint32x4_t upperHalves(int16x8_t v) {
  return vreinterpretq_u32_s32(vshrq_n_s32(vreinterpretq_s32_s16(v), 16));
}
VLVK_INLINE PairSteps pairSteps(const std::uint16_t* entering, const std::uint16_t* leaving) {
  const int16x8_t low = vreinterpretq_s16_u16(vsubq_u16(vld1q_u16(entering), vld1q_u16(leaving)));
  const int16x8_t high = vreinterpretq_s16_u16(vsubq_u16(vld1q_u16(entering + 8), vld1q_u16(leaving + 8)));
  return {{vreinterpretq_u32_s32(vpaddlq_s16(low)), vreinterpretq_u32_s32(vpaddlq_s16(high))},
          {upperHalves(low), upperHalves(high)}};
}
/// Structure loads would take fewer instructions and more time.
VLVK_INLINE PairSteps pairSteps(const std::uint32_t* entering, const std::uint32_t* leaving) {
  const U32x8 low = sub(load8(entering), load8(leaving));
  const U32x8 high = sub(load8(entering + 8), load8(leaving + 8));
  return {{vpaddq_u32(low.low, low.high), vpaddq_u32(high.low, high.high)},
          {vuzp2q_u32(low.low, low.high), vuzp2q_u32(high.low, high.high)}};
}

/// Bytes kFirst, kFirst + 2, kFirst + 4, kFirst + 6, widened: an index past the end gives 0.
template <std::uint32_t kFirst>
VLVK_INLINE uint32x4_t everySecond4(U8x16 v) {
  constexpr std::uint32_t k = 0xFFFFFF00U + kFirst;
  constexpr std::uint32_t kIndices[] = {k, k + 2, k + 4, k + 6};
  return vreinterpretq_u32_u8(vqtbl1q_u8(v.v, vreinterpretq_u8_u32(vld1q_u32(kIndices))));
}
VLVK_INLINE F32x8 toFloatEven(U8x16 v) {
  return {vcvtq_f32_u32(everySecond4<0>(v)), vcvtq_f32_u32(everySecond4<8>(v))};
}

#else

inline constexpr InsideColumns kInsideColumns = kInPairs;

/// The odd columns' steps, not widened yet.
struct NarrowPairSteps {
  U32x8 pair;
  int16x8_t odd;
};
VLVK_INLINE U32x8 sub(U32x8 a, int16x8_t b) {
  const int32x4_t low = vsubw_s16(vreinterpretq_s32_u32(a.low), vget_low_s16(b));
  const int32x4_t high = vsubw_s16(vreinterpretq_s32_u32(a.high), vget_high_s16(b));
  return {vreinterpretq_u32_s32(low), vreinterpretq_u32_s32(high)};
}
VLVK_INLINE NarrowPairSteps pairSteps(const std::uint16_t* entering, const std::uint16_t* leaving) {
  const uint16x8x2_t in = vld2q_u16(entering);
  const uint16x8x2_t out = vld2q_u16(leaving);
  const int16x8_t even = vreinterpretq_s16_u16(vsubq_u16(in.val[0], out.val[0]));
  const int16x8_t odd = vreinterpretq_s16_u16(vsubq_u16(in.val[1], out.val[1]));
  const int32x4_t low = vaddl_s16(vget_low_s16(even), vget_low_s16(odd));
  const int32x4_t high = vaddl_s16(vget_high_s16(even), vget_high_s16(odd));
  return {{vreinterpretq_u32_s32(low), vreinterpretq_u32_s32(high)}, odd};
}
/// The differences of 4 even and of the 4 odd columns among them.
VLVK_INLINE int32x4x2_t splitSteps8(const std::uint32_t* entering, const std::uint32_t* leaving) {
  const uint32x4x2_t in = vld2q_u32(entering);
  const uint32x4x2_t out = vld2q_u32(leaving);
  return {{vsubq_s32(vreinterpretq_s32_u32(in.val[0]), vreinterpretq_s32_u32(out.val[0])),
           vsubq_s32(vreinterpretq_s32_u32(in.val[1]), vreinterpretq_s32_u32(out.val[1]))}};
}
/// With their sign, g++ does not rearrange these sums.
VLVK_INLINE PairSteps pairSteps(const std::uint32_t* entering, const std::uint32_t* leaving) {
  const int32x4x2_t low = splitSteps8(entering, leaving);
  const int32x4x2_t high = splitSteps8(entering + 8, leaving + 8);
  return {{vreinterpretq_u32_s32(vaddq_s32(low.val[0], low.val[1])),
           vreinterpretq_u32_s32(vaddq_s32(high.val[0], high.val[1]))},
          {vreinterpretq_u32_s32(low.val[1]), vreinterpretq_u32_s32(high.val[1])}};
}

VLVK_INLINE F32x8 toFloatEven(U8x16 v) {
  return toFloat(vandq_u16(vreinterpretq_u16_u8(v.v), vdupq_n_u16(0xFF)));
}

#endif

VLVK_INLINE F32x8 toFloatOdd(U8x16 v) {
  return toFloat(vshrq_n_u16(vreinterpretq_u16_u8(v.v), 8));
}

}  // namespace vlvk::VLVK_TARGET

#endif
