/// The vector vocabulary on every x86-64 processor: what is not made alike on all 128-bit targets. scalar.h tells what
/// each operation means.
#ifndef VLVK_SIMD_SSE2_H
#define VLVK_SIMD_SSE2_H

#include "simd/half_up.h"
#include "simd/inside_columns.h"
#include "simd/x86_128.h"

namespace vlvk::VLVK_TARGET {

inline constexpr InsideColumns kInsideColumns = kInRuns;

/// Both 16-bit halves convert exactly, so only the last addition rounds.
VLVK_INLINE F128 floatsOfUnsigned(V128 v) {
  const F128 upper = floatsOfSigned(shiftRight32<16>(v));
  const F128 lower = floatsOfSigned(and128(v, all32(0xFFFF)));
  return addFloats(mulFloats(upper, allFloats(65536.0F)), lower);
}

}  // namespace vlvk::VLVK_TARGET

#include "simd/pixels128.h"
#include "simd/sums128.h"

namespace vlvk::VLVK_TARGET {

/// What has the low 8 bits of the conversion, in 32-bit lanes. From 2^31 on a float is a multiple of 256, and the
/// conversion's overflow value has the same low bits; what saturates has them all set.
VLVK_INLINE V128 truncLow4(F128 v) {
  const F128 positive = maxFloats(v, allFloats(0));  // the second operand where v is NaN
  const V128 saturated = bitsOf(_mm_cmpge_ps(positive, allFloats(4294967296.0F)));
  return or128(_mm_cvttps_epi32(positive), saturated);
}
VLVK_INLINE U8x8 truncToLowBytes(F32x8 v) {
  return lowBytes(truncLow4(v.low), truncLow4(v.high));
}
VLVK_INLINE U8x16 truncToLowBytes(F32x8 even, F32x8 odd) {
  const V128 low = narrowSat32(_mm_cvttps_epi32(even.low), _mm_cvttps_epi32(even.high));
  const V128 high = narrowSat32(_mm_cvttps_epi32(odd.low), _mm_cvttps_epi32(odd.high));
  return {or128(evenBytes16(low), shiftLeft16<8>(high))};
}

VLVK_INLINE V128 roundHalfUp4(F128 v) {
  const F128 whole = _mm_and_ps(_mm_cmplt_ps(v, allFloats(kWholeBelow)), _mm_cmpge_ps(v, allFloats(kSmallest)));
  const F128 tooLarge = _mm_cmpge_ps(v, allFloats(kTooLarge));
  // What overflows becomes -2^31, which is right at the lower end alone.
  const V128 truncated = _mm_cvttps_epi32(addFloats(v, allFloats(kAlmostHalf)));
  return sub32(or128(truncated, bitsOf(tooLarge)), bitsOf(whole));
}
VLVK_INLINE U8x8 roundHalfUpToLowBytes(F32x8 v) {
  return lowBytes(roundHalfUp4(v.low), roundHalfUp4(v.high));
}

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
  store128(lane, _mm_min_epu8(index.v, all8(64)));
  const auto pair = [&](int i) __attribute__((always_inline)) {
    return static_cast<std::int16_t>(table.entry[lane[2 * i]] | table.entry[lane[2 * i + 1]] << 8);
  };
  // Through registers: bytes stored one by one could not be loaded as a vector without waiting.
  return {_mm_setr_epi16(pair(0), pair(1), pair(2), pair(3), pair(4), pair(5), pair(6), pair(7))};
}

}  // namespace vlvk::VLVK_TARGET

#include "simd/blend_by_16.h"    // IWYU pragma: export
#include "simd/scalar/curves.h"  // IWYU pragma: export

#endif
