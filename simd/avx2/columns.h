/// Column sums of 16 columns, with AVX2.
#ifndef VLVK_SIMD_AVX2_COLUMNS_H
#define VLVK_SIMD_AVX2_COLUMNS_H

#include "simd/avx2.h"

namespace vlvk::VLVK_TARGET {

/// Multiply-adds of neighbours: a and b alternate.
VLVK_INLINE void slideSums16(std::uint16_t* sums, U8x16 a, U8x16 b) {
  const __m256i both = _mm256_set_m128i(_mm_unpackhi_epi8(a.v, b.v), _mm_unpacklo_epi8(a.v, b.v));
  const __m256i steps = _mm256_maddubs_epi16(both, _mm256_set1_epi16(static_cast<std::int16_t>(0xFF01)));
  store256(sums, _mm256_add_epi16(load256(sums), steps));
}
/// `both` holds a, b, a, b ... of 8 columns.
VLVK_INLINE void slideSquares8(std::uint32_t* squares, __m128i both) {
  const __m256i factors = _mm256_cvtepu8_epi16(both);
  const __m256i signs = _mm256_set1_epi32(static_cast<std::int32_t>(0xFFFF0001U));
  const __m256i steps = _mm256_madd_epi16(factors, _mm256_sign_epi16(factors, signs));
  store256(squares, _mm256_add_epi32(load256(squares), steps));
}
VLVK_INLINE void slideSquares16(std::uint32_t* squares, U8x16 a, U8x16 b) {
  slideSquares8(squares, _mm_unpacklo_epi8(a.v, b.v));
  slideSquares8(squares + 8, _mm_unpackhi_epi8(a.v, b.v));
}

}  // namespace vlvk::VLVK_TARGET

#endif
