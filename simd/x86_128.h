/// 128-bit instructions of every x86-64 processor under plain names, which bytes128.h, sums128.h and pixels128.h put
/// vocabulary operations together of.
///
/// Numbers in names are bits of a lane; `Low` and `High` halves of a vector; `Sat` saturates, the others wrap.
#ifndef VLVK_SIMD_X86_128_H
#define VLVK_SIMD_X86_128_H

#include <emmintrin.h>

#include <cstdint>

#include "simd/inline.h"
#include "simd/inside_columns.h"

namespace vlvk::VLVK_TARGET {

using V128 = __m128i;
using F128 = __m128;

// Memory.

VLVK_INLINE V128 load128(const void* from) {
  return _mm_loadu_si128(static_cast<const __m128i*>(from));
}
/// The upper half is zero.
VLVK_INLINE V128 loadLow128(const void* from) {
  return _mm_loadl_epi64(static_cast<const __m128i*>(from));
}
VLVK_INLINE F128 loadFloats(const float* from) {
  return _mm_loadu_ps(from);
}
VLVK_INLINE void store128(void* to, V128 v) {
  _mm_storeu_si128(static_cast<__m128i*>(to), v);
}
VLVK_INLINE void storeLow128(void* to, V128 v) {
  _mm_storel_epi64(static_cast<__m128i*>(to), v);
}
VLVK_INLINE void storeFloats(float* to, F128 v) {
  _mm_storeu_ps(to, v);
}
VLVK_INLINE V128 zero128() {
  return _mm_setzero_si128();
}
VLVK_INLINE V128 all8(std::uint8_t value) {
  return _mm_set1_epi8(static_cast<char>(value));
}
VLVK_INLINE V128 all16(int value) {
  return _mm_set1_epi16(static_cast<std::int16_t>(value));
}
VLVK_INLINE V128 all32(std::uint32_t value) {
  return _mm_set1_epi32(static_cast<std::int32_t>(value));
}
VLVK_INLINE F128 allFloats(float value) {
  return _mm_set1_ps(value);
}

// Bits.

VLVK_INLINE V128 and128(V128 a, V128 b) {
  return _mm_and_si128(a, b);
}
VLVK_INLINE V128 or128(V128 a, V128 b) {
  return _mm_or_si128(a, b);
}
VLVK_INLINE V128 xor128(V128 a, V128 b) {
  return _mm_xor_si128(a, b);
}
VLVK_INLINE V128 select128(V128 mask, V128 ifSet, V128 ifClear) {
  return _mm_or_si128(_mm_and_si128(mask, ifSet), _mm_andnot_si128(mask, ifClear));
}
template <int kBits>
VLVK_INLINE V128 shiftLeft16(V128 v) {
  return _mm_slli_epi16(v, kBits);
}
template <int kBits>
VLVK_INLINE V128 shiftRight16(V128 v) {
  return _mm_srli_epi16(v, kBits);
}
template <int kBits>
VLVK_INLINE V128 shiftRightSigned16(V128 v) {
  return _mm_srai_epi16(v, kBits);
}
template <int kBits>
VLVK_INLINE V128 shiftLeft32(V128 v) {
  return _mm_slli_epi32(v, kBits);
}
template <int kBits>
VLVK_INLINE V128 shiftRight32(V128 v) {
  return _mm_srli_epi32(v, kBits);
}
template <int kBits>
VLVK_INLINE V128 shiftRightSigned32(V128 v) {
  return _mm_srai_epi32(v, kBits);
}

// Integers.

VLVK_INLINE V128 sub8(V128 a, V128 b) {
  return _mm_sub_epi8(a, b);
}
VLVK_INLINE V128 addSat8(V128 a, V128 b) {
  return _mm_adds_epu8(a, b);
}
VLVK_INLINE V128 subSat8(V128 a, V128 b) {
  return _mm_subs_epu8(a, b);
}
/// Rounded up.
VLVK_INLINE V128 average8(V128 a, V128 b) {
  return _mm_avg_epu8(a, b);
}
VLVK_INLINE V128 add16(V128 a, V128 b) {
  return _mm_add_epi16(a, b);
}
VLVK_INLINE V128 sub16(V128 a, V128 b) {
  return _mm_sub_epi16(a, b);
}
VLVK_INLINE V128 addSatSigned16(V128 a, V128 b) {
  return _mm_adds_epi16(a, b);
}
VLVK_INLINE V128 mul16(V128 a, V128 b) {
  return _mm_mullo_epi16(a, b);
}
VLVK_INLINE V128 add32(V128 a, V128 b) {
  return _mm_add_epi32(a, b);
}
VLVK_INLINE V128 sub32(V128 a, V128 b) {
  return _mm_sub_epi32(a, b);
}
/// All bits set where it holds.
VLVK_INLINE V128 greaterSigned32(V128 a, V128 b) {
  return _mm_cmpgt_epi32(a, b);
}
/// Products of signed 16-bit lanes, those of each pair added.
VLVK_INLINE V128 pairProductSums32(V128 a, V128 b) {
  return _mm_madd_epi16(a, b);
}
/// Signed 16-bit lanes, those of each pair added.
VLVK_INLINE V128 pairSums32(V128 v) {
  return _mm_madd_epi16(v, _mm_set1_epi16(1));
}

struct TwoV128 {
  V128 low;
  V128 high;
};
/// Products of signed 16-bit lanes.
VLVK_INLINE TwoV128 products32(V128 a, V128 b) {
  const V128 low = _mm_mullo_epi16(a, b);
  const V128 high = _mm_mulhi_epi16(a, b);
  return {_mm_unpacklo_epi16(low, high), _mm_unpackhi_epi16(low, high)};
}

// Order and width of lanes.

VLVK_INLINE V128 interleaveLow8(V128 a, V128 b) {
  return _mm_unpacklo_epi8(a, b);
}
VLVK_INLINE V128 interleaveHigh8(V128 a, V128 b) {
  return _mm_unpackhi_epi8(a, b);
}
VLVK_INLINE V128 interleaveLow16(V128 a, V128 b) {
  return _mm_unpacklo_epi16(a, b);
}
VLVK_INLINE V128 interleaveHigh16(V128 a, V128 b) {
  return _mm_unpackhi_epi16(a, b);
}
VLVK_INLINE V128 twiceLow64(V128 v) {
  return _mm_unpacklo_epi64(v, v);
}
VLVK_INLINE V128 twiceHigh64(V128 v) {
  return _mm_unpackhi_epi64(v, v);
}
VLVK_INLINE V128 evenWords(V128 a, V128 b) {
  return _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(a), _mm_castsi128_ps(b), 0x88));
}
VLVK_INLINE V128 oddWords(V128 a, V128 b) {
  return _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(a), _mm_castsi128_ps(b), 0xDD));
}
VLVK_INLINE V128 splatLast32(V128 v) {
  return _mm_shuffle_epi32(v, 0xFF);
}
/// Lanes move up, zeros come in.
template <int kLanes>
VLVK_INLINE V128 moveUp32(V128 v) {
  return _mm_slli_si128(v, 4 * kLanes);
}
VLVK_INLINE V128 widenLow8(V128 v) {
  return _mm_unpacklo_epi8(v, zero128());
}
VLVK_INLINE V128 widenHigh8(V128 v) {
  return _mm_unpackhi_epi8(v, zero128());
}
VLVK_INLINE V128 widenLow16(V128 v) {
  return _mm_unpacklo_epi16(v, zero128());
}
VLVK_INLINE V128 widenHigh16(V128 v) {
  return _mm_unpackhi_epi16(v, zero128());
}
/// Signed words to unsigned bytes.
VLVK_INLINE V128 narrowSat16(V128 low, V128 high) {
  return _mm_packus_epi16(low, high);
}
/// Signed to signed words.
VLVK_INLINE V128 narrowSat32(V128 low, V128 high) {
  return _mm_packs_epi32(low, high);
}

// Single precision.

VLVK_INLINE F128 addFloats(F128 a, F128 b) {
  return _mm_add_ps(a, b);
}
VLVK_INLINE F128 subFloats(F128 a, F128 b) {
  return _mm_sub_ps(a, b);
}
VLVK_INLINE F128 mulFloats(F128 a, F128 b) {
  return _mm_mul_ps(a, b);
}
VLVK_INLINE F128 divFloats(F128 a, F128 b) {
  return _mm_div_ps(a, b);
}
/// The second operand where one is NaN or both are equal.
VLVK_INLINE F128 minFloats(F128 a, F128 b) {
  return _mm_min_ps(a, b);
}
VLVK_INLINE F128 maxFloats(F128 a, F128 b) {
  return _mm_max_ps(a, b);
}
VLVK_INLINE F128 floatsOfSigned(V128 v) {
  return _mm_cvtepi32_ps(v);
}
VLVK_INLINE V128 bitsOf(F128 v) {
  return _mm_castps_si128(v);
}
VLVK_INLINE F128 floatsOf(V128 bits) {
  return _mm_castsi128_ps(bits);
}

}  // namespace vlvk::VLVK_TARGET

#endif
