/// Vocabulary operations on one 128-bit vector, made of a target's instructions under plain names (x86_128.h,
/// wasm128.h), which the target includes first. scalar.h tells what each operation means.
#ifndef VLVK_SIMD_BYTES128_H
#define VLVK_SIMD_BYTES128_H

#include <cstdint>

#include "simd/inline.h"

namespace vlvk::VLVK_TARGET {

/// The lower 8 bytes count.
struct U8x8 {
  V128 v;
};
struct U8x16 {
  V128 v;
};
struct U16x8 {
  V128 v;
};

// Memory.

VLVK_INLINE U8x8 loadU8x8(const std::uint8_t* from) {
  return {loadLow128(from)};
}
VLVK_INLINE U8x16 loadU8x16(const std::uint8_t* from) {
  return {load128(from)};
}
VLVK_INLINE U16x8 load8(const std::uint16_t* from) {
  return {load128(from)};
}
VLVK_INLINE void store(std::uint8_t* to, U8x8 v) {
  storeLow128(to, v.v);
}
VLVK_INLINE void store(std::uint8_t* to, U8x16 v) {
  store128(to, v.v);
}
VLVK_INLINE void store(std::uint16_t* to, U16x8 v) {
  store128(to, v.v);
}
VLVK_INLINE U16x8 splat8(std::uint16_t value) {
  return {all16(value)};
}

// Running sums.

VLVK_INLINE U16x8 addDifference(U16x8 sums, U8x8 a, U8x8 b) {
  return {sub16(add16(sums.v, widenLow8(a.v)), widenLow8(b.v))};
}

// Skin weights.

VLVK_INLINE U8x16 splatPair16(std::uint8_t first, std::uint8_t second) {
  return {all16(first | second << 8)};
}
VLVK_INLINE U8x16 absDifference(U8x16 a, U8x16 b) {
  return {or128(subSat8(a.v, b.v), subSat8(b.v, a.v))};
}
VLVK_INLINE V128 evenBytes16(V128 v) {
  return and128(v, all16(0xFF));
}
VLVK_INLINE V128 oddBytes16(V128 v) {
  return shiftRight16<8>(v);
}
VLVK_INLINE U8x16 mulPairsShift6(U8x16 v) {
  const V128 weight = shiftRight16<6>(mul16(evenBytes16(v.v), oddBytes16(v.v)));
  return {or128(weight, shiftLeft16<8>(weight))};
}
VLVK_INLINE U8x16 subSat(U8x16 a, U8x16 b) {
  return {subSat8(a.v, b.v)};
}
VLVK_INLINE U8x16 interleaved(U8x8 a, U8x8 b) {
  return {interleaveLow8(a.v, b.v)};
}
VLVK_INLINE U8x8 evenBytes(U8x16 v) {
  return {narrowSat16(evenBytes16(v.v), zero128())};
}
VLVK_INLINE U8x8 oddBytes(U8x16 v) {
  return {narrowSat16(oddBytes16(v.v), zero128())};
}

}  // namespace vlvk::VLVK_TARGET

#endif
