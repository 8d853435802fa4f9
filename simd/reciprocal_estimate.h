/// The ARM architecture's single-precision reciprocal estimate (VRECPE.F32), to the last bit.
///
/// The estimate knows 256 classes of fractions and answers with 8 fraction bits of its own:
///
///     q = 256 + (fraction >> 15)      s = round(256 * 512 / (q + 0.5)), 256 .. 511
///     result: sign of the input, biased exponent 253 - e, fraction (s - 256) << 15
///
/// Inputs with a biased exponent of 253 or more give a zero, zeros and denormals an infinity, NaN the default NaN.
#ifndef VLVK_SIMD_RECIPROCAL_ESTIMATE_H
#define VLVK_SIMD_RECIPROCAL_ESTIMATE_H

#include <array>
#include <bit>
#include <cstdint>

namespace vlvk {

/// Fraction bits of the estimate for each class of input fractions, in place (bits 22 .. 15).
inline constexpr std::array<std::uint32_t, 256> kReciprocalFractions = [] {
  std::array<std::uint32_t, 256> fractions{};
  for (std::uint32_t i = 0; i < 256; ++i) {
    const double q = 256.0 + i + 0.5;
    const auto s = static_cast<std::uint32_t>(256.0 * (512.0 / q) + 0.5);
    fractions[i] = (s - 256U) << 15U;
  }
  return fractions;
}();

/// Estimate of 1 / value, good to about 8 bits and equal on every processor.
inline float reciprocalEstimate(float value) {
  const auto bits = std::bit_cast<std::uint32_t>(value);
  const std::uint32_t sign = bits & 0x80000000U;
  const std::uint32_t exponent = (bits >> 23U) & 0xFFU;
  if (exponent == 0xFFU && (bits & 0x007FFFFFU) != 0) return std::bit_cast<float>(0x7FC00000U);
  if (exponent == 0) return std::bit_cast<float>(sign | 0x7F800000U);
  if (exponent >= 253) return std::bit_cast<float>(sign);
  return std::bit_cast<float>(sign | ((253U - exponent) << 23U) | kReciprocalFractions[(bits >> 15U) & 0xFFU]);
}

}  // namespace vlvk

#endif
