/// Vocabulary operations on eight lanes of 32 bits, which take two 128-bit vectors: running sums and single precision.
/// Made of a target's instructions under plain names, see bytes128.h. scalar.h tells what each operation means.
#ifndef VLVK_SIMD_SUMS128_H
#define VLVK_SIMD_SUMS128_H

#include <cstdint>

#include "simd/bytes128.h"

namespace vlvk::VLVK_TARGET {

/// Lanes 0 .. 3 and 4 .. 7.
struct U32x8 {
  V128 low;
  V128 high;
};
struct F32x8 {
  F128 low;
  F128 high;
};

// Memory.

VLVK_INLINE U32x8 load8(const std::uint32_t* from) {
  return {load128(from), load128(from + 4)};
}
VLVK_INLINE F32x8 load8(const float* from) {
  return {loadFloats(from), loadFloats(from + 4)};
}
VLVK_INLINE U32x8 loadLow8(const std::uint64_t* from) {
  return {evenWords(load128(from), load128(from + 2)), evenWords(load128(from + 4), load128(from + 6))};
}
VLVK_INLINE void store(std::uint32_t* to, U32x8 v) {
  store128(to, v.low);
  store128(to + 4, v.high);
}
VLVK_INLINE void store(float* to, F32x8 v) {
  storeFloats(to, v.low);
  storeFloats(to + 4, v.high);
}
VLVK_INLINE U32x8 splat8(std::uint32_t value) {
  return {all32(value), all32(value)};
}
VLVK_INLINE F32x8 splat8(float value) {
  return {allFloats(value), allFloats(value)};
}

// Running sums.

VLVK_INLINE U32x8 widen(U16x8 v) {
  return {widenLow16(v.v), widenHigh16(v.v)};
}
VLVK_INLINE U32x8 add(U32x8 a, U32x8 b) {
  return {add32(a.low, b.low), add32(a.high, b.high)};
}
VLVK_INLINE U32x8 sub(U32x8 a, U32x8 b) {
  return {sub32(a.low, b.low), sub32(a.high, b.high)};
}
/// Words: as (a + b) * (a - b), whose factors fit signed 16 bits.
VLVK_INLINE U32x8 addSquareSteps(U32x8 sums, V128 a, V128 b) {
  const TwoV128 products = products32(add16(a, b), sub16(a, b));
  return {add32(sums.low, products.low), add32(sums.high, products.high)};
}
VLVK_INLINE U32x8 addSquareDifference(U32x8 sums, U8x8 a, U8x8 b) {
  return addSquareSteps(sums, widenLow8(a.v), widenLow8(b.v));
}
VLVK_INLINE void slideSums8(std::uint16_t* sums, V128 a, V128 b) {
  store128(sums, sub16(add16(load128(sums), a), b));
}
VLVK_INLINE void slideSums16(std::uint16_t* sums, U8x16 a, U8x16 b) {
  slideSums8(sums, widenLow8(a.v), widenLow8(b.v));
  slideSums8(sums + 8, widenHigh8(a.v), widenHigh8(b.v));
}
VLVK_INLINE void slideSquares16(std::uint32_t* squares, U8x16 a, U8x16 b) {
  store(squares, addSquareSteps(load8(squares), widenLow8(a.v), widenLow8(b.v)));
  store(squares + 8, addSquareSteps(load8(squares + 8), widenHigh8(a.v), widenHigh8(b.v)));
}
VLVK_INLINE U32x8 differenceWiden(U16x8 a, U16x8 b) {
  return sub(widen(a), widen(b));
}
VLVK_INLINE U32x8 joinHalves(U32x8 a, U32x8 b) {
  return {a.low, b.high};
}
VLVK_INLINE V128 prefixSum4(V128 v) {
  v = add32(v, moveUp32<1>(v));
  return add32(v, moveUp32<2>(v));
}
VLVK_INLINE U32x8 prefixSum(U32x8 before, U32x8 v) {
  const V128 low = prefixSum4(v.low);
  return add(before, {low, add32(prefixSum4(v.high), splatLast32(low))});
}
VLVK_INLINE U32x8 splatLast(U32x8 v) {
  const V128 last = splatLast32(v.high);
  return {last, last};
}

struct PairSteps {
  U32x8 pair;
  U32x8 odd;
};
VLVK_INLINE PairSteps pairSteps(const std::uint16_t* entering, const std::uint16_t* leaving) {
  const V128 low = sub16(load128(entering), load128(leaving));
  const V128 high = sub16(load128(entering + 8), load128(leaving + 8));
  return {{pairSums32(low), pairSums32(high)}, {shiftRightSigned32<16>(low), shiftRightSigned32<16>(high)}};
}
VLVK_INLINE PairSteps pairSteps(const std::uint32_t* entering, const std::uint32_t* leaving) {
  const U32x8 low = sub(load8(entering), load8(leaving));
  const U32x8 high = sub(load8(entering + 8), load8(leaving + 8));
  const U32x8 odd = {oddWords(low.low, low.high), oddWords(high.low, high.high)};
  return {add({evenWords(low.low, low.high), evenWords(high.low, high.high)}, odd), odd};
}

// Single precision.

VLVK_INLINE F32x8 add(F32x8 a, F32x8 b) {
  return {addFloats(a.low, b.low), addFloats(a.high, b.high)};
}
VLVK_INLINE F32x8 sub(F32x8 a, F32x8 b) {
  return {subFloats(a.low, b.low), subFloats(a.high, b.high)};
}
VLVK_INLINE F32x8 mul(F32x8 a, F32x8 b) {
  return {mulFloats(a.low, b.low), mulFloats(a.high, b.high)};
}
VLVK_INLINE F32x8 div(F32x8 a, F32x8 b) {
  return {divFloats(a.low, b.low), divFloats(a.high, b.high)};
}
VLVK_INLINE F32x8 min(F32x8 a, F32x8 b) {
  return {minFloats(a.low, b.low), minFloats(a.high, b.high)};
}
VLVK_INLINE F32x8 max(F32x8 a, F32x8 b) {
  return {maxFloats(a.low, b.low), maxFloats(a.high, b.high)};
}
VLVK_INLINE F32x8 addProduct(F32x8 sum, F32x8 a, F32x8 b) {
  return add(sum, mul(a, b));
}
VLVK_INLINE F32x8 subProduct(F32x8 sum, F32x8 a, F32x8 b) {
  return sub(sum, mul(a, b));
}
VLVK_INLINE F32x8 toFloat(U32x8 v) {
  return {floatsOfUnsigned(v.low), floatsOfUnsigned(v.high)};
}
VLVK_INLINE F32x8 toFloatBelow2To31(U32x8 v) {
  return {floatsOfSigned(v.low), floatsOfSigned(v.high)};
}
VLVK_INLINE F32x8 toFloat(U8x8 v) {
  return toFloatBelow2To31(widen(U16x8{widenLow8(v.v)}));
}
VLVK_INLINE F32x8 toFloatEven(U8x16 v) {
  return toFloatBelow2To31(widen(U16x8{evenBytes16(v.v)}));
}
VLVK_INLINE F32x8 toFloatOdd(U8x16 v) {
  return toFloatBelow2To31(widen(U16x8{oddBytes16(v.v)}));
}

/// One division gives the estimate: the reciprocal of the middle of the input's fraction class, rounded to 8 fraction
/// bits.
VLVK_INLINE F128 estimateOfNormal4(F128 v) {
  const V128 classBits = all32(~0x7FFFU);
  const V128 half = all32(0x4000);
  const V128 middle = or128(and128(bitsOf(v), classBits), half);
  const V128 exact = bitsOf(divFloats(allFloats(1.0F), floatsOf(middle)));
  return floatsOf(and128(add32(exact, half), classBits));
}
VLVK_INLINE F32x8 reciprocalEstimateOfNormal(F32x8 v) {
  return {estimateOfNormal4(v.low), estimateOfNormal4(v.high)};
}
VLVK_INLINE F128 estimate4(F128 v) {
  const V128 infinity = all32(0x7F800000);
  const V128 bits = bitsOf(v);
  const V128 magnitude = and128(bits, all32(0x7FFFFFFF));
  const V128 sign = xor128(bits, magnitude);
  const V128 tiny = greaterSigned32(all32(1U << 23), magnitude);
  const V128 large = greaterSigned32(magnitude, all32((253U << 23) - 1));
  const V128 notANumber = greaterSigned32(magnitude, infinity);
  V128 result = bitsOf(estimateOfNormal4(v));
  result = select128(tiny, or128(sign, infinity), result);
  result = select128(large, sign, result);
  return floatsOf(select128(notANumber, all32(0x7FC00000), result));
}
VLVK_INLINE F32x8 reciprocalEstimate(F32x8 v) {
  return {estimate4(v.low), estimate4(v.high)};
}

/// The low bytes of 32-bit lanes.
VLVK_INLINE U8x8 lowBytes(V128 low, V128 high) {
  const V128 words = narrowSat32(and128(low, all32(0xFF)), and128(high, all32(0xFF)));
  return {narrowSat16(words, words)};
}

}  // namespace vlvk::VLVK_TARGET

#endif
