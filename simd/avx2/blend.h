/// The skin-weighted blend of a row pair with AVX2: 32 columns of one row in a register. blend_by_16.h tells what each
/// operation means.
#ifndef VLVK_SIMD_AVX2_BLEND_H
#define VLVK_SIMD_AVX2_BLEND_H

#include "simd/avx2.h"

namespace vlvk::VLVK_TARGET {

struct BlendBytes {
  __m256i v;
};
/// Members, as the compiler keeps arrays of registers in memory.
struct BlendRows {
  __m256i first;
  __m256i second;
};
inline constexpr int kBlendColumns = 32;

VLVK_INLINE BlendBytes loadBlendBytes(const std::uint8_t* from) {
  return {load256(from)};
}
VLVK_INLINE BlendRows loadBlendRows(const std::uint8_t* from0, const std::uint8_t* from1) {
  return {load256(from0), load256(from1)};
}
VLVK_INLINE void storeBlendRows(std::uint8_t* to0, std::uint8_t* to1, BlendRows v) {
  store256(to0, v.first);
  store256(to1, v.second);
}
VLVK_INLINE BlendBytes splatBlendPair(std::uint8_t first, std::uint8_t second) {
  return {_mm256_set1_epi16(static_cast<std::int16_t>(first | second << 8))};
}
VLVK_INLINE BlendBytes absDifference(BlendBytes a, BlendBytes b) {
  return {_mm256_or_si256(_mm256_subs_epu8(a.v, b.v), _mm256_subs_epu8(b.v, a.v))};
}

/// The first three quarters of Table64.
struct Table48 {
  __m128i quarter[3];
};
/// As for 16 indices.
template <int kQuarters>
VLVK_INLINE BlendBytes lookUpQuarters(const __m128i* quarters, BlendBytes index) {
  const __m256i top = _mm256_set1_epi8(0x70);
  __m256i result = _mm256_setzero_si256();
  for (int q = 0; q < kQuarters; ++q) {
    const __m256i local = _mm256_sub_epi8(index.v, _mm256_set1_epi8(static_cast<char>(16 * q)));
    const __m256i entries = _mm256_broadcastsi128_si256(quarters[q]);
    result = _mm256_or_si256(result, _mm256_shuffle_epi8(entries, _mm256_adds_epu8(local, top)));
  }
  return {result};
}
VLVK_INLINE BlendBytes lookup(const Table48& table, BlendBytes index) {
  return lookUpQuarters<3>(table.quarter, index);
}
VLVK_INLINE BlendBytes lookup(const Table64& table, BlendBytes index) {
  return lookUpQuarters<4>(table.quarter, index);
}
/// Skin that spreads no wider than usual has no weights in the last quarter.
template <class Use>
VLVK_INLINE void withBlendTable(const std::uint8_t* from, const Use& use) {
  const Table64 table = loadTable64(from);
  const int zeros = _mm_movemask_epi8(_mm_cmpeq_epi8(table.quarter[3], zero128()));
  if (zeros == 0xFFFF) {
    use(Table48{{table.quarter[0], table.quarter[1], table.quarter[2]}});
  } else {
    use(table);
  }
}

VLVK_INLINE BlendBytes mulPairsShift6(BlendBytes v) {
  const __m256i first = _mm256_and_si256(v.v, _mm256_set1_epi16(0xFF));
  const __m256i second = _mm256_srli_epi16(v.v, 8);
  const __m256i weight = _mm256_srli_epi16(_mm256_mullo_epi16(first, second), 6);
  return {_mm256_or_si256(weight, _mm256_slli_epi16(weight, 8))};
}

/// Columns 0 .. 7 and 16 .. 23 of `low`, the others of `high`: rest and weight of each column in turn.
struct BlendShares {
  __m256i low;
  __m256i high;
};
VLVK_INLINE __m256i mixRow(__m256i a, __m256i b, BlendShares shares) {
  const __m256i low = _mm256_maddubs_epi16(_mm256_unpacklo_epi8(a, b), shares.low);
  const __m256i high = _mm256_maddubs_epi16(_mm256_unpackhi_epi8(a, b), shares.high);
  return _mm256_packus_epi16(_mm256_srli_epi16(low, 6), _mm256_srli_epi16(high, 6));
}
VLVK_INLINE BlendRows mixBy64ths(BlendRows a, BlendRows b, BlendBytes weight) {
  const __m256i rest = _mm256_sub_epi8(_mm256_set1_epi8(64), weight.v);
  const BlendShares shares = {_mm256_unpacklo_epi8(rest, weight.v), _mm256_unpackhi_epi8(rest, weight.v)};
  return {mixRow(a.first, b.first, shares), mixRow(a.second, b.second, shares)};
}

}  // namespace vlvk::VLVK_TARGET

#endif
