/// The float operations of every target: every class of inputs to the reciprocal estimate, the ends of every
/// conversion.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "tests/naive/naive.h"
#include "tests/support/random_content.h"
#include "tests/support/target_test.h"
#include "tests/vocabulary/float_ops.h"

namespace vlvk {
#if defined(__x86_64__)
namespace ops_avx2 {
extern const FloatOps kFloatOps;
}
namespace ops_sse2 {
extern const FloatOps kFloatOps;
}
#elif defined(__aarch64__) || defined(__arm__)
namespace ops_neon {
extern const FloatOps kFloatOps;
}
#endif
namespace ops_scalar {
extern const FloatOps kFloatOps;
}
}  // namespace vlvk

namespace {

class FloatOperations : public testing_support::TargetTest {
 protected:
  void SetUp() override {
    TargetTest::SetUp();
    const FloatOps* const all[] = {
#if defined(__x86_64__)
      &vlvk::ops_avx2::kFloatOps,
      &vlvk::ops_sse2::kFloatOps,
#elif defined(__aarch64__) || defined(__arm__)
      &vlvk::ops_neon::kFloatOps,
#endif
      &vlvk::ops_scalar::kFloatOps
    };
    for (const FloatOps* candidate : all) {
      if (candidate->name == GetParam()) ops_ = candidate;
    }
    ASSERT_NE(ops_, nullptr) << "no operations of target " << GetParam();
  }

  /// Runs an operation on 8 lanes at a time and hands each input and output to `check`.
  template <typename In, typename Out, typename Check>
  static void forEach(std::vector<In> inputs, void (*operation)(const In*, Out*), Check check) {
    inputs.resize((inputs.size() + 7) / 8 * 8, inputs.front());
    for (std::size_t i = 0; i < inputs.size() && !HasFatalFailure(); i += 8) {
      Out outputs[8];
      operation(&inputs[i], outputs);
      for (std::size_t lane = 0; lane < 8; ++lane)
        check(inputs[i + lane], outputs[lane]);
    }
  }

  const FloatOps* ops_ = nullptr;
};

TEST_P(FloatOperations, ReciprocalEstimateOfEveryClass) {
  std::vector<float> inputs;
  std::vector<float> modest = {0.0f, -0.0f};
  for (std::uint32_t top = 0; top < 1U << 17U; ++top) {  // sign, exponent, 8 fraction bits
    const std::uint32_t exponent = top >> 8U & 0xFFU;
    for (const std::uint32_t low : {0U, 1U, 0x3FFFU, 0x4000U, 0x7FFFU}) {
      const auto input = std::bit_cast<float>(top << 15U | low);
      inputs.push_back(input);
      if (exponent > 0 && exponent < 253) modest.push_back(input);
    }
  }
  const auto check = [](float input, float output) {
    ASSERT_EQ(std::bit_cast<std::uint32_t>(output), std::bit_cast<std::uint32_t>(naive::reciprocalEstimate(input)))
        << "bits " << std::bit_cast<std::uint32_t>(input);
  };
  forEach(inputs, ops_->reciprocalEstimate, check);
  forEach(modest, ops_->reciprocalEstimateOfModest, check);
}

TEST_P(FloatOperations, IntegersToFloatRoundToNearestEven) {
  testing_support::Random random(71);
  std::vector<std::uint32_t> inputs;
  for (int bit = 0; bit < 32; ++bit) {
    for (std::uint32_t offset = 0; offset < 1200; ++offset) {
      inputs.push_back((1U << bit) + offset);
      inputs.push_back((1U << bit) - offset);
      inputs.push_back(random.bits() >> bit);
    }
  }
  std::vector<std::uint32_t> small;
  for (const std::uint32_t value : inputs)
    small.push_back(value & 0x7FFFFFFFU);
  const auto check = [](std::uint32_t input, float output) { ASSERT_EQ(output, static_cast<float>(input)) << input; };
  forEach(inputs, ops_->toFloat, check);
  forEach(small, ops_->toFloatBelow2To31, check);
}

TEST_P(FloatOperations, FloatToLowByte) {
  testing_support::Random random(72);
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  std::vector<float> inputs = {0.0f,           -0.0f,  kInfinity, -kInfinity, std::nanf(""),
                               -std::nanf(""), 1e-40f, 3e38f,     -3e38f};
  for (int exponent = -2; exponent <= 34; ++exponent) {
    const float power = std::ldexp(1.0f, exponent);
    for (const float value :
         {power, std::nextafter(power, 0.0f), std::nextafter(power, kInfinity), power + 0.5f, power * 1.7f}) {
      inputs.push_back(value);
      inputs.push_back(-value);
    }
  }
  for (int i = 0; i < 20000; ++i) {
    inputs.push_back(static_cast<float>(random.bits()) / 16777216.0f);
    inputs.push_back(static_cast<float>(random.bits()));
    inputs.push_back(std::bit_cast<float>(random.bits()));
  }
  forEach(inputs, ops_->truncToLowBytes,
          [](float input, std::uint8_t output) { ASSERT_EQ(output, naive::toUnsigned(input) & 0xFFU) << input; });
}

VLVK_TEST_ALL_TARGETS(FloatOperations);

}  // namespace
