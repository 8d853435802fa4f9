/// The vector vocabulary on x86-64 processors with AVX2. scalar.h tells what each operation means.
///
/// A row pair lives in one register, a row in each 128-bit half, so that operations which stay inside the halves stay
/// inside the rows.
#ifndef VLVK_SIMD_AVX2_H
#define VLVK_SIMD_AVX2_H

#include <immintrin.h>

#include "simd/x86_128.h"
// After the instructions.
#include "simd/bytes128.h"
#include "simd/channel_weights.h"

namespace vlvk::VLVK_TARGET {

struct U32x8 {
  __m256i v;
};
struct F32x8 {
  __m256 v;
};
/// Chroma terms serve both rows: both halves hold the same 8 lanes.
struct I16x8 {
  __m256i v;
};
struct ChromaPairs {
  __m256i v;
};
struct U8x16x2 {
  __m256i v;
};
struct I16x8x2 {
  __m256i v;
};
struct Pixels16 {
  __m256i eight[2];
};
struct Pixels8 {
  __m256i v;
};

VLVK_INLINE __m256i load256(const void* from) {
  return _mm256_loadu_si256(static_cast<const __m256i*>(from));
}

VLVK_INLINE void store256(void* to, __m256i v) {
  _mm256_storeu_si256(static_cast<__m256i*>(to), v);
}

// Memory.

VLVK_INLINE U32x8 load8(const std::uint32_t* from) {
  return {load256(from)};
}
VLVK_INLINE F32x8 load8(const float* from) {
  return {_mm256_loadu_ps(from)};
}
/// The even 32-bit words of both, in order.
VLVK_INLINE __m256i evenWords(__m256i a, __m256i b) {
  const __m256 even = _mm256_shuffle_ps(_mm256_castsi256_ps(a), _mm256_castsi256_ps(b), 0x88);
  return _mm256_permute4x64_epi64(_mm256_castps_si256(even), 0xD8);  // quarters 0, 2, 1, 3
}
VLVK_INLINE U32x8 loadLow8(const std::uint64_t* from) {
  return {evenWords(load256(from), load256(from + 4))};
}
VLVK_INLINE void store(std::uint32_t* to, U32x8 v) {
  store256(to, v.v);
}
VLVK_INLINE void store(float* to, F32x8 v) {
  _mm256_storeu_ps(to, v.v);
}
VLVK_INLINE U32x8 splat8(std::uint32_t value) {
  return {_mm256_set1_epi32(static_cast<std::int32_t>(value))};
}
VLVK_INLINE F32x8 splat8(float value) {
  return {_mm256_set1_ps(value)};
}

// Running sums.

VLVK_INLINE U32x8 add(U32x8 a, U32x8 b) {
  return {_mm256_add_epi32(a.v, b.v)};
}
VLVK_INLINE U32x8 sub(U32x8 a, U32x8 b) {
  return {_mm256_sub_epi32(a.v, b.v)};
}
VLVK_INLINE U32x8 widen(U16x8 v) {
  return {_mm256_cvtepu16_epi32(v.v)};
}
/// 255 * 255 fits 16 bits.
VLVK_INLINE U16x8 squareWiden(U8x8 v) {
  const __m128i wide = widenLow8(v.v);
  return {_mm_mullo_epi16(wide, wide)};
}
VLVK_INLINE U32x8 addSquareDifference(U32x8 sums, U8x8 a, U8x8 b) {
  return sub(add(sums, widen(squareWiden(a))), widen(squareWiden(b)));
}
VLVK_INLINE U32x8 differenceWiden(U16x8 a, U16x8 b) {
  return sub(widen(a), widen(b));
}

VLVK_INLINE U32x8 joinHalves(U32x8 a, U32x8 b) {
  return {_mm256_blend_epi32(a.v, b.v, 0xF0)};
}
VLVK_INLINE U32x8 prefixSum(U32x8 before, U32x8 v) {
  __m256i sum = _mm256_add_epi32(v.v, _mm256_slli_si256(v.v, 4));
  sum = _mm256_add_epi32(sum, _mm256_slli_si256(sum, 8));
  // The lower half's total goes to every lane of the upper half, zero to the lower half.
  const __m256i lowerSums = _mm256_permute2x128_si256(sum, sum, 0x08);
  return add(before, {_mm256_add_epi32(sum, _mm256_shuffle_epi32(lowerSums, 0xFF))});
}
VLVK_INLINE U32x8 splatLast(U32x8 v) {
  return {_mm256_permutevar8x32_epi32(v.v, _mm256_set1_epi32(7))};
}

inline constexpr InsideColumns kInsideColumns = kInRuns;

struct PairSteps {
  U32x8 pair;
  U32x8 odd;
};
VLVK_INLINE PairSteps pairSteps(const std::uint16_t* entering, const std::uint16_t* leaving) {
  const __m256i steps = _mm256_sub_epi16(load256(entering), load256(leaving));
  return {{_mm256_madd_epi16(steps, _mm256_set1_epi16(1))}, {_mm256_srai_epi32(steps, 16)}};
}
VLVK_INLINE PairSteps pairSteps(const std::uint32_t* entering, const std::uint32_t* leaving) {
  const __m256i first = _mm256_sub_epi32(load256(entering), load256(leaving));
  const __m256i second = _mm256_sub_epi32(load256(entering + 8), load256(leaving + 8));
  // Columns 0-3 8-11 and 4-7 12-15, so that splitting inside the halves leaves pairs in order.
  const __m256 low = _mm256_castsi256_ps(_mm256_permute2x128_si256(first, second, 0x20));
  const __m256 high = _mm256_castsi256_ps(_mm256_permute2x128_si256(first, second, 0x31));
  const __m256i even = _mm256_castps_si256(_mm256_shuffle_ps(low, high, 0x88));
  const __m256i odd = _mm256_castps_si256(_mm256_shuffle_ps(low, high, 0xDD));
  return {{_mm256_add_epi32(even, odd)}, {odd}};
}

// Single precision.

VLVK_INLINE F32x8 add(F32x8 a, F32x8 b) {
  return {_mm256_add_ps(a.v, b.v)};
}
VLVK_INLINE F32x8 sub(F32x8 a, F32x8 b) {
  return {_mm256_sub_ps(a.v, b.v)};
}
VLVK_INLINE F32x8 mul(F32x8 a, F32x8 b) {
  return {_mm256_mul_ps(a.v, b.v)};
}
VLVK_INLINE F32x8 min(F32x8 a, F32x8 b) {
  return {_mm256_min_ps(a.v, b.v)};
}
VLVK_INLINE F32x8 max(F32x8 a, F32x8 b) {
  return {_mm256_max_ps(a.v, b.v)};
}
VLVK_INLINE F32x8 addProduct(F32x8 sum, F32x8 a, F32x8 b) {
  return add(sum, mul(a, b));
}
VLVK_INLINE F32x8 subProduct(F32x8 sum, F32x8 a, F32x8 b) {
  return sub(sum, mul(a, b));
}

/// Both 16-bit halves convert exactly, so only the last addition rounds.
VLVK_INLINE F32x8 toFloat(U32x8 v) {
  const __m256 upper = _mm256_cvtepi32_ps(_mm256_srli_epi32(v.v, 16));
  const __m256 lower = _mm256_cvtepi32_ps(_mm256_and_si256(v.v, _mm256_set1_epi32(0xFFFF)));
  return {_mm256_add_ps(_mm256_mul_ps(upper, _mm256_set1_ps(65536.0F)), lower)};
}
VLVK_INLINE F32x8 toFloatBelow2To31(U32x8 v) {
  return {_mm256_cvtepi32_ps(v.v)};
}
VLVK_INLINE F32x8 toFloat(U8x8 v) {
  return {_mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(v.v))};
}
VLVK_INLINE F32x8 toFloatEven(U8x16 v) {
  return {_mm256_cvtepi32_ps(_mm256_cvtepu16_epi32(_mm_and_si128(v.v, _mm_set1_epi16(0xFF))))};
}
VLVK_INLINE F32x8 toFloatOdd(U8x16 v) {
  return {_mm256_cvtepi32_ps(_mm256_cvtepu16_epi32(_mm_srli_epi16(v.v, 8)))};
}

