/// The arithmetic of the vector vocabulary on every target against plain arithmetic: every class of inputs to the
/// reciprocal estimate, boundaries and random values elsewhere.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "tests/naive/naive.h"
#include "tests/simd/vocabulary_ops.h"
#include "tests/support/random_content.h"
#include "tests/support/target_test.h"

#if defined(__x86_64__)
#define VLVK_TARGETS(X) X(avx2) X(sse2) X(scalar)
#elif defined(__aarch64__) || defined(__arm__)
#define VLVK_TARGETS(X) X(neon) X(scalar)
#elif defined(__wasm_simd128__)
#define VLVK_TARGETS(X) X(wasm128) X(scalar)
#else
#define VLVK_TARGETS(X) X(scalar)
#endif
#define VLVK_DECLARE(target)                               \
  namespace vlvk::ops_##target {                           \
    extern const vocabulary::VocabularyOps kVocabularyOps; \
  }
VLVK_TARGETS(VLVK_DECLARE)

namespace {

template <class V>
using LaneOf = std::remove_reference_t<decltype(V{}.lane[0])>;
template <class V>
constexpr int kLanesOf = sizeof(V::lane) / sizeof(LaneOf<V>);

/// Runs an operation on `blocks` sets of inputs and compares each lane with `expected(lane, inputs...)`. The lanes of
/// an input in all blocks are source(0), source(1) ..., converted to the input's type. Reports the first failure only.
template <class Out, class... In, class Expected, class... Source>
void expectLanes(const vocabulary::Operation<Out, In...>& operation, int blocks, Expected expected, Source... source) {
  std::tuple<In...> inputs;
  const auto passes = [&](int block, auto&... in) {
    const auto fill = [block]<class V>(V& v, auto& from) {
      for (int i = 0; i < kLanesOf<V>; ++i)
        v.lane[i] = static_cast<LaneOf<V>>(from(block * kLanesOf<V> + i));
    };
    (fill(in, source), ...);
    Out wanted{}, out{};
    for (int i = 0; i < kLanesOf<Out>; ++i)
      wanted.lane[i] = static_cast<LaneOf<Out>>(expected(i, in.lane...));
    operation.run(out, in...);
    if (std::memcmp(&out, &wanted, sizeof out) == 0) return true;
    ADD_FAILURE() << operation.name << " gives " << testing::PrintToString(out) << "\n  instead of "
                  << testing::PrintToString(wanted) << (std::string() + ... + ("\n  of " + testing::PrintToString(in)));
    return false;
  };
  for (int block = 0; block < blocks; ++block) {
    if (!std::apply([&](auto&... in) { return passes(block, in...); }, inputs)) return;
  }
}

/// The values in turn, again and again.
template <class T>
auto cycle(const std::vector<T>& values) {
  return [&values](int e) { return values[static_cast<std::size_t>(e) % values.size()]; };
}

class Vocabulary : public testing_support::TargetTest {
 protected:
  void SetUp() override {
    TargetTest::SetUp();
#define VLVK_ADDRESS(target) &vlvk::ops_##target::kVocabularyOps,
    for (const vocabulary::VocabularyOps* candidate : {VLVK_TARGETS(VLVK_ADDRESS)}) {
      if (candidate->target == GetParam()) ops_ = candidate;
    }
    ASSERT_NE(ops_, nullptr) << "no operations of target " << GetParam();
  }

  /// Floats so near each other that additions round, and zeros.
  auto anyFloat() {
    return [this](int) {
      const std::uint32_t bits = random_.bits();
      const std::uint32_t exponent = 120U + (bits >> 23U) % 16U;
      return std::bit_cast<float>(bits % 16U == 0 ? bits & 0x80000000U : (bits & 0x807FFFFFU) | exponent << 23U);
    };
  }

