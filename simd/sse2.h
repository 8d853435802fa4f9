/// The vector vocabulary on every x86-64 processor. scalar.h tells what each operation means.
#ifndef VLVK_SIMD_SSE2_H
#define VLVK_SIMD_SSE2_H

#include "simd/x86_128.h"

namespace vlvk::VLVK_TARGET {

/// Lanes 0 .. 3 and 4 .. 7.
struct U32x8 {
  __m128i low;
  __m128i high;
};
struct F32x8 {
  __m128 low;
  __m128 high;
};
struct I16x8 {
  __m128i v;
};
struct U8x16x2 {
  __m128i row[2];
};
struct I16x8x2 {
  __m128i row[2];
};
struct Pixels16 {
  __m128i four[4];
};
struct Pixels8 {
  __m128i four[2];
};

// Memory.

VLVK_INLINE U32x8 load8(const std::uint32_t* from) {
  return {loadUnaligned(from), loadUnaligned(from + 4)};
}
VLVK_INLINE F32x8 load8(const float* from) {
  return {_mm_loadu_ps(from), _mm_loadu_ps(from + 4)};
}
VLVK_INLINE __m128i evenWords(__m128i a, __m128i b) {
  return _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(a), _mm_castsi128_ps(b), 0x88));
}
VLVK_INLINE __m128i oddWords(__m128i a, __m128i b) {
  return _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(a), _mm_castsi128_ps(b), 0xDD));
}
VLVK_INLINE U32x8 loadLow8(const std::uint64_t* from) {
  return {evenWords(loadUnaligned(from), loadUnaligned(from + 2)),
          evenWords(loadUnaligned(from + 4), loadUnaligned(from + 6))};
}
VLVK_INLINE void store(std::uint32_t* to, U32x8 v) {
  storeUnaligned(to, v.low);
  storeUnaligned(to + 4, v.high);
}
VLVK_INLINE void store(float* to, F32x8 v) {
  _mm_storeu_ps(to, v.low);
  _mm_storeu_ps(to + 4, v.high);
}
VLVK_INLINE U32x8 splat8(std::uint32_t value) {
  const __m128i v = _mm_set1_epi32(static_cast<std::int32_t>(value));
  return {v, v};
}
VLVK_INLINE F32x8 splat8(float value) {
  return {_mm_set1_ps(value), _mm_set1_ps(value)};
}

// Running sums.

VLVK_INLINE U32x8 widen(U16x8 v) {
  return {_mm_unpacklo_epi16(v.v, zero128()), _mm_unpackhi_epi16(v.v, zero128())};
}
VLVK_INLINE U32x8 add(U32x8 a, U32x8 b) {
  return {_mm_add_epi32(a.low, b.low), _mm_add_epi32(a.high, b.high)};
}
VLVK_INLINE U32x8 sub(U32x8 a, U32x8 b) {
  return {_mm_sub_epi32(a.low, b.low), _mm_sub_epi32(a.high, b.high)};
}
/// As (a + b) * (a - b), whose factors fit signed 16 bits.
VLVK_INLINE U32x8 addSquareDifference(U32x8 sums, U8x8 a, U8x8 b) {
  const __m128i plus = _mm_add_epi16(widen(a), widen(b));
  const __m128i minus = _mm_sub_epi16(widen(a), widen(b));
  const __m128i low = _mm_mullo_epi16(plus, minus);
  const __m128i high = _mm_mulhi_epi16(plus, minus);
  return add(sums, {_mm_unpacklo_epi16(low, high), _mm_unpackhi_epi16(low, high)});
}
VLVK_INLINE U32x8 differenceWiden(U16x8 a, U16x8 b) {
  return sub(widen(a), widen(b));
}

VLVK_INLINE U32x8 joinHalves(U32x8 a, U32x8 b) {
  return {a.low, b.high};
}
VLVK_INLINE __m128i prefixSum4(__m128i v) {
  v = _mm_add_epi32(v, _mm_slli_si128(v, 4));
  return _mm_add_epi32(v, _mm_slli_si128(v, 8));
}
VLVK_INLINE U32x8 prefixSum(U32x8 v) {
  const __m128i low = prefixSum4(v.low);
  return {low, _mm_add_epi32(prefixSum4(v.high), _mm_shuffle_epi32(low, 0xFF))};
}
VLVK_INLINE U32x8 splatLast(U32x8 v) {
  const __m128i last = _mm_shuffle_epi32(v.high, 0xFF);
  return {last, last};
}

