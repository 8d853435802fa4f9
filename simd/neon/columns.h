/// Column sums of 16 columns, on ARMv7 with NEON and on AArch64.
#ifndef VLVK_SIMD_NEON_COLUMNS_H
#define VLVK_SIMD_NEON_COLUMNS_H

#include "simd/neon.h"

namespace vlvk::VLVK_TARGET {

// AArch64 takes upper halves as they lie.
#if defined(__aarch64__)
VLVK_INLINE uint16x8_t addHigh(U8x16 a, U8x16 b) {
  return vaddl_high_u8(a.v, b.v);
}
VLVK_INLINE uint16x8_t subHigh(U8x16 a, U8x16 b) {
  return vsubl_high_u8(a.v, b.v);
}
#else
VLVK_INLINE uint16x8_t addHigh(U8x16 a, U8x16 b) {
  return vaddl_u8(vget_high_u8(a.v), vget_high_u8(b.v));
}
VLVK_INLINE uint16x8_t subHigh(U8x16 a, U8x16 b) {
  return vsubl_u8(vget_high_u8(a.v), vget_high_u8(b.v));
}
#endif
VLVK_INLINE U8x8 lowHalf(U8x16 v) {
  return {vget_low_u8(v.v)};
}
VLVK_INLINE void slideSums16(std::uint16_t* sums, U8x16 a, U8x16 b) {
  store(sums, addDifference(load8(sums), lowHalf(a), lowHalf(b)));
  store(sums + 8, U16x8{vaddq_u16(load8(sums + 8).v, subHigh(a, b))});
}
VLVK_INLINE void slideSquares16(std::uint32_t* squares, U8x16 a, U8x16 b) {
  store(squares, addSquareDifference(load8(squares), lowHalf(a), lowHalf(b)));
  store(squares + 8, addProducts(load8(squares + 8), addHigh(a, b), subHigh(a, b)));
}

}  // namespace vlvk::VLVK_TARGET

#endif
