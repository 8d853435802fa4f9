/// 128-bit part of the vector vocabulary on x86-64, shared by both of its targets; needs nothing beyond the baseline.
/// scalar.h tells what each operation means.
#ifndef VLVK_SIMD_X86_128_H
#define VLVK_SIMD_X86_128_H

#include <emmintrin.h>

#include <cstdint>

#include "simd/channel_weights.h"
#include "simd/inline.h"

namespace vlvk::VLVK_TARGET {

/// The lower 8 bytes count.
struct U8x8 {
  __m128i v;
};
struct U8x16 {
  __m128i v;
};
struct U16x8 {
  __m128i v;
};

VLVK_INLINE __m128i loadUnaligned(const void* from) {
  return _mm_loadu_si128(static_cast<const __m128i*>(from));
}
VLVK_INLINE void storeUnaligned(void* to, __m128i v) {
  _mm_storeu_si128(static_cast<__m128i*>(to), v);
}
VLVK_INLINE __m128i zero128() {
  return _mm_setzero_si128();
}

// Memory.

VLVK_INLINE U8x8 loadU8x8(const std::uint8_t* from) {
  return {_mm_loadl_epi64(static_cast<const __m128i*>(static_cast<const void*>(from)))};
}
VLVK_INLINE U8x16 loadU8x16(const std::uint8_t* from) {
  return {loadUnaligned(from)};
}
VLVK_INLINE U16x8 load8(const std::uint16_t* from) {
  return {loadUnaligned(from)};
}
VLVK_INLINE void store(std::uint8_t* to, U8x8 v) {
  _mm_storel_epi64(static_cast<__m128i*>(static_cast<void*>(to)), v.v);
}
VLVK_INLINE void store(std::uint8_t* to, U8x16 v) {
  storeUnaligned(to, v.v);
}
VLVK_INLINE void store(std::uint16_t* to, U16x8 v) {
  storeUnaligned(to, v.v);
}

VLVK_INLINE U16x8 splat8(std::uint16_t value) {
  return {_mm_set1_epi16(static_cast<std::int16_t>(value))};
}

// Running sums.

VLVK_INLINE __m128i widen(U8x8 v) {
  return _mm_unpacklo_epi8(v.v, zero128());
}

VLVK_INLINE U16x8 addDifference(U16x8 sums, U8x8 a, U8x8 b) {
  return {_mm_sub_epi16(_mm_add_epi16(sums.v, widen(a)), widen(b))};
}
// Skin weights.

VLVK_INLINE U8x16 splat16(std::uint8_t value) {
  return {_mm_set1_epi8(static_cast<char>(value))};
}
VLVK_INLINE U8x16 splatPair16(std::uint8_t first, std::uint8_t second) {
  return {_mm_set1_epi16(static_cast<std::int16_t>(first | second << 8))};
}
VLVK_INLINE U8x16 absDifference(U8x16 a, U8x16 b) {
  return {_mm_or_si128(_mm_subs_epu8(a.v, b.v), _mm_subs_epu8(b.v, a.v))};
}
VLVK_INLINE U8x16 mulPairsShift6(U8x16 v) {
  const __m128i first = _mm_and_si128(v.v, _mm_set1_epi16(0xFF));
  const __m128i second = _mm_srli_epi16(v.v, 8);
  const __m128i weight = _mm_srli_epi16(_mm_mullo_epi16(first, second), 6);
  return {_mm_or_si128(weight, _mm_slli_epi16(weight, 8))};
}

VLVK_INLINE U8x16 subSat(U8x16 a, U8x16 b) {
  return {_mm_subs_epu8(a.v, b.v)};
}
VLVK_INLINE U8x16 interleaved(U8x8 a, U8x8 b) {
  return {_mm_unpacklo_epi8(a.v, b.v)};
}
VLVK_INLINE U8x8 evenBytes(U8x16 v) {
  return {_mm_packus_epi16(_mm_and_si128(v.v, _mm_set1_epi16(0xFF)), zero128())};
}
VLVK_INLINE U8x8 oddBytes(U8x16 v) {
  return {_mm_packus_epi16(_mm_srli_epi16(v.v, 8), zero128())};
}

}  // namespace vlvk::VLVK_TARGET

#endif