  const vocabulary::VocabularyOps* ops_ = nullptr;
  testing_support::Random random_{71};
};

TEST_P(Vocabulary, IntegersToFloatRoundToNearestEven) {
  std::vector<std::uint32_t> integers;
  for (int bit = 0; bit < 32; ++bit) {
    for (std::uint32_t offset = 0; offset < 1200; ++offset) {
      for (const std::uint32_t value : {(1U << bit) + offset, (1U << bit) - offset, random_.bits() >> bit})
        integers.push_back(value);
    }
  }
  const int blocks = static_cast<int>(integers.size() / 8);
  const auto converted = [](int i, auto* v) { return static_cast<float>(v[i]); };
  expectLanes(ops_->toFloat, blocks, converted, cycle(integers));
  for (std::uint32_t& value : integers)
    value &= 0x7FFFFFFFU;
  expectLanes(ops_->toFloatBelow2To31, blocks, converted, cycle(integers));
}

TEST_P(Vocabulary, ProductsAreRoundedBeforeTheyAreAdded) {
  const auto plus = [](int i, auto* to, auto* a, auto* b) { return to[i] + a[i] * b[i]; };
  const auto minus = [](int i, auto* from, auto* a, auto* b) { return from[i] - a[i] * b[i]; };
  expectLanes(ops_->addProduct, 20000, plus, anyFloat(), anyFloat(), anyFloat());
  expectLanes(ops_->subProduct, 20000, minus, anyFloat(), anyFloat(), anyFloat());
}

TEST_P(Vocabulary, QuotientsAreRoundedOnce) {
  const auto whole = [this](int) { return static_cast<float>(random_.bits() >> random_.bits() % 32U | 1U); };
  const auto quotient = [](int i, auto* a, auto* b) { return a[i] / b[i]; };
  expectLanes(ops_->div, 20000, quotient, anyFloat(), whole);
}

TEST_P(Vocabulary, SmallerAndGreater) {
  const auto half = [&](int) { return static_cast<float>(random_.between(-9, 8)) + 0.5f; };
  expectLanes(
      ops_->min, 2000, [](int i, auto* a, auto* b) { return std::min(a[i], b[i]); }, half, half);
  expectLanes(
      ops_->max, 2000, [](int i, auto* a, auto* b) { return std::max(a[i], b[i]); }, half, half);
}

TEST_P(Vocabulary, ReciprocalEstimateOfEveryClass) {
  std::vector<float> inputs;
  std::vector<float> normal = {0.0f, -0.0f};
  for (std::uint32_t top = 0; top < 1U << 17U; ++top) {  // sign, exponent, 8 fraction bits
    const std::uint32_t exponent = top >> 8U & 0xFFU;
    for (const std::uint32_t low : {0U, 1U, 0x3FFFU, 0x4000U, 0x7FFFU}) {
      inputs.push_back(std::bit_cast<float>(top << 15U | low));
      if (exponent > 0 && exponent < 253) normal.push_back(inputs.back());
    }
  }
  const auto estimate = [](int i, auto* v) { return naive::reciprocalEstimate(v[i]); };
  expectLanes(ops_->reciprocalEstimate, static_cast<int>(inputs.size() / 8), estimate, cycle(inputs));
  expectLanes(ops_->reciprocalEstimateOfNormal, static_cast<int>(normal.size() / 8 + 1), estimate, cycle(normal));
}

TEST_P(Vocabulary, FloatToLowByte) {
  std::vector<float> inputs = {0.0f, -0.0f, INFINITY, -INFINITY, std::nanf(""), -std::nanf(""), 1e-40f, 3e38f, -3e38f};
  for (int exponent = -2; exponent <= 34; ++exponent) {
    const float power = std::ldexp(1.0f, exponent);
    for (const float value :
         {power, std::nextafter(power, 0.0f), std::nextafter(power, INFINITY), power + 0.5f, power * 1.7f}) {
      inputs.push_back(value);
      inputs.push_back(-value);
    }
  }
  for (int i = 0; i < 20000; ++i) {
    inputs.push_back(static_cast<float>(random_.bits()) / 16777216.0f);
    inputs.push_back(static_cast<float>(random_.bits()));
    inputs.push_back(std::bit_cast<float>(random_.bits()));
  }
  // As many times as it takes for each input to meet each lane: their number is odd.
  ASSERT_EQ(inputs.size() % 2, 1U);
  const auto low8 = [](int i, auto* v) { return naive::toUnsigned(v[i]) & 0xFFU; };
  expectLanes(ops_->truncToLowBytes, static_cast<int>(inputs.size()), low8, cycle(inputs));
  const auto halfUp = [](int i, auto* v) {
    const double sum = static_cast<double>(v[i]) + 0.5;
    return std::isnan(sum) ? 0 : static_cast<std::int64_t>(std::clamp(sum, -0x1p31, 0x1p31 - 1)) & 0xFF;
  };
  expectLanes(ops_->roundHalfUpToLowBytes, static_cast<int>(inputs.size()), halfUp, cycle(inputs));
  // Not (c ? even : odd)[i / 2], which GCC 12 gets wrong under -fsanitize=undefined.
  const auto low8OfPair = [](int i, auto* even, auto* odd) {
    return static_cast<int>(i % 2 == 0 ? even[i / 2] : odd[i / 2]) & 0xFF;
  };
  const auto below2To15 = [&](int) { return static_cast<float>(random_.bits() >> random_.between(8, 16)) / 512.0f; };
  expectLanes(ops_->truncPairsToLowBytes, 100000, low8OfPair, below2To15, below2To15);
}

VLVK_TEST_ALL_TARGETS(Vocabulary);

}  // namespace