/// One division gives the estimate: the reciprocal of the middle of the input's fraction class, rounded to 8 fraction
/// bits.
VLVK_INLINE F32x8 reciprocalEstimateOfNormal(F32x8 v) {
  const __m256i classBits = _mm256_set1_epi32(~0x7FFF);
  const __m256i half = _mm256_set1_epi32(0x4000);
  const __m256i middle = _mm256_or_si256(_mm256_and_si256(_mm256_castps_si256(v.v), classBits), half);
  const __m256i exact = _mm256_castps_si256(_mm256_div_ps(_mm256_set1_ps(1.0F), _mm256_castsi256_ps(middle)));
  return {_mm256_castsi256_ps(_mm256_and_si256(_mm256_add_epi32(exact, half), classBits))};
}
VLVK_INLINE F32x8 reciprocalEstimate(F32x8 v) {
  const __m256i infinity = _mm256_set1_epi32(0x7F800000);
  const __m256i bits = _mm256_castps_si256(v.v);
  const __m256i magnitude = _mm256_and_si256(bits, _mm256_set1_epi32(0x7FFFFFFF));
  const __m256i sign = _mm256_xor_si256(bits, magnitude);
  const __m256i tiny = _mm256_cmpgt_epi32(_mm256_set1_epi32(1 << 23), magnitude);
  const __m256i large = _mm256_cmpgt_epi32(magnitude, _mm256_set1_epi32((253 << 23) - 1));
  const __m256i notANumber = _mm256_cmpgt_epi32(magnitude, infinity);
  __m256i result = _mm256_castps_si256(reciprocalEstimateOfNormal(v).v);
  result = _mm256_blendv_epi8(result, _mm256_or_si256(sign, infinity), tiny);
  result = _mm256_blendv_epi8(result, sign, large);
  return {_mm256_castsi256_ps(_mm256_blendv_epi8(result, _mm256_set1_epi32(0x7FC00000), notANumber))};
}

