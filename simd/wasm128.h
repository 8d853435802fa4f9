/// The vector vocabulary in WebAssembly modules with 128-bit instructions: those instructions under plain names, and
/// what is not made alike on all 128-bit targets. scalar.h tells what each operation means.
///
/// Engines compile these instructions once more. Chosen are those that one instruction of x86-64 and of ARM does: above
/// all shuffles stay within what engines recognise (interleaving, even and odd lanes).
#ifndef VLVK_SIMD_WASM128_H
#define VLVK_SIMD_WASM128_H

#include <wasm_simd128.h>

#include <cstdint>

#include "simd/half_up.h"
#include "simd/inline.h"
#include "simd/inside_columns.h"

namespace vlvk::VLVK_TARGET {

using V128 = v128_t;
using F128 = v128_t;

inline constexpr InsideColumns kInsideColumns = kInRuns;

// Memory.

VLVK_INLINE V128 load128(const void* from) {
  return wasm_v128_load(from);
}
VLVK_INLINE V128 loadLow128(const void* from) {
  return wasm_v128_load64_zero(from);
}
VLVK_INLINE F128 loadFloats(const float* from) {
  return wasm_v128_load(from);
}
VLVK_INLINE void store128(void* to, V128 v) {
  wasm_v128_store(to, v);
}
VLVK_INLINE void storeLow128(void* to, V128 v) {
  wasm_v128_store64_lane(to, v, 0);
}
VLVK_INLINE void storeFloats(float* to, F128 v) {
  wasm_v128_store(to, v);
}
VLVK_INLINE V128 zero128() {
  return wasm_i32x4_const_splat(0);
}
VLVK_INLINE V128 all8(std::uint8_t value) {
  return wasm_u8x16_splat(value);
}
VLVK_INLINE V128 all16(int value) {
  return wasm_i16x8_splat(static_cast<std::int16_t>(value));
}
VLVK_INLINE V128 all32(std::uint32_t value) {
  return wasm_u32x4_splat(value);
}
VLVK_INLINE F128 allFloats(float value) {
  return wasm_f32x4_splat(value);
}

// Bits.

VLVK_INLINE V128 and128(V128 a, V128 b) {
  return wasm_v128_and(a, b);
}
VLVK_INLINE V128 or128(V128 a, V128 b) {
  return wasm_v128_or(a, b);
}
VLVK_INLINE V128 xor128(V128 a, V128 b) {
  return wasm_v128_xor(a, b);
}
VLVK_INLINE V128 select128(V128 mask, V128 ifSet, V128 ifClear) {
  return wasm_v128_bitselect(ifSet, ifClear, mask);
}
template <int kBits>
VLVK_INLINE V128 shiftLeft16(V128 v) {
  return wasm_i16x8_shl(v, kBits);
}
template <int kBits>
VLVK_INLINE V128 shiftRight16(V128 v) {
  return wasm_u16x8_shr(v, kBits);
}
template <int kBits>
VLVK_INLINE V128 shiftRightSigned16(V128 v) {
  return wasm_i16x8_shr(v, kBits);
}
template <int kBits>
VLVK_INLINE V128 shiftLeft32(V128 v) {
  return wasm_i32x4_shl(v, kBits);
}
template <int kBits>
VLVK_INLINE V128 shiftRight32(V128 v) {
  return wasm_u32x4_shr(v, kBits);
}
template <int kBits>
VLVK_INLINE V128 shiftRightSigned32(V128 v) {
  return wasm_i32x4_shr(v, kBits);
}

// Integers.

VLVK_INLINE V128 sub8(V128 a, V128 b) {
  return wasm_i8x16_sub(a, b);
}
VLVK_INLINE V128 addSat8(V128 a, V128 b) {
  return wasm_u8x16_add_sat(a, b);
}
VLVK_INLINE V128 subSat8(V128 a, V128 b) {
  return wasm_u8x16_sub_sat(a, b);
}
/// Rounded up.
VLVK_INLINE V128 average8(V128 a, V128 b) {
  return wasm_u8x16_avgr(a, b);
}
VLVK_INLINE V128 add16(V128 a, V128 b) {
  return wasm_i16x8_add(a, b);
}
VLVK_INLINE V128 sub16(V128 a, V128 b) {
  return wasm_i16x8_sub(a, b);
}
VLVK_INLINE V128 addSatSigned16(V128 a, V128 b) {
  return wasm_i16x8_add_sat(a, b);
}
VLVK_INLINE V128 mul16(V128 a, V128 b) {
  return wasm_i16x8_mul(a, b);
}
VLVK_INLINE V128 add32(V128 a, V128 b) {
  return wasm_i32x4_add(a, b);
}
VLVK_INLINE V128 sub32(V128 a, V128 b) {
  return wasm_i32x4_sub(a, b);
}
/// All bits set where it holds.
VLVK_INLINE V128 greaterSigned32(V128 a, V128 b) {
  return wasm_i32x4_gt(a, b);
}
/// Products of signed 16-bit lanes, those of each pair added.
VLVK_INLINE V128 pairProductSums32(V128 a, V128 b) {
  return wasm_i32x4_dot_i16x8(a, b);
}
/// Signed 16-bit lanes, those of each pair added.
VLVK_INLINE V128 pairSums32(V128 v) {
  return wasm_i32x4_extadd_pairwise_i16x8(v);
}

struct TwoV128 {
  V128 low;
  V128 high;
};
/// Products of signed 16-bit lanes.
VLVK_INLINE TwoV128 products32(V128 a, V128 b) {
  return {wasm_i32x4_extmul_low_i16x8(a, b), wasm_i32x4_extmul_high_i16x8(a, b)};
}

// Order and width of lanes.

VLVK_INLINE V128 interleaveLow8(V128 a, V128 b) {
  return wasm_i8x16_shuffle(a, b, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
}
VLVK_INLINE V128 interleaveHigh8(V128 a, V128 b) {
  return wasm_i8x16_shuffle(a, b, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31);
}
VLVK_INLINE V128 interleaveLow16(V128 a, V128 b) {
  return wasm_i16x8_shuffle(a, b, 0, 8, 1, 9, 2, 10, 3, 11);
}
VLVK_INLINE V128 interleaveHigh16(V128 a, V128 b) {
  return wasm_i16x8_shuffle(a, b, 4, 12, 5, 13, 6, 14, 7, 15);
}
VLVK_INLINE V128 twiceLow64(V128 v) {
  return wasm_i64x2_shuffle(v, v, 0, 0);
}
VLVK_INLINE V128 twiceHigh64(V128 v) {
  return wasm_i64x2_shuffle(v, v, 1, 1);
}
VLVK_INLINE V128 evenWords(V128 a, V128 b) {
  return wasm_i32x4_shuffle(a, b, 0, 2, 4, 6);
}
VLVK_INLINE V128 oddWords(V128 a, V128 b) {
  return wasm_i32x4_shuffle(a, b, 1, 3, 5, 7);
}
VLVK_INLINE V128 splatLast32(V128 v) {
  return wasm_i32x4_shuffle(v, v, 3, 3, 3, 3);
}
/// Lanes move up, zeros come in.
template <int kLanes>
VLVK_INLINE V128 moveUp32(V128 v) {
  return wasm_i32x4_shuffle(zero128(), v, 4 - kLanes, 5 - kLanes, 6 - kLanes, 7 - kLanes);
}
VLVK_INLINE V128 widenLow8(V128 v) {
  return wasm_u16x8_extend_low_u8x16(v);
}
VLVK_INLINE V128 widenHigh8(V128 v) {
  return wasm_u16x8_extend_high_u8x16(v);
}
VLVK_INLINE V128 widenLow16(V128 v) {
  return wasm_u32x4_extend_low_u16x8(v);
}
VLVK_INLINE V128 widenHigh16(V128 v) {
  return wasm_u32x4_extend_high_u16x8(v);
}
/// Signed words to unsigned bytes.
VLVK_INLINE V128 narrowSat16(V128 low, V128 high) {
  return wasm_u8x16_narrow_i16x8(low, high);
}
/// Signed to signed words.
VLVK_INLINE V128 narrowSat32(V128 low, V128 high) {
  return wasm_i16x8_narrow_i32x4(low, high);
}

// Single precision.

VLVK_INLINE F128 addFloats(F128 a, F128 b) {
  return wasm_f32x4_add(a, b);
}
VLVK_INLINE F128 subFloats(F128 a, F128 b) {
  return wasm_f32x4_sub(a, b);
}
VLVK_INLINE F128 mulFloats(F128 a, F128 b) {
  return wasm_f32x4_mul(a, b);
}
VLVK_INLINE F128 divFloats(F128 a, F128 b) {
  return wasm_f32x4_div(a, b);
}
/// The pseudo-minimum is a comparison and a choice, without the cases of NaN and of zeros with a sign.
VLVK_INLINE F128 minFloats(F128 a, F128 b) {
  return wasm_f32x4_pmin(b, a);
}
VLVK_INLINE F128 maxFloats(F128 a, F128 b) {
  return wasm_f32x4_pmax(b, a);
}
VLVK_INLINE F128 floatsOfSigned(V128 v) {
  return wasm_f32x4_convert_i32x4(v);
}
VLVK_INLINE F128 floatsOfUnsigned(V128 v) {
  return wasm_f32x4_convert_u32x4(v);
}
VLVK_INLINE V128 bitsOf(F128 v) {
  return v;
}
VLVK_INLINE F128 floatsOf(V128 bits) {
  return bits;
}

}  // namespace vlvk::VLVK_TARGET

#include "simd/pixels128.h"
#include "simd/sums128.h"

namespace vlvk::VLVK_TARGET {

VLVK_INLINE U8x8 truncToLowBytes(F32x8 v) {
  return lowBytes(wasm_u32x4_trunc_sat_f32x4(v.low), wasm_u32x4_trunc_sat_f32x4(v.high));
}
VLVK_INLINE V128 roundHalfUp4(F128 v) {
  const V128 whole = and128(wasm_f32x4_lt(v, allFloats(kWholeBelow)), wasm_f32x4_ge(v, allFloats(kSmallest)));
  return sub32(wasm_i32x4_trunc_sat_f32x4(addFloats(v, allFloats(kAlmostHalf))), whole);
}
VLVK_INLINE U8x8 roundHalfUpToLowBytes(F32x8 v) {
  return lowBytes(roundHalfUp4(v.low), roundHalfUp4(v.high));
}
/// v rounded down, in the low bits: beyond 2^23 a float's last bit is 1. Conversions saturate, which takes long.
VLVK_INLINE v128_t floorBits(v128_t v) {
  return wasm_f32x4_add(wasm_f32x4_floor(v), wasm_f32x4_const_splat(8388608.0F));
}
VLVK_INLINE v128_t lowBytePairs(v128_t even, v128_t odd) {
  const v128_t low = wasm_v128_and(floorBits(even), wasm_i32x4_const_splat(0xFF));
  const v128_t high = wasm_v128_and(wasm_i32x4_shl(floorBits(odd), 8), wasm_i32x4_const_splat(0xFF00));
  return wasm_v128_or(low, high);
}
VLVK_INLINE U8x16 truncToLowBytes(F32x8 even, F32x8 odd) {
  return {wasm_u16x8_narrow_i32x4(lowBytePairs(even.low, odd.low), lowBytePairs(even.high, odd.high))};
}

struct Table64 {
  v128_t sixteen[4];
};
VLVK_INLINE Table64 loadTable64(const std::uint8_t* from) {
  return {{wasm_v128_load(from), wasm_v128_load(from + 16), wasm_v128_load(from + 32), wasm_v128_load(from + 48)}};
}
/// A lookup gives 0 outside its 16 entries.
VLVK_INLINE U8x16 lookup(const Table64& table, U8x16 index) {
  v128_t found = wasm_i8x16_swizzle(table.sixteen[0], index.v);
  for (int i = 1; i < 4; ++i) {
    const v128_t from = wasm_i8x16_sub(index.v, wasm_i8x16_splat(static_cast<std::int8_t>(16 * i)));
    found = wasm_v128_or(found, wasm_i8x16_swizzle(table.sixteen[i], from));
  }
  return {found};
}

}  // namespace vlvk::VLVK_TARGET

#include "simd/blend_by_16.h"    // IWYU pragma: export
#include "simd/scalar/curves.h"  // IWYU pragma: export

#endif