inline constexpr bool kSplitRowsIntoRuns = true;

struct PairSteps {
  U32x8 pair;
  U32x8 odd;
};
VLVK_INLINE PairSteps pairSteps(const std::uint16_t* entering, const std::uint16_t* leaving) {
  const __m128i low = _mm_sub_epi16(loadUnaligned(entering), loadUnaligned(leaving));
  const __m128i high = _mm_sub_epi16(loadUnaligned(entering + 8), loadUnaligned(leaving + 8));
  const __m128i ones = _mm_set1_epi16(1);
  return {{_mm_madd_epi16(low, ones), _mm_madd_epi16(high, ones)}, {_mm_srai_epi32(low, 16), _mm_srai_epi32(high, 16)}};
}
VLVK_INLINE PairSteps pairSteps(const std::uint32_t* entering, const std::uint32_t* leaving) {
  const U32x8 low = sub(load8(entering), load8(leaving));
  const U32x8 high = sub(load8(entering + 8), load8(leaving + 8));
  const U32x8 odd = {oddWords(low.low, low.high), oddWords(high.low, high.high)};
  return {add({evenWords(low.low, low.high), evenWords(high.low, high.high)}, odd), odd};
}

// Single precision.

VLVK_INLINE F32x8 add(F32x8 a, F32x8 b) {
  return {_mm_add_ps(a.low, b.low), _mm_add_ps(a.high, b.high)};
}
VLVK_INLINE F32x8 sub(F32x8 a, F32x8 b) {
  return {_mm_sub_ps(a.low, b.low), _mm_sub_ps(a.high, b.high)};
}
VLVK_INLINE F32x8 mul(F32x8 a, F32x8 b) {
  return {_mm_mul_ps(a.low, b.low), _mm_mul_ps(a.high, b.high)};
}
VLVK_INLINE F32x8 min(F32x8 a, F32x8 b) {
  return {_mm_min_ps(a.low, b.low), _mm_min_ps(a.high, b.high)};
}
VLVK_INLINE F32x8 max(F32x8 a, F32x8 b) {
  return {_mm_max_ps(a.low, b.low), _mm_max_ps(a.high, b.high)};
}
VLVK_INLINE F32x8 addProduct(F32x8 sum, F32x8 a, F32x8 b) {
  return add(sum, mul(a, b));
}
VLVK_INLINE F32x8 subProduct(F32x8 sum, F32x8 a, F32x8 b) {
  return sub(sum, mul(a, b));
}

/// Both 16-bit halves convert exactly, so only the last addition rounds.
VLVK_INLINE __m128 toFloat4(__m128i v) {
  const __m128 upper = _mm_cvtepi32_ps(_mm_srli_epi32(v, 16));
  const __m128 lower = _mm_cvtepi32_ps(_mm_and_si128(v, _mm_set1_epi32(0xFFFF)));
  return _mm_add_ps(_mm_mul_ps(upper, _mm_set1_ps(65536.0F)), lower);
}
VLVK_INLINE F32x8 toFloat(U32x8 v) {
  return {toFloat4(v.low), toFloat4(v.high)};
}
VLVK_INLINE F32x8 toFloatBelow2To31(U32x8 v) {
  return {_mm_cvtepi32_ps(v.low), _mm_cvtepi32_ps(v.high)};
}
VLVK_INLINE F32x8 toFloat(U8x8 v) {
  return toFloatBelow2To31(widen(U16x8{widen(v)}));
}
VLVK_INLINE F32x8 toFloatEven(U8x16 v) {
  return toFloatBelow2To31(widen(U16x8{_mm_and_si128(v.v, _mm_set1_epi16(0xFF))}));
}
VLVK_INLINE F32x8 toFloatOdd(U8x16 v) {
  return toFloatBelow2To31(widen(U16x8{_mm_srli_epi16(v.v, 8)}));
}