/// The low byte of each lane to the start of its half, then both halves side by side.
VLVK_INLINE U8x8 lowBytes(__m256i v) {
  const __m256i low = _mm256_shuffle_epi8(v, _mm256_set1_epi32(0x0C080400));
  return {_mm_unpacklo_epi32(_mm256_castsi256_si128(low), _mm256_extracti128_si256(low, 1))};
}
/// From 2^31 on a float is a multiple of 256, and the conversion's overflow value has the same low bits; what saturates
/// has them all set.
VLVK_INLINE U8x8 truncToLowBytes(F32x8 v) {
  const __m256 positive = _mm256_max_ps(v.v, _mm256_setzero_ps());  // the second operand where v is NaN
  const __m256i saturated = _mm256_castps_si256(_mm256_cmp_ps(positive, _mm256_set1_ps(4294967296.0F), _CMP_GE_OQ));
  return lowBytes(_mm256_or_si256(_mm256_cvttps_epi32(positive), saturated));
}
VLVK_INLINE U8x16 truncToLowBytes(F32x8 even, F32x8 odd) {
  const __m256i low = _mm256_and_si256(_mm256_cvttps_epi32(even.v), _mm256_set1_epi32(0xFF));
  const __m256i high = _mm256_slli_epi32(_mm256_cvttps_epi32(odd.v), 8);
  const __m256i both = _mm256_or_si256(low, high);  // a pair in the lower half of each lane
  const __m256i pairs = _mm256_shuffle_epi8(both, _mm256_set1_epi64x(0x0D0C090805040100));
  return {_mm_unpacklo_epi64(_mm256_castsi256_si128(pairs), _mm256_extracti128_si256(pairs, 1))};
}

// Skin weights.

struct Table64 {
  __m128i quarter[4];
};
VLVK_INLINE Table64 loadTable64(const std::uint8_t* from) {
  return {{load128(from), load128(from + 16), load128(from + 32), load128(from + 48)}};
}
/// A byte shuffle gives 0 for an index with its top bit set: each quarter sees its own indices below 16, others above
/// 127.
VLVK_INLINE U8x16 lookup(const Table64& table, U8x16 index) {
  const __m128i top = _mm_set1_epi8(0x70);
  __m128i result = zero128();
  for (int q = 0; q < 4; ++q) {
    const __m128i local = _mm_sub_epi8(index.v, _mm_set1_epi8(static_cast<char>(16 * q)));
    result = _mm_or_si128(result, _mm_shuffle_epi8(table.quarter[q], _mm_adds_epu8(local, top)));
  }
  return {result};
}

