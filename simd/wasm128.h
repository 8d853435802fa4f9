/// The vector vocabulary in WebAssembly modules with 128-bit instructions. scalar.h tells what each operation means.
///
/// Engines compile these instructions once more. Chosen are those that one instruction of x86-64 and of ARM does: above
/// all shuffles stay within what engines recognise (interleaving, even and odd lanes).
#ifndef VLVK_SIMD_WASM128_H
#define VLVK_SIMD_WASM128_H

#include <wasm_simd128.h>

#include <cstdint>

#include "simd/channel_weights.h"
#include "simd/inline.h"

namespace vlvk::VLVK_TARGET {

/// The lower 8 bytes count.
struct U8x8 {
  v128_t v;
};
struct U8x16 {
  v128_t v;
};
struct U16x8 {
  v128_t v;
};
struct I16x8 {
  v128_t v;
};
/// Lanes 0 .. 3 and 4 .. 7.
struct U32x8 {
  v128_t low;
  v128_t high;
};
struct F32x8 {
  v128_t low;
  v128_t high;
};
struct U8x16x2 {
  v128_t row[2];
};
struct I16x8x2 {
  v128_t row[2];
};
struct Pixels16 {
  v128_t four[4];
};
struct Pixels8 {
  v128_t four[2];
};

// Memory.

VLVK_INLINE U8x8 loadU8x8(const std::uint8_t* from) {
  return {wasm_v128_load64_zero(from)};
}
VLVK_INLINE U8x16 loadU8x16(const std::uint8_t* from) {
  return {wasm_v128_load(from)};
}
VLVK_INLINE U16x8 load8(const std::uint16_t* from) {
  return {wasm_v128_load(from)};
}
VLVK_INLINE U32x8 load8(const std::uint32_t* from) {
  return {wasm_v128_load(from), wasm_v128_load(from + 4)};
}
VLVK_INLINE F32x8 load8(const float* from) {
  return {wasm_v128_load(from), wasm_v128_load(from + 4)};
}
VLVK_INLINE v128_t evenWords(v128_t a, v128_t b) {
  return wasm_i32x4_shuffle(a, b, 0, 2, 4, 6);
}
VLVK_INLINE v128_t oddWords(v128_t a, v128_t b) {
  return wasm_i32x4_shuffle(a, b, 1, 3, 5, 7);
}
VLVK_INLINE U32x8 loadLow8(const std::uint64_t* from) {
  return {evenWords(wasm_v128_load(from), wasm_v128_load(from + 2)),
          evenWords(wasm_v128_load(from + 4), wasm_v128_load(from + 6))};
}
VLVK_INLINE void store(std::uint8_t* to, U8x8 v) {
  wasm_v128_store64_lane(to, v.v, 0);
}
VLVK_INLINE void store(std::uint8_t* to, U8x16 v) {
  wasm_v128_store(to, v.v);
}
VLVK_INLINE void store(std::uint16_t* to, U16x8 v) {
  wasm_v128_store(to, v.v);
}
VLVK_INLINE void store(std::uint32_t* to, U32x8 v) {
  wasm_v128_store(to, v.low);
  wasm_v128_store(to + 4, v.high);
}
VLVK_INLINE void store(float* to, F32x8 v) {
  wasm_v128_store(to, v.low);
  wasm_v128_store(to + 4, v.high);
}
VLVK_INLINE U16x8 splat8(std::uint16_t value) {
  return {wasm_u16x8_splat(value)};
}
VLVK_INLINE U32x8 splat8(std::uint32_t value) {
  return {wasm_u32x4_splat(value), wasm_u32x4_splat(value)};
}
VLVK_INLINE F32x8 splat8(float value) {
  return {wasm_f32x4_splat(value), wasm_f32x4_splat(value)};
}

// Running sums.

VLVK_INLINE v128_t widen(U8x8 v) {
  return wasm_u16x8_extend_low_u8x16(v.v);
}
VLVK_INLINE U32x8 widen(U16x8 v) {
  return {wasm_u32x4_extend_low_u16x8(v.v), wasm_u32x4_extend_high_u16x8(v.v)};
}
VLVK_INLINE U16x8 addDifference(U16x8 sums, U8x8 a, U8x8 b) {
  return {wasm_i16x8_sub(wasm_i16x8_add(sums.v, widen(a)), widen(b))};
}
VLVK_INLINE U32x8 add(U32x8 a, U32x8 b) {
  return {wasm_i32x4_add(a.low, b.low), wasm_i32x4_add(a.high, b.high)};
}
VLVK_INLINE U32x8 sub(U32x8 a, U32x8 b) {
  return {wasm_i32x4_sub(a.low, b.low), wasm_i32x4_sub(a.high, b.high)};
}
/// As (a + b) * (a - b), whose factors fit signed 16 bits.
VLVK_INLINE U32x8 addSquareDifference(U32x8 sums, U8x8 a, U8x8 b) {
  const v128_t plus = wasm_i16x8_add(widen(a), widen(b));
  const v128_t minus = wasm_i16x8_sub(widen(a), widen(b));
  return add(sums, {wasm_i32x4_extmul_low_i16x8(plus, minus), wasm_i32x4_extmul_high_i16x8(plus, minus)});
}
VLVK_INLINE U32x8 differenceWiden(U16x8 a, U16x8 b) {
  return sub(widen(a), widen(b));
}
VLVK_INLINE U32x8 joinHalves(U32x8 a, U32x8 b) {
  return {a.low, b.high};
}
VLVK_INLINE v128_t prefixSum4(v128_t v) {
  const v128_t zero = wasm_i32x4_const_splat(0);
  v = wasm_i32x4_add(v, wasm_i32x4_shuffle(zero, v, 3, 4, 5, 6));
  return wasm_i32x4_add(v, wasm_i32x4_shuffle(zero, v, 2, 3, 4, 5));
}
VLVK_INLINE v128_t splatLast4(v128_t v) {
  return wasm_i32x4_shuffle(v, v, 3, 3, 3, 3);
}
VLVK_INLINE U32x8 prefixSum(U32x8 v) {
  const v128_t low = prefixSum4(v.low);
  return {low, wasm_i32x4_add(prefixSum4(v.high), splatLast4(low))};
}
VLVK_INLINE U32x8 splatLast(U32x8 v) {
  const v128_t last = splatLast4(v.high);
  return {last, last};
}

inline constexpr bool kSplitRowsIntoRuns = true;

struct PairSteps {
  U32x8 pair;
  U32x8 odd;
};
VLVK_INLINE PairSteps pairSteps(const std::uint16_t* entering, const std::uint16_t* leaving) {
  const v128_t low = wasm_i16x8_sub(wasm_v128_load(entering), wasm_v128_load(leaving));
  const v128_t high = wasm_i16x8_sub(wasm_v128_load(entering + 8), wasm_v128_load(leaving + 8));
  return {{wasm_i32x4_extadd_pairwise_i16x8(low), wasm_i32x4_extadd_pairwise_i16x8(high)},
          {wasm_i32x4_shr(low, 16), wasm_i32x4_shr(high, 16)}};
}
VLVK_INLINE PairSteps pairSteps(const std::uint32_t* entering, const std::uint32_t* leaving) {
  const U32x8 low = sub(load8(entering), load8(leaving));
  const U32x8 high = sub(load8(entering + 8), load8(leaving + 8));
  const U32x8 odd = {oddWords(low.low, low.high), oddWords(high.low, high.high)};
  return {add({evenWords(low.low, low.high), evenWords(high.low, high.high)}, odd), odd};
}

// Single precision.

VLVK_INLINE F32x8 add(F32x8 a, F32x8 b) {
  return {wasm_f32x4_add(a.low, b.low), wasm_f32x4_add(a.high, b.high)};
}
VLVK_INLINE F32x8 sub(F32x8 a, F32x8 b) {
  return {wasm_f32x4_sub(a.low, b.low), wasm_f32x4_sub(a.high, b.high)};
}
VLVK_INLINE F32x8 mul(F32x8 a, F32x8 b) {
  return {wasm_f32x4_mul(a.low, b.low), wasm_f32x4_mul(a.high, b.high)};
}
/// The pseudo-minimum is a comparison and a choice, without the cases of NaN and of zeros with a sign.
VLVK_INLINE F32x8 min(F32x8 a, F32x8 b) {
  return {wasm_f32x4_pmin(b.low, a.low), wasm_f32x4_pmin(b.high, a.high)};
}
VLVK_INLINE F32x8 max(F32x8 a, F32x8 b) {
  return {wasm_f32x4_pmax(b.low, a.low), wasm_f32x4_pmax(b.high, a.high)};
}
VLVK_INLINE F32x8 addProduct(F32x8 sum, F32x8 a, F32x8 b) {
  return add(sum, mul(a, b));
}
VLVK_INLINE F32x8 subProduct(F32x8 sum, F32x8 a, F32x8 b) {
  return sub(sum, mul(a, b));
}
VLVK_INLINE F32x8 toFloat(U32x8 v) {
  return {wasm_f32x4_convert_u32x4(v.low), wasm_f32x4_convert_u32x4(v.high)};
}
VLVK_INLINE F32x8 toFloatBelow2To31(U32x8 v) {
  return {wasm_f32x4_convert_i32x4(v.low), wasm_f32x4_convert_i32x4(v.high)};
}
VLVK_INLINE F32x8 toFloat(U8x8 v) {
  return toFloatBelow2To31(widen(U16x8{widen(v)}));
}
VLVK_INLINE F32x8 toFloatEven(U8x16 v) {
  return toFloatBelow2To31(widen(U16x8{wasm_v128_and(v.v, wasm_i16x8_const_splat(0xFF))}));
}
VLVK_INLINE F32x8 toFloatOdd(U8x16 v) {
  return toFloatBelow2To31(widen(U16x8{wasm_u16x8_shr(v.v, 8)}));
}

/// One division gives the estimate: the reciprocal of the middle of the input's fraction class, rounded to 8 fraction
/// bits.
VLVK_INLINE v128_t estimateOfNormal4(v128_t v) {
  const v128_t classBits = wasm_i32x4_const_splat(~0x7FFF);
  const v128_t half = wasm_i32x4_const_splat(0x4000);
  const v128_t middle = wasm_v128_or(wasm_v128_and(v, classBits), half);
  const v128_t exact = wasm_f32x4_div(wasm_f32x4_const_splat(1.0F), middle);
  return wasm_v128_and(wasm_i32x4_add(exact, half), classBits);
}
VLVK_INLINE F32x8 reciprocalEstimateOfNormal(F32x8 v) {
  return {estimateOfNormal4(v.low), estimateOfNormal4(v.high)};
}
VLVK_INLINE v128_t estimate4(v128_t v) {
  const v128_t infinity = wasm_i32x4_const_splat(0x7F800000);
  const v128_t magnitude = wasm_v128_and(v, wasm_i32x4_const_splat(0x7FFFFFFF));
  const v128_t sign = wasm_v128_xor(v, magnitude);
  const v128_t tiny = wasm_i32x4_lt(magnitude, wasm_i32x4_const_splat(1 << 23));
  const v128_t large = wasm_i32x4_ge(magnitude, wasm_i32x4_const_splat(253 << 23));
  const v128_t notANumber = wasm_i32x4_gt(magnitude, infinity);
  v128_t result = estimateOfNormal4(v);
  result = wasm_v128_bitselect(wasm_v128_or(sign, infinity), result, tiny);
  result = wasm_v128_bitselect(sign, result, large);
  return wasm_v128_bitselect(wasm_i32x4_const_splat(0x7FC00000), result, notANumber);
}
VLVK_INLINE F32x8 reciprocalEstimate(F32x8 v) {
  return {estimate4(v.low), estimate4(v.high)};
}

VLVK_INLINE U8x8 truncToLowBytes(F32x8 v) {
  const v128_t byte = wasm_i32x4_const_splat(0xFF);
  const v128_t words = wasm_i16x8_narrow_i32x4(wasm_v128_and(wasm_u32x4_trunc_sat_f32x4(v.low), byte),
                                               wasm_v128_and(wasm_u32x4_trunc_sat_f32x4(v.high), byte));
  return {wasm_u8x16_narrow_i16x8(words, words)};
}
/// v rounded down, in the low bits: beyond 2^23 a float's last bit is 1. Conversions saturate, which takes long.
VLVK_INLINE v128_t floorBits(v128_t v) {
  return wasm_f32x4_add(wasm_f32x4_floor(v), wasm_f32x4_const_splat(8388608.0F));
}
VLVK_INLINE v128_t lowBytePairs(v128_t even, v128_t odd) {
  const v128_t low = wasm_v128_and(floorBits(even), wasm_i32x4_const_splat(0xFF));
  const v128_t high = wasm_v128_and(wasm_i32x4_shl(floorBits(odd), 8), wasm_i32x4_const_splat(0xFF00));
  return wasm_v128_or(low, high);
}
VLVK_INLINE U8x16 truncToLowBytes(F32x8 even, F32x8 odd) {
  return {wasm_u16x8_narrow_i32x4(lowBytePairs(even.low, odd.low), lowBytePairs(even.high, odd.high))};
}

// Skin weights.

VLVK_INLINE U8x16 splatPair16(std::uint8_t first, std::uint8_t second) {
  return {wasm_u16x8_splat(static_cast<std::uint16_t>(first | second << 8))};
}
VLVK_INLINE U8x16 absDifference(U8x16 a, U8x16 b) {
  return {wasm_v128_or(wasm_u8x16_sub_sat(a.v, b.v), wasm_u8x16_sub_sat(b.v, a.v))};
}
struct Table64 {
  v128_t sixteen[4];
};
VLVK_INLINE Table64 loadTable64(const std::uint8_t* from) {
  return {{wasm_v128_load(from), wasm_v128_load(from + 16), wasm_v128_load(from + 32), wasm_v128_load(from + 48)}};
}
/// A lookup gives 0 outside its 16 entries.
VLVK_INLINE U8x16 lookup(const Table64& table, U8x16 index) {
  v128_t found = wasm_i8x16_swizzle(table.sixteen[0], index.v);
  for (int i = 1; i < 4; ++i) {
    const v128_t from = wasm_i8x16_sub(index.v, wasm_i8x16_splat(static_cast<std::int8_t>(16 * i)));
    found = wasm_v128_or(found, wasm_i8x16_swizzle(table.sixteen[i], from));
  }
  return {found};
}
VLVK_INLINE U8x16 mulPairsShift6(U8x16 v) {
  const v128_t first = wasm_v128_and(v.v, wasm_i16x8_const_splat(0xFF));
  const v128_t second = wasm_u16x8_shr(v.v, 8);
  const v128_t weight = wasm_u16x8_shr(wasm_i16x8_mul(first, second), 6);
  return {wasm_v128_or(weight, wasm_i16x8_shl(weight, 8))};
}

/// Factors of 16 columns, widened once for both rows.
struct WideBytes {
  v128_t low;
  v128_t high;
};
VLVK_INLINE WideBytes wideBytes(v128_t v) {
  return {wasm_u16x8_extend_low_u8x16(v), wasm_u16x8_extend_high_u8x16(v)};
}
VLVK_INLINE v128_t mix8(v128_t a, v128_t aFactors, v128_t b, v128_t bFactors) {
  return wasm_u16x8_shr(wasm_i16x8_add(wasm_i16x8_mul(a, aFactors), wasm_i16x8_mul(b, bFactors)), 6);
}
VLVK_INLINE U8x16x2 mixBy64ths(U8x16x2 a, U8x16x2 b, U8x16 weight) {
  const WideBytes share = wideBytes(weight.v);
  const WideBytes rest = wideBytes(wasm_i8x16_sub(wasm_i8x16_const_splat(64), weight.v));
  U8x16x2 result;
  for (int r = 0; r < 2; ++r) {
    const WideBytes from = wideBytes(a.row[r]);
    const WideBytes to = wideBytes(b.row[r]);
    result.row[r] = wasm_u8x16_narrow_i16x8(mix8(from.low, rest.low, to.low, share.low),
                                            mix8(from.high, rest.high, to.high, share.high));
  }
  return result;
}

// Row pairs.

VLVK_INLINE U8x16x2 loadRows(const std::uint8_t* from0, const std::uint8_t* from1) {
  return {{wasm_v128_load(from0), wasm_v128_load(from1)}};
}
VLVK_INLINE void storeRows(std::uint8_t* to0, std::uint8_t* to1, U8x16x2 v) {
  wasm_v128_store(to0, v.row[0]);
  wasm_v128_store(to1, v.row[1]);
}
VLVK_INLINE U8x16x2 splatRows(std::uint8_t value) {
  return {{wasm_u8x16_splat(value), wasm_u8x16_splat(value)}};
}
VLVK_INLINE I16x8x2 bothRows(I16x8 v) {
  return {{v.v, v.v}};
}
VLVK_INLINE I16x8x2 add(I16x8x2 a, I16x8x2 b) {
  return {{wasm_i16x8_add(a.row[0], b.row[0]), wasm_i16x8_add(a.row[1], b.row[1])}};
}
VLVK_INLINE I16x8x2 addSat(I16x8x2 a, I16x8x2 b) {
  return {{wasm_i16x8_add_sat(a.row[0], b.row[0]), wasm_i16x8_add_sat(a.row[1], b.row[1])}};
}
VLVK_INLINE I16x8x2 mulWidenLow(U8x16x2 v, std::uint8_t factor) {
  const v128_t factors = wasm_u16x8_splat(factor);
  return {{wasm_i16x8_mul(wasm_u16x8_extend_low_u8x16(v.row[0]), factors),
           wasm_i16x8_mul(wasm_u16x8_extend_low_u8x16(v.row[1]), factors)}};
}
VLVK_INLINE I16x8x2 mulWidenHigh(U8x16x2 v, std::uint8_t factor) {
  const v128_t factors = wasm_u16x8_splat(factor);
  return {{wasm_i16x8_mul(wasm_u16x8_extend_high_u8x16(v.row[0]), factors),
           wasm_i16x8_mul(wasm_u16x8_extend_high_u8x16(v.row[1]), factors)}};
}
/// The saturating addition cannot change a sum that matters: 32767 stays far above 255.
template <int kBits>
VLVK_INLINE U8x16x2 roundShiftNarrowSat(I16x8x2 low, I16x8x2 high) {
  const v128_t half = wasm_i16x8_const_splat(1 << (kBits - 1));
  U8x16x2 result;
  for (int r = 0; r < 2; ++r) {
    result.row[r] = wasm_u8x16_narrow_i16x8(wasm_i16x8_shr(wasm_i16x8_add_sat(low.row[r], half), kBits),
                                            wasm_i16x8_shr(wasm_i16x8_add_sat(high.row[r], half), kBits));
  }
  return result;
}
VLVK_INLINE v128_t interleavedLowBytes(v128_t a, v128_t b) {
  return wasm_i8x16_shuffle(a, b, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
}
VLVK_INLINE v128_t interleavedHighBytes(v128_t a, v128_t b) {
  return wasm_i8x16_shuffle(a, b, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31);
}
VLVK_INLINE v128_t interleavedLowPairs(v128_t a, v128_t b) {
  return wasm_i16x8_shuffle(a, b, 0, 8, 1, 9, 2, 10, 3, 11);
}
VLVK_INLINE v128_t interleavedHighPairs(v128_t a, v128_t b) {
  return wasm_i16x8_shuffle(a, b, 4, 12, 5, 13, 6, 14, 7, 15);
}
VLVK_INLINE void storePixels(std::uint8_t* to0, std::uint8_t* to1, U8x16x2 c0, U8x16x2 c1, U8x16x2 c2, U8x16x2 c3) {
  for (int r = 0; r < 2; ++r) {
    std::uint8_t* to = r == 0 ? to0 : to1;
    const v128_t low01 = interleavedLowBytes(c0.row[r], c1.row[r]);
    const v128_t low23 = interleavedLowBytes(c2.row[r], c3.row[r]);
    const v128_t high01 = interleavedHighBytes(c0.row[r], c1.row[r]);
    const v128_t high23 = interleavedHighBytes(c2.row[r], c3.row[r]);
    wasm_v128_store(to, interleavedLowPairs(low01, low23));
    wasm_v128_store(to + 16, interleavedHighPairs(low01, low23));
    wasm_v128_store(to + 32, interleavedLowPairs(high01, high23));
    wasm_v128_store(to + 48, interleavedHighPairs(high01, high23));
  }
}

// Chroma terms.

using ChromaPairs = U8x16;
VLVK_INLINE ChromaPairs loadChromaPairs(const std::uint8_t* from) {
  return loadU8x16(from);
}
VLVK_INLINE I16x8 splatI16(std::int16_t value) {
  return {wasm_i16x8_splat(value)};
}
template <int kFirst, int kSecond>
VLVK_INLINE I16x8 weightedPairs(ChromaPairs v, I16x8 offset) {
  v128_t sum = offset.v;
  if constexpr (kFirst != 0) {
    const v128_t first = wasm_v128_and(v.v, wasm_i16x8_const_splat(0xFF));
    sum = wasm_i16x8_add(sum, wasm_i16x8_mul(first, wasm_i16x8_const_splat(kFirst)));
  }
  if constexpr (kSecond != 0) {
    sum = wasm_i16x8_add(sum, wasm_i16x8_mul(wasm_u16x8_shr(v.v, 8), wasm_i16x8_const_splat(kSecond)));
  }
  return {sum};
}
struct I16x16 {
  I16x8 low;
  I16x8 high;
};
VLVK_INLINE I16x16 duplicateEach(I16x8 v) {
  return {{interleavedLowPairs(v.v, v.v)}, {interleavedHighPairs(v.v, v.v)}};
}
VLVK_INLINE I16x16 duplicateFours(I16x8 v) {
  return {{wasm_i64x2_shuffle(v.v, v.v, 0, 0)}, {wasm_i64x2_shuffle(v.v, v.v, 1, 1)}};
}

// Pixels to luma and chroma.

VLVK_INLINE Pixels16 loadPixels16(const std::uint8_t* from) {
  return {{wasm_v128_load(from), wasm_v128_load(from + 16), wasm_v128_load(from + 32), wasm_v128_load(from + 48)}};
}
VLVK_INLINE Pixels8 evenPixels(const Pixels16& v) {
  return {{evenWords(v.four[0], v.four[1]), evenWords(v.four[2], v.four[3])}};
}
/// Every digit is shifted to its place in the 32-bit lane of its pixel.
template <int c0, int c2>
VLVK_INLINE void storeColorIndices(std::uint32_t* to, const Pixels16& v) {
  static_assert(c0 + c2 == 2);
  for (int i = 0; i < 4; ++i) {
    const v128_t pixels = v.four[i];
    const v128_t c0Digit = wasm_v128_and(wasm_u32x4_shr(pixels, c0 == 0 ? 2 : 18), wasm_i32x4_const_splat(0x3F));
    const v128_t c1Digit = wasm_v128_and(wasm_u32x4_shr(pixels, 4), wasm_i32x4_const_splat(0xFC0));
    const v128_t c2Digit = wasm_v128_and(c0 == 0 ? wasm_u32x4_shr(pixels, 6) : wasm_i32x4_shl(pixels, 10),
                                         wasm_i32x4_const_splat(0x3F000));
    wasm_v128_store(to + 4 * i, wasm_v128_or(wasm_v128_or(c0Digit, c1Digit), c2Digit));
  }
}
/// Four sums in 32-bit lanes: channels 0 and 2, then 1 and alpha, as pairs of 16 bits for the multiply-add.
template <ChannelWeights k>
VLVK_INLINE v128_t weightedSums4(v128_t pixels) {
  const v128_t outer = wasm_v128_and(pixels, wasm_i32x4_const_splat(0x00FF00FF));
  const v128_t inner = wasm_u16x8_shr(pixels, 8);
  const v128_t sum =
      wasm_i32x4_add(wasm_i32x4_dot_i16x8(outer, wasm_i32x4_const_splat((k.c2 * 65536) | (k.c0 & 0xFFFF))),
                     wasm_i32x4_dot_i16x8(inner, wasm_i32x4_const_splat(k.c1 & 0xFFFF)));
  return wasm_u32x4_shr(wasm_i32x4_add(sum, wasm_i32x4_const_splat(k.bias)), 8);
}
template <ChannelWeights k>
VLVK_INLINE U8x16 weightedChannels(const Pixels16& v) {
  return {wasm_u8x16_narrow_i16x8(wasm_i16x8_narrow_i32x4(weightedSums4<k>(v.four[0]), weightedSums4<k>(v.four[1])),
                                  wasm_i16x8_narrow_i32x4(weightedSums4<k>(v.four[2]), weightedSums4<k>(v.four[3])))};
}
template <ChannelWeights kFirst, ChannelWeights kSecond>
VLVK_INLINE void storeWeightedPairs(std::uint8_t* to, const Pixels8& v) {
  const v128_t first = wasm_i16x8_narrow_i32x4(weightedSums4<kFirst>(v.four[0]), weightedSums4<kFirst>(v.four[1]));
  const v128_t second = wasm_i16x8_narrow_i32x4(weightedSums4<kSecond>(v.four[0]), weightedSums4<kSecond>(v.four[1]));
  wasm_v128_store(to, wasm_v128_or(first, wasm_i16x8_shl(second, 8)));
}

// Pixels changed, and chroma in pairs and planes.

VLVK_INLINE U8x16 subSat(U8x16 a, U8x16 b) {
  return {wasm_u8x16_sub_sat(a.v, b.v)};
}
VLVK_INLINE void store(std::uint8_t* to, const Pixels16& v) {
  for (int i = 0; i < 4; ++i)
    wasm_v128_store(to + 16 * i, v.four[i]);
}
/// Byte i of `v` to the first three bytes of pixel i.
VLVK_INLINE Pixels16 toChannels(U8x16 v) {
  const v128_t colors = wasm_i32x4_const_splat(0x00FFFFFF);
  const v128_t low = interleavedLowBytes(v.v, v.v);
  const v128_t high = interleavedHighBytes(v.v, v.v);
  return {{wasm_v128_and(interleavedLowPairs(low, low), colors), wasm_v128_and(interleavedHighPairs(low, low), colors),
           wasm_v128_and(interleavedLowPairs(high, high), colors),
           wasm_v128_and(interleavedHighPairs(high, high), colors)}};
}
VLVK_INLINE Pixels16 shiftedChannels(const Pixels16& v, U8x16 up, U8x16 down) {
  const Pixels16 raise = toChannels(up);
  const Pixels16 lower = toChannels(down);
  Pixels16 shifted;
  for (int i = 0; i < 4; ++i)
    shifted.four[i] = wasm_u8x16_sub_sat(wasm_u8x16_add_sat(v.four[i], raise.four[i]), lower.four[i]);
  return shifted;
}
VLVK_INLINE Pixels16 withOpaqueAlpha(const Pixels16& v) {
  Pixels16 solid;
  for (int i = 0; i < 4; ++i)
    solid.four[i] = wasm_v128_or(v.four[i], wasm_u32x4_const_splat(0xFF000000U));
  return solid;
}
VLVK_INLINE Pixels8 averagedBlocks(const Pixels16& upper, const Pixels16& lower) {
  v128_t rows[4];
  for (int i = 0; i < 4; ++i)
    rows[i] = wasm_u8x16_avgr(upper.four[i], lower.four[i]);
  return {{wasm_u8x16_avgr(evenWords(rows[0], rows[1]), oddWords(rows[0], rows[1])),
           wasm_u8x16_avgr(evenWords(rows[2], rows[3]), oddWords(rows[2], rows[3]))}};
}
VLVK_INLINE U8x16 interleaved(U8x8 a, U8x8 b) {
  return {interleavedLowBytes(a.v, b.v)};
}
VLVK_INLINE U8x8 evenBytes(U8x16 v) {
  return {wasm_u8x16_narrow_i16x8(wasm_v128_and(v.v, wasm_i16x8_const_splat(0xFF)), wasm_i16x8_const_splat(0))};
}
VLVK_INLINE U8x8 oddBytes(U8x16 v) {
  return {wasm_u8x16_narrow_i16x8(wasm_u16x8_shr(v.v, 8), wasm_i16x8_const_splat(0))};
}

}  // namespace vlvk::VLVK_TARGET

#endif
