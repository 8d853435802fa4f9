/// Quotients and their conversion to bytes, with AVX2.
#ifndef VLVK_SIMD_AVX2_QUOTIENTS_H
#define VLVK_SIMD_AVX2_QUOTIENTS_H

#include "simd/avx2.h"
#include "simd/half_up.h"

namespace vlvk::VLVK_TARGET {

VLVK_INLINE F32x8 div(F32x8 a, F32x8 b) {
  return {_mm256_div_ps(a.v, b.v)};
}
VLVK_INLINE U8x8 roundHalfUpToLowBytes(F32x8 v) {
  const auto set = [](float value) { return _mm256_set1_ps(value); };
  const __m256 whole =
      _mm256_and_ps(_mm256_cmp_ps(v.v, set(kWholeBelow), _CMP_LT_OQ), _mm256_cmp_ps(v.v, set(kSmallest), _CMP_GE_OQ));
  const __m256 tooLarge = _mm256_cmp_ps(v.v, set(kTooLarge), _CMP_GE_OQ);
  // What overflows becomes -2^31, which is right at the lower end alone.
  const __m256i truncated = _mm256_cvttps_epi32(_mm256_add_ps(v.v, set(kAlmostHalf)));
  const __m256i saturated = _mm256_or_si256(truncated, _mm256_castps_si256(tooLarge));
  return lowBytes(_mm256_sub_epi32(saturated, _mm256_castps_si256(whole)));
}

}  // namespace vlvk::VLVK_TARGET

#endif