// Row pairs.

VLVK_INLINE U8x16x2 loadRows(const std::uint8_t* from0, const std::uint8_t* from1) {
  return {_mm256_inserti128_si256(_mm256_castsi128_si256(load128(from0)), load128(from1), 1)};
}
VLVK_INLINE void storeHalves(std::uint8_t* to0, std::uint8_t* to1, __m256i v) {
  store128(to0, _mm256_castsi256_si128(v));
  store128(to1, _mm256_extracti128_si256(v, 1));
}
VLVK_INLINE U8x16x2 splatRows(std::uint8_t value) {
  return {_mm256_set1_epi8(static_cast<char>(value))};
}
VLVK_INLINE I16x8x2 bothRows(I16x8 v) {
  return {v.v};
}
VLVK_INLINE I16x8x2 add(I16x8x2 a, I16x8x2 b) {
  return {_mm256_add_epi16(a.v, b.v)};
}
VLVK_INLINE I16x8x2 addSat(I16x8x2 a, I16x8x2 b) {
  return {_mm256_adds_epi16(a.v, b.v)};
}
VLVK_INLINE I16x8x2 mulWidenLow(U8x16x2 v, std::uint8_t factor) {
  return {_mm256_mullo_epi16(_mm256_unpacklo_epi8(v.v, _mm256_setzero_si256()), _mm256_set1_epi16(factor))};
}
VLVK_INLINE I16x8x2 mulWidenHigh(U8x16x2 v, std::uint8_t factor) {
  return {_mm256_mullo_epi16(_mm256_unpackhi_epi8(v.v, _mm256_setzero_si256()), _mm256_set1_epi16(factor))};
}
/// The rounding multiplication keeps bits 15 and up of twice the product, rounded.
template <int kBits>
VLVK_INLINE U8x16x2 roundShiftNarrowSat(I16x8x2 low, I16x8x2 high) {
  const __m256i factor = _mm256_set1_epi16(1 << (15 - kBits));
  return {_mm256_packus_epi16(_mm256_mulhrs_epi16(low.v, factor), _mm256_mulhrs_epi16(high.v, factor))};
}
VLVK_INLINE void storePixels(std::uint8_t* to0, std::uint8_t* to1, U8x16x2 c0, U8x16x2 c1, U8x16x2 c2, U8x16x2 c3) {
  const __m256i low01 = _mm256_unpacklo_epi8(c0.v, c1.v);
  const __m256i low23 = _mm256_unpacklo_epi8(c2.v, c3.v);
  const __m256i high01 = _mm256_unpackhi_epi8(c0.v, c1.v);
  const __m256i high23 = _mm256_unpackhi_epi8(c2.v, c3.v);
  storeHalves(to0, to1, _mm256_unpacklo_epi16(low01, low23));
  storeHalves(to0 + 16, to1 + 16, _mm256_unpackhi_epi16(low01, low23));
  storeHalves(to0 + 32, to1 + 32, _mm256_unpacklo_epi16(high01, high23));
  storeHalves(to0 + 48, to1 + 48, _mm256_unpackhi_epi16(high01, high23));
}

// Chroma terms.

