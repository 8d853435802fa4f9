/// Integer and conversion arithmetic as ARM processors do it, without undefined behaviour.
#ifndef VLVK_BASE_ARM_MATH_H
#define VLVK_BASE_ARM_MATH_H

#include <cstdint>
#include <limits>

namespace vlvk {

/// Product of two 32-bit integers, wrapping modulo 2^32.
constexpr std::int32_t wrapMul(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

/// Sum of two 32-bit integers, wrapping modulo 2^32.
constexpr std::int32_t wrapAdd(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

/// Difference of two 32-bit integers, wrapping modulo 2^32.
constexpr std::int32_t wrapSub(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

/// Float to integer: toward zero, saturating at the ends of `Integer` (at most 32 bits wide), NaN gives 0.
template <class Integer, class Float>
constexpr Integer truncSaturate(Float value) {
  // Both bounds + 1 are powers of two (or zero) and so exact in every float type.
  constexpr Float kEnd = static_cast<Float>(static_cast<double>(std::numeric_limits<Integer>::max()) + 1.0);
  constexpr Float kBegin = static_cast<Float>(std::numeric_limits<Integer>::min());
  if (value != value) return 0;  // NOLINT(misc-redundant-expression): NaN
  if (value >= kEnd) return std::numeric_limits<Integer>::max();
  if (value <= kBegin) return std::numeric_limits<Integer>::min();
  return static_cast<Integer>(value);
}

/// Columns in the whole groups of 8 of a row.
constexpr std::int32_t wholeGroups(std::int32_t width) {
  return width > 0 ? width & ~7 : 0;
}

/// `value` rounded up to a multiple of 8, saturating at the largest one.
constexpr std::int32_t roundUpTo8(std::int32_t value) {
  constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max() & ~7;
  return value >= kLargest ? kLargest : (value + 7) & ~7;
}

}  // namespace vlvk

#endif