/// One division gives the estimate: the reciprocal of the middle of the input's fraction class, rounded to 8 fraction
/// bits.
VLVK_INLINE __m128 estimateOfNormal4(__m128 v) {
  const __m128i classBits = _mm_set1_epi32(~0x7FFF);
  const __m128i half = _mm_set1_epi32(0x4000);
  const __m128i middle = _mm_or_si128(_mm_and_si128(_mm_castps_si128(v), classBits), half);
  const __m128i exact = _mm_castps_si128(_mm_div_ps(_mm_set1_ps(1.0F), _mm_castsi128_ps(middle)));
  return _mm_castsi128_ps(_mm_and_si128(_mm_add_epi32(exact, half), classBits));
}
VLVK_INLINE F32x8 reciprocalEstimateOfNormal(F32x8 v) {
  return {estimateOfNormal4(v.low), estimateOfNormal4(v.high)};
}

VLVK_INLINE __m128i select128(__m128i mask, __m128i ifSet, __m128i ifClear) {
  return _mm_or_si128(_mm_and_si128(mask, ifSet), _mm_andnot_si128(mask, ifClear));
}
VLVK_INLINE __m128 estimate4(__m128 v) {
  const __m128i infinity = _mm_set1_epi32(0x7F800000);
  const __m128i bits = _mm_castps_si128(v);
  const __m128i magnitude = _mm_and_si128(bits, _mm_set1_epi32(0x7FFFFFFF));
  const __m128i sign = _mm_xor_si128(bits, magnitude);
  const __m128i tiny = _mm_cmplt_epi32(magnitude, _mm_set1_epi32(1 << 23));
  const __m128i large = _mm_cmpgt_epi32(magnitude, _mm_set1_epi32((253 << 23) - 1));
  const __m128i notANumber = _mm_cmpgt_epi32(magnitude, infinity);
  __m128i result = _mm_castps_si128(estimateOfNormal4(v));
  result = select128(tiny, _mm_or_si128(sign, infinity), result);
  result = select128(large, sign, result);
  return _mm_castsi128_ps(select128(notANumber, _mm_set1_epi32(0x7FC00000), result));
}
VLVK_INLINE F32x8 reciprocalEstimate(F32x8 v) {
  return {estimate4(v.low), estimate4(v.high)};
}

/// The low 8 bits of the conversion, in 32-bit lanes. From 2^31 on a float is a multiple of 256, and the conversion's
/// overflow value has the same low bits; what saturates has them all set.
VLVK_INLINE __m128i truncLow4(__m128 v) {
  const __m128 positive = _mm_max_ps(v, _mm_setzero_ps());  // the second operand where v is NaN
  const __m128i saturated = _mm_castps_si128(_mm_cmpge_ps(positive, _mm_set1_ps(4294967296.0F)));
  return _mm_and_si128(_mm_or_si128(_mm_cvttps_epi32(positive), saturated), _mm_set1_epi32(0xFF));
}
VLVK_INLINE U8x8 truncToLowBytes(F32x8 v) {
  const __m128i words = _mm_packs_epi32(truncLow4(v.low), truncLow4(v.high));
  return {_mm_packus_epi16(words, words)};
}
VLVK_INLINE U8x16 truncToLowBytes(F32x8 even, F32x8 odd) {
  const __m128i low = _mm_packs_epi32(_mm_cvttps_epi32(even.low), _mm_cvttps_epi32(even.high));
  const __m128i high = _mm_packs_epi32(_mm_cvttps_epi32(odd.low), _mm_cvttps_epi32(odd.high));
  return {_mm_or_si128(_mm_and_si128(low, _mm_set1_epi16(0xFF)), _mm_slli_epi16(high, 8))};
}

// Skin weights.

/// Without a byte shuffle in the baseline, lookups are loads. The last entry serves every larger index.
struct Table64 {
  std::uint8_t entry[65];
};
VLVK_INLINE Table64 loadTable64(const std::uint8_t* from) {
  Table64 table;
  for (int i = 0; i < 64; ++i)
    table.entry[i] = from[i];
  table.entry[64] = 0;
  return table;
}
VLVK_INLINE U8x16 lookup(const Table64& table, U8x16 index) {
  alignas(16) std::uint8_t lane[16];
  storeUnaligned(lane, _mm_min_epu8(index.v, _mm_set1_epi8(64)));
  const auto pair = [&](int i) __attribute__((always_inline)) {
    return static_cast<std::int16_t>(table.entry[lane[2 * i]] | table.entry[lane[2 * i + 1]] << 8);
  };
  // Through registers: bytes stored one by one could not be loaded as a vector without waiting.
  return {_mm_setr_epi16(pair(0), pair(1), pair(2), pair(3), pair(4), pair(5), pair(6), pair(7))};
}