VLVK_INLINE ChromaPairs loadChromaPairs(const std::uint8_t* from) {
  return {_mm256_broadcastsi128_si256(load128(from))};
}
VLVK_INLINE I16x8 splatI16(std::int16_t value) {
  return {_mm256_set1_epi16(value)};
}
/// Weights that fit a byte take one multiply-add.
template <int kFirst, int kSecond>
VLVK_INLINE I16x8 weightedPairs(ChromaPairs v, I16x8 offset) {
  if constexpr (kFirst >= -128 && kFirst <= 127 && kSecond >= -128 && kSecond <= 127) {
    static_assert(kFirst + kSecond >= -128 && kFirst + kSecond <= 128);
    const __m256i weights = _mm256_set1_epi16(static_cast<std::int16_t>((kFirst & 0xFF) | (kSecond & 0xFF) << 8));
    return {_mm256_add_epi16(offset.v, _mm256_maddubs_epi16(v.v, weights))};
  } else {
    const __m256i first = _mm256_and_si256(v.v, _mm256_set1_epi16(0xFF));
    const __m256i second = _mm256_srli_epi16(v.v, 8);
    __m256i sum = offset.v;
    if constexpr (kFirst != 0) sum = _mm256_add_epi16(sum, _mm256_mullo_epi16(first, _mm256_set1_epi16(kFirst)));
    if constexpr (kSecond != 0) sum = _mm256_add_epi16(sum, _mm256_mullo_epi16(second, _mm256_set1_epi16(kSecond)));
    return {sum};
  }
}
struct I16x16 {
  I16x8 low;
  I16x8 high;
};
VLVK_INLINE I16x16 duplicateEach(I16x8 v) {
  return {{_mm256_unpacklo_epi16(v.v, v.v)}, {_mm256_unpackhi_epi16(v.v, v.v)}};
}
VLVK_INLINE I16x16 duplicateFours(I16x8 v) {
  return {{_mm256_unpacklo_epi64(v.v, v.v)}, {_mm256_unpackhi_epi64(v.v, v.v)}};
}

// Pixels to luma and chroma.

VLVK_INLINE Pixels16 loadPixels16(const std::uint8_t* from) {
  return {{load256(from), load256(from + 32)}};
}
VLVK_INLINE Pixels8 evenPixels(const Pixels16& v) {
  return {evenWords(v.eight[0], v.eight[1])};
}
/// Multiply-adds put two digits together, then all three.
template <int c0, int c2>
VLVK_INLINE void storeColorIndices(std::uint32_t* to, const Pixels16& v) {
  static_assert(c0 + c2 == 2);
  const __m256i first = _mm256_set1_epi32(c0 == 0 ? 0x00014001 : 0x00010140);
  const __m256i second = _mm256_set1_epi32(c0 == 0 ? 0x10000001 : 0x00010040);
  for (int i = 0; i < 2; ++i) {
    const __m256i digits = _mm256_and_si256(_mm256_srli_epi16(v.eight[i], 2), _mm256_set1_epi32(0x003F3F3F));
    store256(to + 8 * i, _mm256_madd_epi16(_mm256_maddubs_epi16(digits, first), second));
  }
}
/// Byte weights of a pixel for the multiply-add of unsigned with signed bytes, whose pair sums must fit 16 bits with
/// their sign. A middle weight above 127 is shared with the fourth byte, which then holds the middle channel as well.
template <ChannelWeights k>
struct ByteWeights {
  static constexpr bool kSplit = k.c1 > 127;
  static constexpr int kFourth = kSplit ? 128 - k.c2 : 0;
  static constexpr int kSecond = k.c1 - kFourth;
  static constexpr bool fits(int first, int second) {
    return first >= -128 && first <= 127 && second >= -128 && second <= 127 && first + second >= -128 &&
           first + second <= 128;
  }
  static_assert(fits(k.c0, kSecond) && fits(k.c2, kFourth));
  static constexpr std::int32_t kPacked = (k.c0 & 0xFF) | (kSecond & 0xFF) << 8 | (k.c2 & 0xFF) << 16 | kFourth << 24;
};
/// Eight sums in 32-bit lanes, without the bias.
template <ChannelWeights k>
VLVK_INLINE __m256i weightedSums8(__m256i pixels) {
  if constexpr (ByteWeights<k>::kSplit) {
    const __m128i secondToFourth = _mm_setr_epi8(0, 1, 2, 1, 4, 5, 6, 5, 8, 9, 10, 9, 12, 13, 14, 13);
    pixels = _mm256_shuffle_epi8(pixels, _mm256_broadcastsi128_si256(secondToFourth));
  }
  const __m256i pairs = _mm256_maddubs_epi16(pixels, _mm256_set1_epi32(ByteWeights<k>::kPacked));
  return _mm256_madd_epi16(pairs, _mm256_set1_epi16(1));
}
template <ChannelWeights k>
VLVK_INLINE U8x16 weightedChannels(const Pixels16& v) {
  // Packing works inside the halves: pixels 0-3 8-11 | 4-7 12-15, as words, then as bytes.
  const __m256i sums = _mm256_packus_epi32(weightedSums8<k>(v.eight[0]), weightedSums8<k>(v.eight[1]));
  const __m256i words =
      _mm256_srli_epi16(_mm256_add_epi16(sums, _mm256_set1_epi16(static_cast<std::int16_t>(k.bias))), 8);
  const __m128i bytes = _mm_packus_epi16(_mm256_castsi256_si128(words), _mm256_extracti128_si256(words, 1));
  return {_mm_shuffle_epi32(bytes, 0xD8)};  // quarters 0, 2, 1, 3
}
/// The sums fit 16 bits with their sign; the bias makes them positive.
template <ChannelWeights kFirst, ChannelWeights kSecond>
VLVK_INLINE void storeWeightedPairs(std::uint8_t* to, const Pixels8& v) {
  static_assert(kFirst.bias == kSecond.bias);
  const __m256i sums = _mm256_packs_epi32(weightedSums8<kFirst>(v.v), weightedSums8<kSecond>(v.v));
  const __m256i biased = _mm256_add_epi16(sums, _mm256_set1_epi16(static_cast<std::int16_t>(kFirst.bias)));
  // The upper byte of each: four first ones, four second ones in either half.
  const __m128i interleave = _mm_setr_epi8(1, 9, 3, 11, 5, 13, 7, 15, 1, 9, 3, 11, 5, 13, 7, 15);
  const __m256i pairs = _mm256_shuffle_epi8(biased, _mm256_broadcastsi128_si256(interleave));
  store128(to, _mm_unpacklo_epi64(_mm256_castsi256_si128(pairs), _mm256_extracti128_si256(pairs, 1)));
}

