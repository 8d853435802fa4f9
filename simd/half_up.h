/// Numbers for rounding half up in single precision, as roundHalfUpToLowBytes of scalar.h does in double precision.
#ifndef VLVK_SIMD_HALF_UP_H
#define VLVK_SIMD_HALF_UP_H

namespace vlvk {

/// The largest float below 1/2. Whatever float above kWholeBelow it is added to, the rounded sum truncates to the same
/// integer as the exact sum with 1/2.
inline constexpr float kAlmostHalf = 0x1.FFFFFEp-2F;
/// Below this floats are whole, and 1/2 cannot be added to them. Truncating the exact sum, which is negative,
/// gives the next integer above.
inline constexpr float kWholeBelow = -8388608.0F;
/// Ends of signed 32-bit integers: the smallest one, and one past the largest.
inline constexpr float kSmallest = -2147483648.0F;
inline constexpr float kTooLarge = 2147483648.0F;

}  // namespace vlvk

#endif