VLVK_INLINE U8x16x2 mixBy64ths(U8x16x2 a, U8x16x2 b, U8x16 weight) {
  const __m128i zero = zero128();
  const __m128i rest = _mm_sub_epi8(_mm_set1_epi8(64), weight.v);
  const __m128i weightLow = _mm_unpacklo_epi8(weight.v, zero);
  const __m128i weightHigh = _mm_unpackhi_epi8(weight.v, zero);
  const __m128i restLow = _mm_unpacklo_epi8(rest, zero);
  const __m128i restHigh = _mm_unpackhi_epi8(rest, zero);
  U8x16x2 result;
  for (int r = 0; r < 2; ++r) {
    const __m128i low = _mm_add_epi16(_mm_mullo_epi16(_mm_unpacklo_epi8(a.row[r], zero), restLow),
                                      _mm_mullo_epi16(_mm_unpacklo_epi8(b.row[r], zero), weightLow));
    const __m128i high = _mm_add_epi16(_mm_mullo_epi16(_mm_unpackhi_epi8(a.row[r], zero), restHigh),
                                       _mm_mullo_epi16(_mm_unpackhi_epi8(b.row[r], zero), weightHigh));
    result.row[r] = _mm_packus_epi16(_mm_srli_epi16(low, 6), _mm_srli_epi16(high, 6));
  }
  return result;
}

// Row pairs.

VLVK_INLINE U8x16x2 loadRows(const std::uint8_t* from0, const std::uint8_t* from1) {
  return {{loadUnaligned(from0), loadUnaligned(from1)}};
}
VLVK_INLINE void storeRows(std::uint8_t* to0, std::uint8_t* to1, U8x16x2 v) {
  storeUnaligned(to0, v.row[0]);
  storeUnaligned(to1, v.row[1]);
}
VLVK_INLINE U8x16x2 splatRows(std::uint8_t value) {
  return {{splat16(value).v, splat16(value).v}};
}
VLVK_INLINE I16x8x2 bothRows(I16x8 v) {
  return {{v.v, v.v}};
}
VLVK_INLINE I16x8x2 add(I16x8x2 a, I16x8x2 b) {
  return {{_mm_add_epi16(a.row[0], b.row[0]), _mm_add_epi16(a.row[1], b.row[1])}};
}
VLVK_INLINE I16x8x2 addSat(I16x8x2 a, I16x8x2 b) {
  return {{_mm_adds_epi16(a.row[0], b.row[0]), _mm_adds_epi16(a.row[1], b.row[1])}};
}
VLVK_INLINE I16x8x2 mulWidenLow(U8x16x2 v, std::uint8_t factor) {
  const __m128i factors = _mm_set1_epi16(factor);
  return {{_mm_mullo_epi16(_mm_unpacklo_epi8(v.row[0], zero128()), factors),
           _mm_mullo_epi16(_mm_unpacklo_epi8(v.row[1], zero128()), factors)}};
}
VLVK_INLINE I16x8x2 mulWidenHigh(U8x16x2 v, std::uint8_t factor) {
  const __m128i factors = _mm_set1_epi16(factor);
  return {{_mm_mullo_epi16(_mm_unpackhi_epi8(v.row[0], zero128()), factors),
           _mm_mullo_epi16(_mm_unpackhi_epi8(v.row[1], zero128()), factors)}};
}
/// The saturating addition cannot change a sum that matters: 32767 stays far above 255.
template <int kBits>
VLVK_INLINE U8x16x2 roundShiftNarrowSat(I16x8x2 low, I16x8x2 high) {
  const __m128i half = _mm_set1_epi16(1 << (kBits - 1));
  U8x16x2 result;
  for (int r = 0; r < 2; ++r) {
    result.row[r] = _mm_packus_epi16(_mm_srai_epi16(_mm_adds_epi16(low.row[r], half), kBits),
                                     _mm_srai_epi16(_mm_adds_epi16(high.row[r], half), kBits));
  }
  return result;
}
VLVK_INLINE void storePixels(std::uint8_t* to0, std::uint8_t* to1, U8x16x2 c0, U8x16x2 c1, U8x16x2 c2, U8x16x2 c3) {
  for (int r = 0; r < 2; ++r) {
    std::uint8_t* to = r == 0 ? to0 : to1;
    const __m128i low01 = _mm_unpacklo_epi8(c0.row[r], c1.row[r]);
    const __m128i low23 = _mm_unpacklo_epi8(c2.row[r], c3.row[r]);
    const __m128i high01 = _mm_unpackhi_epi8(c0.row[r], c1.row[r]);
    const __m128i high23 = _mm_unpackhi_epi8(c2.row[r], c3.row[r]);
    storeUnaligned(to, _mm_unpacklo_epi16(low01, low23));
    storeUnaligned(to + 16, _mm_unpackhi_epi16(low01, low23));
    storeUnaligned(to + 32, _mm_unpacklo_epi16(high01, high23));
    storeUnaligned(to + 48, _mm_unpackhi_epi16(high01, high23));
  }
}