// Pixels changed.

VLVK_INLINE void store(std::uint8_t* to, const Pixels16& v) {
  store256(to, v.eight[0]);
  store256(to + 32, v.eight[1]);
}
/// Bytes 8 * kHalf + i of `v` to the first three bytes of pixel i.
template <int kHalf>
VLVK_INLINE __m256i toChannels(U8x16 v) {
  constexpr int k = 8 * kHalf;
  const __m256i places =
      _mm256_setr_epi8(k, k, k, -1, k + 1, k + 1, k + 1, -1, k + 2, k + 2, k + 2, -1, k + 3, k + 3, k + 3, -1, k + 4,
                       k + 4, k + 4, -1, k + 5, k + 5, k + 5, -1, k + 6, k + 6, k + 6, -1, k + 7, k + 7, k + 7, -1);
  return _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(v.v), places);
}
VLVK_INLINE Pixels16 shiftedChannels(const Pixels16& v, U8x16 up, U8x16 down) {
  return {{_mm256_subs_epu8(_mm256_adds_epu8(v.eight[0], toChannels<0>(up)), toChannels<0>(down)),
           _mm256_subs_epu8(_mm256_adds_epu8(v.eight[1], toChannels<1>(up)), toChannels<1>(down))}};
}
VLVK_INLINE Pixels16 withOpaqueAlpha(const Pixels16& v) {
  const __m256i alpha = _mm256_set1_epi32(static_cast<std::int32_t>(0xFF000000U));
  return {{_mm256_or_si256(v.eight[0], alpha), _mm256_or_si256(v.eight[1], alpha)}};
}
/// The odd 32-bit words of both, in order.
VLVK_INLINE __m256i oddWords(__m256i a, __m256i b) {
  const __m256 odd = _mm256_shuffle_ps(_mm256_castsi256_ps(a), _mm256_castsi256_ps(b), 0xDD);
  return _mm256_permute4x64_epi64(_mm256_castps_si256(odd), 0xD8);  // quarters 0, 2, 1, 3
}
VLVK_INLINE Pixels8 averagedBlocks(const Pixels16& upper, const Pixels16& lower) {
  const __m256i first = _mm256_avg_epu8(upper.eight[0], lower.eight[0]);
  const __m256i second = _mm256_avg_epu8(upper.eight[1], lower.eight[1]);
  return {_mm256_avg_epu8(evenWords(first, second), oddWords(first, second))};
}

}  // namespace vlvk::VLVK_TARGET

#include "simd/avx2/blend.h"      // IWYU pragma: export
#include "simd/avx2/columns.h"    // IWYU pragma: export
#include "simd/avx2/curves.h"     // IWYU pragma: export
#include "simd/avx2/quotients.h"  // IWYU pragma: export

#endif
