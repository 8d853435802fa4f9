/// The vector vocabulary on ARMv7 with NEON and on AArch64. scalar.h tells what each operation means.
#ifndef VLVK_SIMD_NEON_H
#define VLVK_SIMD_NEON_H

#include <arm_neon.h>

#include <cstdint>

#include "simd/channel_weights.h"
#include "simd/inline.h"

namespace vlvk::VLVK_TARGET {

struct U8x8 {
  uint8x8_t v;
};
struct U8x16 {
  uint8x16_t v;
};
struct U16x8 {
  uint16x8_t v;
};
struct I16x8 {
  int16x8_t v;
};
/// Lanes 0 .. 3 and 4 .. 7.
struct U32x8 {
  uint32x4_t low;
  uint32x4_t high;
};
struct F32x8 {
  float32x4_t low;
  float32x4_t high;
};
/// Columns 0 .. 7 and 8 .. 15 of each row: halves are what most operations take and give.
struct U8x16x2 {
  uint8x8_t low[2];
  uint8x8_t high[2];
};
struct I16x8x2 {
  int16x8_t row[2];
};
/// Pixels are kept with their channels apart, as the structure loads deliver them.
struct Pixels16 {
  uint8x16x4_t channels;
};
struct Pixels8 {
  uint8x8x4_t channels;
};

// Memory.

VLVK_INLINE U8x8 loadU8x8(const std::uint8_t* from) {
  return {vld1_u8(from)};
}
VLVK_INLINE U8x16 loadU8x16(const std::uint8_t* from) {
  return {vld1q_u8(from)};
}
VLVK_INLINE U16x8 load8(const std::uint16_t* from) {
  return {vld1q_u16(from)};
}
VLVK_INLINE U32x8 load8(const std::uint32_t* from) {
  return {vld1q_u32(from), vld1q_u32(from + 4)};
}
VLVK_INLINE F32x8 load8(const float* from) {
  return {vld1q_f32(from), vld1q_f32(from + 4)};
}
VLVK_INLINE uint32x4_t loadLow4(const std::uint64_t* from) {
  return vcombine_u32(vmovn_u64(vld1q_u64(from)), vmovn_u64(vld1q_u64(from + 2)));
}
VLVK_INLINE U32x8 loadLow8(const std::uint64_t* from) {
  return {loadLow4(from), loadLow4(from + 4)};
}
VLVK_INLINE void store(std::uint8_t* to, U8x8 v) {
  vst1_u8(to, v.v);
}
VLVK_INLINE void store(std::uint8_t* to, U8x16 v) {
  vst1q_u8(to, v.v);
}
VLVK_INLINE void store(std::uint16_t* to, U16x8 v) {
  vst1q_u16(to, v.v);
}
VLVK_INLINE void store(std::uint32_t* to, U32x8 v) {
  vst1q_u32(to, v.low);
  vst1q_u32(to + 4, v.high);
}
VLVK_INLINE void store(float* to, F32x8 v) {
  vst1q_f32(to, v.low);
  vst1q_f32(to + 4, v.high);
}
VLVK_INLINE U16x8 splat8(std::uint16_t value) {
  return {vdupq_n_u16(value)};
}
VLVK_INLINE U32x8 splat8(std::uint32_t value) {
  return {vdupq_n_u32(value), vdupq_n_u32(value)};
}
VLVK_INLINE F32x8 splat8(float value) {
  return {vdupq_n_f32(value), vdupq_n_f32(value)};
}

// Running sums.

VLVK_INLINE U16x8 addDifference(U16x8 sums, U8x8 a, U8x8 b) {
  return {vaddq_u16(sums.v, vsubl_u8(a.v, b.v))};
}
/// As (a + b) * (a - b), whose factors fit signed 16 bits.
VLVK_INLINE U32x8 addProducts(U32x8 sums, uint16x8_t plus, uint16x8_t minus) {
  const int16x8_t a = vreinterpretq_s16_u16(plus);
  const int16x8_t b = vreinterpretq_s16_u16(minus);
  const int32x4_t low = vmlal_s16(vreinterpretq_s32_u32(sums.low), vget_low_s16(a), vget_low_s16(b));
  const int32x4_t high = vmlal_s16(vreinterpretq_s32_u32(sums.high), vget_high_s16(a), vget_high_s16(b));
  return {vreinterpretq_u32_s32(low), vreinterpretq_u32_s32(high)};
}
VLVK_INLINE U32x8 addSquareDifference(U32x8 sums, U8x8 a, U8x8 b) {
  return addProducts(sums, vaddl_u8(a.v, b.v), vsubl_u8(a.v, b.v));
}
VLVK_INLINE U32x8 differenceWiden(U16x8 a, U16x8 b) {
  return {vsubl_u16(vget_low_u16(a.v), vget_low_u16(b.v)), vsubl_u16(vget_high_u16(a.v), vget_high_u16(b.v))};
}
VLVK_INLINE U32x8 add(U32x8 a, U32x8 b) {
  return {vaddq_u32(a.low, b.low), vaddq_u32(a.high, b.high)};
}
VLVK_INLINE U32x8 sub(U32x8 a, U32x8 b) {
  return {vsubq_u32(a.low, b.low), vsubq_u32(a.high, b.high)};
}

VLVK_INLINE U32x8 joinHalves(U32x8 a, U32x8 b) {
  return {a.low, b.high};
}
VLVK_INLINE uint32x4_t prefixSum4(uint32x4_t v) {
  const uint32x4_t zero = vdupq_n_u32(0);
  v = vaddq_u32(v, vextq_u32(zero, v, 3));
  return vaddq_u32(v, vextq_u32(zero, v, 2));
}
VLVK_INLINE uint32x4_t splatLast4(uint32x4_t v) {
  return vdupq_lane_u32(vget_high_u32(v), 1);
}
VLVK_INLINE U32x8 prefixSum(U32x8 before, U32x8 v) {
  const uint32x4_t low = vaddq_u32(before.low, prefixSum4(v.low));
  return {low, vaddq_u32(prefixSum4(v.high), splatLast4(low))};
}
VLVK_INLINE U32x8 splatLast(U32x8 v) {
  const uint32x4_t last = splatLast4(v.high);
  return {last, last};
}

// Single precision. ARMv7 flushes denormals to zero here.

VLVK_INLINE F32x8 toFloat(U32x8 v) {
  return {vcvtq_f32_u32(v.low), vcvtq_f32_u32(v.high)};
}
VLVK_INLINE F32x8 toFloatBelow2To31(U32x8 v) {
  return toFloat(v);
}
VLVK_INLINE F32x8 toFloat(uint16x8_t v) {
  return {vcvtq_f32_u32(vmovl_u16(vget_low_u16(v))), vcvtq_f32_u32(vmovl_u16(vget_high_u16(v)))};
}
VLVK_INLINE F32x8 toFloat(U8x8 v) {
  return toFloat(vmovl_u8(v.v));
}
VLVK_INLINE F32x8 add(F32x8 a, F32x8 b) {
  return {vaddq_f32(a.low, b.low), vaddq_f32(a.high, b.high)};
}
VLVK_INLINE F32x8 sub(F32x8 a, F32x8 b) {
  return {vsubq_f32(a.low, b.low), vsubq_f32(a.high, b.high)};
}
VLVK_INLINE F32x8 mul(F32x8 a, F32x8 b) {
  return {vmulq_f32(a.low, b.low), vmulq_f32(a.high, b.high)};
}
VLVK_INLINE F32x8 min(F32x8 a, F32x8 b) {
  return {vminq_f32(a.low, b.low), vminq_f32(a.high, b.high)};
}
VLVK_INLINE F32x8 max(F32x8 a, F32x8 b) {
  return {vmaxq_f32(a.low, b.low), vmaxq_f32(a.high, b.high)};
}
/// The multiply-accumulate instructions of ARMv7 round the product; AArch64 takes two instructions.
VLVK_INLINE F32x8 addProduct(F32x8 sum, F32x8 a, F32x8 b) {
  return {vmlaq_f32(sum.low, a.low, b.low), vmlaq_f32(sum.high, a.high, b.high)};
}
VLVK_INLINE F32x8 subProduct(F32x8 sum, F32x8 a, F32x8 b) {
  return {vmlsq_f32(sum.low, a.low, b.low), vmlsq_f32(sum.high, a.high, b.high)};
}
VLVK_INLINE F32x8 reciprocalEstimateOfNormal(F32x8 v) {
  return {vrecpeq_f32(v.low), vrecpeq_f32(v.high)};
}

#if defined(__aarch64__)
/// AArch64 answers denormals and the two largest exponents with what ARMv7 flushes.
VLVK_INLINE float32x4_t estimate4(float32x4_t v) {
  const uint32x4_t infinity = vdupq_n_u32(0x7F800000U);
  const uint32x4_t bits = vreinterpretq_u32_f32(v);
  const uint32x4_t magnitude = vandq_u32(bits, vdupq_n_u32(0x7FFFFFFFU));
  const uint32x4_t sign = veorq_u32(bits, magnitude);
  uint32x4_t result = vreinterpretq_u32_f32(vrecpeq_f32(v));
  result = vbslq_u32(vcltq_u32(magnitude, vdupq_n_u32(1U << 23U)), vorrq_u32(sign, infinity), result);
  result = vbslq_u32(vcgeq_u32(magnitude, vdupq_n_u32(253U << 23U)), sign, result);
  return vreinterpretq_f32_u32(vbslq_u32(vcgtq_u32(magnitude, infinity), vdupq_n_u32(0x7FC00000U), result));
}
VLVK_INLINE F32x8 reciprocalEstimate(F32x8 v) {
  return {estimate4(v.low), estimate4(v.high)};
}
#else
VLVK_INLINE F32x8 reciprocalEstimate(F32x8 v) {
  return reciprocalEstimateOfNormal(v);
}
#endif

VLVK_INLINE uint16x8_t lowHalves(uint32x4_t low, uint32x4_t high) {
  return vuzpq_u16(vreinterpretq_u16_u32(low), vreinterpretq_u16_u32(high)).val[0];
}
VLVK_INLINE uint16x8_t trunc8(F32x8 v) {
  return lowHalves(vcvtq_u32_f32(v.low), vcvtq_u32_f32(v.high));
}
VLVK_INLINE U8x8 truncToLowBytes(F32x8 v) {
  return {vmovn_u16(trunc8(v))};
}
VLVK_INLINE U8x16 truncToLowBytes(F32x8 even, F32x8 odd) {
  return {vreinterpretq_u8_u16(vsliq_n_u16(trunc8(even), trunc8(odd), 8))};
}

// Skin weights.

VLVK_INLINE U8x16 splatPair16(std::uint8_t first, std::uint8_t second) {
  return {vreinterpretq_u8_u16(vdupq_n_u16(static_cast<std::uint16_t>(first | second << 8)))};
}
VLVK_INLINE U8x16 absDifference(U8x16 a, U8x16 b) {
  return {vabdq_u8(a.v, b.v)};
}

#if defined(__aarch64__)
struct Table64 {
  uint8x16x4_t entries;
};
VLVK_INLINE Table64 loadTable64(const std::uint8_t* from) {
  return {vld1q_u8_x4(from)};
}
VLVK_INLINE U8x16 lookup(const Table64& table, U8x16 index) {
  return {vqtbl4q_u8(table.entries, index.v)};
}
#else
struct Table64 {
  uint8x8x4_t low;
  uint8x8x4_t high;
};
VLVK_INLINE uint8x8x4_t loadTable32(const std::uint8_t* from) {
  return {{vld1_u8(from), vld1_u8(from + 8), vld1_u8(from + 16), vld1_u8(from + 24)}};
}
VLVK_INLINE Table64 loadTable64(const std::uint8_t* from) {
  return {loadTable32(from), loadTable32(from + 32)};
}
/// A lookup gives 0 outside its 32 entries; the extending one keeps what is there.
VLVK_INLINE uint8x8_t lookup8(const Table64& table, uint8x8_t index) {
  return vtbx4_u8(vtbl4_u8(table.low, index), table.high, vsub_u8(index, vdup_n_u8(32)));
}
VLVK_INLINE U8x16 lookup(const Table64& table, U8x16 index) {
  return {vcombine_u8(lookup8(table, vget_low_u8(index.v)), lookup8(table, vget_high_u8(index.v)))};
}
#endif

VLVK_INLINE U8x16 mulPairsShift6(U8x16 v) {
  const uint16x8_t pairs = vreinterpretq_u16_u8(v.v);
  const uint16x8_t product = vmull_u8(vmovn_u16(pairs), vshrn_n_u16(pairs, 8));
  const uint8x8_t weight = vshrn_n_u16(product, 6);
  const uint8x8x2_t both = vzip_u8(weight, weight);
  return {vcombine_u8(both.val[0], both.val[1])};
}
VLVK_INLINE uint8x8_t mix8(uint8x8_t a, uint8x8_t b, uint8x8_t rest, uint8x8_t weight) {
  return vshrn_n_u16(vmlal_u8(vmull_u8(a, rest), b, weight), 6);
}
VLVK_INLINE U8x16x2 mixBy64ths(U8x16x2 a, U8x16x2 b, U8x16 weight) {
  const uint8x16_t rest = vsubq_u8(vdupq_n_u8(64), weight.v);
  U8x16x2 result;
  for (int r = 0; r < 2; ++r) {
    result.low[r] = mix8(a.low[r], b.low[r], vget_low_u8(rest), vget_low_u8(weight.v));
    result.high[r] = mix8(a.high[r], b.high[r], vget_high_u8(rest), vget_high_u8(weight.v));
  }
  return result;
}

// Row pairs.

VLVK_INLINE U8x16x2 loadRows(const std::uint8_t* from0, const std::uint8_t* from1) {
  const uint8x16_t row0 = vld1q_u8(from0);
  const uint8x16_t row1 = vld1q_u8(from1);
  return {{vget_low_u8(row0), vget_low_u8(row1)}, {vget_high_u8(row0), vget_high_u8(row1)}};
}
VLVK_INLINE void storeRows(std::uint8_t* to0, std::uint8_t* to1, U8x16x2 v) {
  vst1q_u8(to0, vcombine_u8(v.low[0], v.high[0]));
  vst1q_u8(to1, vcombine_u8(v.low[1], v.high[1]));
}
VLVK_INLINE U8x16x2 splatRows(std::uint8_t value) {
  const uint8x8_t v = vdup_n_u8(value);
  return {{v, v}, {v, v}};
}
VLVK_INLINE I16x8x2 bothRows(I16x8 v) {
  return {{v.v, v.v}};
}

// Chroma terms.

/// First and second bytes apart, as the structure load delivers them.
struct ChromaPairs {
  uint8x8x2_t bytes;
};
VLVK_INLINE ChromaPairs loadChromaPairs(const std::uint8_t* from) {
  return {vld2_u8(from)};
}
VLVK_INLINE I16x8 splatI16(std::int16_t value) {
  return {vdupq_n_s16(value)};
}
/// sum + factor * v; the sign of the factor picks the instruction.
template <int kFactor>
VLVK_INLINE uint16x8_t mulAccumulate(uint16x8_t sum, uint8x8_t v) {
  if constexpr (kFactor == 0) {
    return sum;
  } else if constexpr (kFactor < 0) {
    return vmlsl_u8(sum, v, vdup_n_u8(static_cast<std::uint8_t>(-kFactor)));
  } else {
    return vmlal_u8(sum, v, vdup_n_u8(static_cast<std::uint8_t>(kFactor)));
  }
}
template <int kFirst, int kSecond>
VLVK_INLINE I16x8 weightedPairs(const ChromaPairs& v, I16x8 offset) {
  uint16x8_t sum = vreinterpretq_u16_s16(offset.v);
  sum = mulAccumulate<kFirst>(sum, v.bytes.val[0]);
  return {vreinterpretq_s16_u16(mulAccumulate<kSecond>(sum, v.bytes.val[1]))};
}
struct I16x16 {
  I16x8 low;
  I16x8 high;
};
VLVK_INLINE I16x16 duplicateEach(I16x8 v) {
#if defined(__aarch64__)
  return {{vzip1q_s16(v.v, v.v)}, {vzip2q_s16(v.v, v.v)}};
#else
  I16x16 both{v, v};  // one instruction for both halves; g++ 12 takes two for the intrinsic
  asm("vzip.16 %q0, %q1" : "+w"(both.low.v), "+w"(both.high.v));
  return both;
#endif
}
VLVK_INLINE I16x16 duplicateFours(I16x8 v) {
  const int16x4_t low = vget_low_s16(v.v);
  const int16x4_t high = vget_high_s16(v.v);
  return {{vcombine_s16(low, low)}, {vcombine_s16(high, high)}};
}

// Luma of two rows to pixels.

VLVK_INLINE int16x8_t mulWiden8(uint8x8_t v, std::uint8_t factor) {
  return vreinterpretq_s16_u16(vmull_u8(v, vdup_n_u8(factor)));
}
VLVK_INLINE I16x8x2 mulWidenLow(U8x16x2 v, std::uint8_t factor) {
  return {{mulWiden8(v.low[0], factor), mulWiden8(v.low[1], factor)}};
}
VLVK_INLINE I16x8x2 mulWidenHigh(U8x16x2 v, std::uint8_t factor) {
  return {{mulWiden8(v.high[0], factor), mulWiden8(v.high[1], factor)}};
}
VLVK_INLINE I16x8x2 add(I16x8x2 a, I16x8x2 b) {
  return {{vaddq_s16(a.row[0], b.row[0]), vaddq_s16(a.row[1], b.row[1])}};
}
VLVK_INLINE I16x8x2 addSat(I16x8x2 a, I16x8x2 b) {
  return {{vqaddq_s16(a.row[0], b.row[0]), vqaddq_s16(a.row[1], b.row[1])}};
}
template <int kBits>
VLVK_INLINE U8x16x2 roundShiftNarrowSat(I16x8x2 low, I16x8x2 high) {
  return {{vqrshrun_n_s16(low.row[0], kBits), vqrshrun_n_s16(low.row[1], kBits)},
          {vqrshrun_n_s16(high.row[0], kBits), vqrshrun_n_s16(high.row[1], kBits)}};
}
VLVK_INLINE void storePixels8(std::uint8_t* to, uint8x8_t c0, uint8x8_t c1, uint8x8_t c2, uint8x8_t c3) {
  const uint8x8x4_t pixels{{c0, c1, c2, c3}};
  vst4_u8(to, pixels);
}
VLVK_INLINE void storePixels(std::uint8_t* to0, std::uint8_t* to1, U8x16x2 c0, U8x16x2 c1, U8x16x2 c2, U8x16x2 c3) {
  storePixels8(to0, c0.low[0], c1.low[0], c2.low[0], c3.low[0]);
  storePixels8(to0 + 32, c0.high[0], c1.high[0], c2.high[0], c3.high[0]);
  storePixels8(to1, c0.low[1], c1.low[1], c2.low[1], c3.low[1]);
  storePixels8(to1 + 32, c0.high[1], c1.high[1], c2.high[1], c3.high[1]);
}

// Pixels to luma and chroma.

VLVK_INLINE Pixels16 loadPixels16(const std::uint8_t* from) {
  return {vld4q_u8(from)};
}
VLVK_INLINE Pixels8 evenPixels(const Pixels16& v) {
  Pixels8 even;
  for (int c = 0; c < 4; ++c)
    even.channels.val[c] = vmovn_u16(vreinterpretq_u16_u8(v.channels.val[c]));
  return even;
}
/// The sum of three products. One that is not subtracted comes first, so that there is nothing to add it to.
template <ChannelWeights k>
VLVK_INLINE uint16x8_t weightedSum(uint8x8_t c0, uint8x8_t c1, uint8x8_t c2) {
  static_assert(k.c0 >= 0 || k.c2 >= 0);
  if constexpr (k.c0 < 0) {
    return weightedSum<ChannelWeights{k.c2, k.c1, k.c0, k.bias}>(c2, c1, c0);
  } else {
    const uint16x8_t sum = vmull_u8(c0, vdup_n_u8(static_cast<std::uint8_t>(k.c0)));
    return mulAccumulate<k.c2>(mulAccumulate<k.c1>(sum, c1), c2);
  }
}
/// The upper halves of the lanes of a + biasA and b + biasB.
VLVK_INLINE uint8x16_t addNarrowHigh(uint16x8_t a, uint16x8_t biasA, uint16x8_t b, uint16x8_t biasB) {
#if defined(__aarch64__)
  return vaddhn_high_u16(vaddhn_u16(a, biasA), b, biasB);
#else
  uint8x16_t both;  // g++ 12 would join the halves with moves
  asm("vaddhn.i16 %e0, %q1, %q2\n\tvaddhn.i16 %f0, %q3, %q4" : "=&w"(both) : "w"(a), "w"(biasA), "w"(b), "w"(biasB));
  return both;
#endif
}
VLVK_INLINE uint16x8_t biasLanes(const ChannelWeights& k) {
  return vdupq_n_u16(static_cast<std::uint16_t>(k.bias));
}
template <ChannelWeights k>
VLVK_INLINE U8x16 weightedChannels(const Pixels16& v) {
  const uint8x16x4_t& c = v.channels;
  const uint16x8_t low = weightedSum<k>(vget_low_u8(c.val[0]), vget_low_u8(c.val[1]), vget_low_u8(c.val[2]));
  const uint16x8_t high = weightedSum<k>(vget_high_u8(c.val[0]), vget_high_u8(c.val[1]), vget_high_u8(c.val[2]));
  return {addNarrowHigh(low, biasLanes(k), high, biasLanes(k))};
}
template <ChannelWeights kFirst, ChannelWeights kSecond>
VLVK_INLINE void storeWeightedPairs(std::uint8_t* to, const Pixels8& v) {
  const uint8x8x4_t& c = v.channels;
  const uint8x16_t both = addNarrowHigh(weightedSum<kFirst>(c.val[0], c.val[1], c.val[2]), biasLanes(kFirst),
                                        weightedSum<kSecond>(c.val[0], c.val[1], c.val[2]), biasLanes(kSecond));
  const uint8x8x2_t pairs{{vget_low_u8(both), vget_high_u8(both)}};
  vst2_u8(to, pairs);
}
/// The 18 bits of an index are the three digits of 6 bits; its bytes are made of them one by one and interleaved.
template <int c0, int c2>
VLVK_INLINE void storeColorIndices(std::uint32_t* to, const Pixels16& v) {
  const uint8x16_t digit0 = vshrq_n_u8(v.channels.val[c0], 2);
  const uint8x16_t digit1 = vshrq_n_u8(v.channels.val[1], 2);
  uint8x16x4_t bytes;
  bytes.val[0] = vsliq_n_u8(digit0, digit1, 6);                                            // 1 1 0 0 0 0 0 0
  bytes.val[1] = vsliq_n_u8(vshrq_n_u8(digit1, 2), vshrq_n_u8(v.channels.val[c2], 2), 4);  // 2 2 2 2 1 1 1 1
  bytes.val[2] = vshrq_n_u8(v.channels.val[c2], 6);
  bytes.val[3] = vdupq_n_u8(0);
  vst4q_u8(reinterpret_cast<std::uint8_t*>(to), bytes);
}

// Pixels changed, and chroma in pairs and planes.

VLVK_INLINE U8x16 subSat(U8x16 a, U8x16 b) {
  return {vqsubq_u8(a.v, b.v)};
}
VLVK_INLINE void store(std::uint8_t* to, const Pixels16& v) {
  vst4q_u8(to, v.channels);
}
VLVK_INLINE Pixels16 shiftedChannels(const Pixels16& v, U8x16 up, U8x16 down) {
  Pixels16 shifted = v;
  for (int c = 0; c < 3; ++c)
    shifted.channels.val[c] = vqsubq_u8(vqaddq_u8(v.channels.val[c], up.v), down.v);
  return shifted;
}
VLVK_INLINE Pixels16 withOpaqueAlpha(const Pixels16& v) {
  Pixels16 solid = v;
  solid.channels.val[3] = vdupq_n_u8(255);
  return solid;
}
VLVK_INLINE Pixels8 averagedBlocks(const Pixels16& upper, const Pixels16& lower) {
  Pixels8 blocks;
  for (int c = 0; c < 4; ++c) {
    const uint16x8_t rows = vreinterpretq_u16_u8(vrhaddq_u8(upper.channels.val[c], lower.channels.val[c]));
    blocks.channels.val[c] = vrhadd_u8(vmovn_u16(rows), vshrn_n_u16(rows, 8));
  }
  return blocks;
}
VLVK_INLINE U8x16 interleaved(U8x8 a, U8x8 b) {
  const uint8x8x2_t zipped = vzip_u8(a.v, b.v);
  return {vcombine_u8(zipped.val[0], zipped.val[1])};
}
VLVK_INLINE U8x8 evenBytes(U8x16 v) {
  return {vmovn_u16(vreinterpretq_u16_u8(v.v))};
}
VLVK_INLINE U8x8 oddBytes(U8x16 v) {
  return {vshrn_n_u16(vreinterpretq_u16_u8(v.v), 8)};
}

}  // namespace vlvk::VLVK_TARGET

#include "simd/blend_by_16.h"     // IWYU pragma: export
#include "simd/neon/columns.h"    // IWYU pragma: export
#include "simd/neon/curves.h"     // IWYU pragma: export
#include "simd/neon/pairs.h"      // IWYU pragma: export
#include "simd/neon/quotients.h"  // IWYU pragma: export

#endif