// Chroma terms.

using ChromaPairs = U8x16;
VLVK_INLINE ChromaPairs loadChromaPairs(const std::uint8_t* from) {
  return loadU8x16(from);
}
VLVK_INLINE I16x8 splatI16(std::int16_t value) {
  return {_mm_set1_epi16(value)};
}
template <int kFirst, int kSecond>
VLVK_INLINE I16x8 weightedPairs(ChromaPairs v, I16x8 offset) {
  __m128i sum = offset.v;
  if constexpr (kFirst != 0) {
    const __m128i first = _mm_and_si128(v.v, _mm_set1_epi16(0xFF));
    sum = _mm_add_epi16(sum, _mm_mullo_epi16(first, _mm_set1_epi16(kFirst)));
  }
  if constexpr (kSecond != 0) {
    const __m128i second = _mm_srli_epi16(v.v, 8);
    sum = _mm_add_epi16(sum, _mm_mullo_epi16(second, _mm_set1_epi16(kSecond)));
  }
  return {sum};
}
struct I16x16 {
  I16x8 low;
  I16x8 high;
};
VLVK_INLINE I16x16 duplicateEach(I16x8 v) {
  return {{_mm_unpacklo_epi16(v.v, v.v)}, {_mm_unpackhi_epi16(v.v, v.v)}};
}
VLVK_INLINE I16x16 duplicateFours(I16x8 v) {
  return {{_mm_unpacklo_epi64(v.v, v.v)}, {_mm_unpackhi_epi64(v.v, v.v)}};
}

// Pixels to luma and chroma.

VLVK_INLINE Pixels16 loadPixels16(const std::uint8_t* from) {
  return {{loadUnaligned(from), loadUnaligned(from + 16), loadUnaligned(from + 32), loadUnaligned(from + 48)}};
}
VLVK_INLINE Pixels8 evenPixels(const Pixels16& v) {
  return {{evenWords(v.four[0], v.four[1]), evenWords(v.four[2], v.four[3])}};
}
/// Every digit is shifted to its place in the 32-bit lane of its pixel.
template <int c0, int c2>
VLVK_INLINE void storeColorIndices(std::uint32_t* to, const Pixels16& v) {
  static_assert(c0 + c2 == 2);
  const __m128i low = _mm_set1_epi32(0x3F);
  const __m128i middle = _mm_set1_epi32(0xFC0);
  const __m128i high = _mm_set1_epi32(0x3F000);
  for (int i = 0; i < 4; ++i) {
    const __m128i pixels = v.four[i];
    const __m128i c0Digit = _mm_and_si128(_mm_srli_epi32(pixels, c0 == 0 ? 2 : 18), low);
    const __m128i c2Digit = _mm_and_si128(c0 == 0 ? _mm_srli_epi32(pixels, 6) : _mm_slli_epi32(pixels, 10), high);
    const __m128i c1Digit = _mm_and_si128(_mm_srli_epi32(pixels, 4), middle);
    storeUnaligned(to + 4 * i, _mm_or_si128(_mm_or_si128(c0Digit, c1Digit), c2Digit));
  }
}
/// Four sums in 32-bit lanes: channels 0 and 2, then 1 and alpha, as pairs of 16 bits for the multiply-add.
template <ChannelWeights k>
VLVK_INLINE __m128i weightedSums4(__m128i pixels) {
  const __m128i outer = _mm_and_si128(pixels, _mm_set1_epi32(0x00FF00FF));
  const __m128i inner = _mm_srli_epi16(pixels, 8);
  const __m128i sum = _mm_add_epi32(_mm_madd_epi16(outer, _mm_set1_epi32((k.c2 * 65536) | (k.c0 & 0xFFFF))),
                                    _mm_madd_epi16(inner, _mm_set1_epi32(k.c1 & 0xFFFF)));
  return _mm_srli_epi32(_mm_add_epi32(sum, _mm_set1_epi32(k.bias)), 8);
}
template <ChannelWeights k>
VLVK_INLINE U8x16 weightedChannels(const Pixels16& v) {
  return {_mm_packus_epi16(_mm_packs_epi32(weightedSums4<k>(v.four[0]), weightedSums4<k>(v.four[1])),
                           _mm_packs_epi32(weightedSums4<k>(v.four[2]), weightedSums4<k>(v.four[3])))};
}
template <ChannelWeights kFirst, ChannelWeights kSecond>
VLVK_INLINE void storeWeightedPairs(std::uint8_t* to, const Pixels8& v) {
  const __m128i first = _mm_packs_epi32(weightedSums4<kFirst>(v.four[0]), weightedSums4<kFirst>(v.four[1]));
  const __m128i second = _mm_packs_epi32(weightedSums4<kSecond>(v.four[0]), weightedSums4<kSecond>(v.four[1]));
  storeUnaligned(to, _mm_or_si128(first, _mm_slli_epi16(second, 8)));
}

// Pixels changed.

VLVK_INLINE void store(std::uint8_t* to, const Pixels16& v) {
  for (int i = 0; i < 4; ++i)
    storeUnaligned(to + 16 * i, v.four[i]);
}
/// Byte i of `v` to the first three bytes of pixel i.
VLVK_INLINE Pixels16 toChannels(U8x16 v) {
  const __m128i colors = _mm_set1_epi32(0x00FFFFFF);
  const __m128i low = _mm_unpacklo_epi8(v.v, v.v);
  const __m128i high = _mm_unpackhi_epi8(v.v, v.v);
  return {{_mm_and_si128(_mm_unpacklo_epi16(low, low), colors), _mm_and_si128(_mm_unpackhi_epi16(low, low), colors),
           _mm_and_si128(_mm_unpacklo_epi16(high, high), colors),
           _mm_and_si128(_mm_unpackhi_epi16(high, high), colors)}};
}
VLVK_INLINE Pixels16 shiftedChannels(const Pixels16& v, U8x16 up, U8x16 down) {
  const Pixels16 raise = toChannels(up);
  const Pixels16 lower = toChannels(down);
  Pixels16 shifted;
  for (int i = 0; i < 4; ++i)
    shifted.four[i] = _mm_subs_epu8(_mm_adds_epu8(v.four[i], raise.four[i]), lower.four[i]);
  return shifted;
}
VLVK_INLINE Pixels16 withOpaqueAlpha(const Pixels16& v) {
  Pixels16 solid;
  for (int i = 0; i < 4; ++i)
    solid.four[i] = _mm_or_si128(v.four[i], _mm_set1_epi32(static_cast<std::int32_t>(0xFF000000U)));
  return solid;
}
VLVK_INLINE Pixels8 averagedBlocks(const Pixels16& upper, const Pixels16& lower) {
  __m128i rows[4];
  for (int i = 0; i < 4; ++i)
    rows[i] = _mm_avg_epu8(upper.four[i], lower.four[i]);
  return {{_mm_avg_epu8(evenWords(rows[0], rows[1]), oddWords(rows[0], rows[1])),
           _mm_avg_epu8(evenWords(rows[2], rows[3]), oddWords(rows[2], rows[3]))}};
}

}  // namespace vlvk::VLVK_TARGET

#endif
