/// The arithmetic of the vector vocabulary on every target against plain arithmetic: all inputs of operations on bytes,
/// every class of inputs to the reciprocal estimate, boundaries and random values elsewhere.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <sstream>
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
#else
#define VLVK_TARGETS(X) X(scalar)
#endif
#define VLVK_DECLARE(target)                               \
  namespace vlvk::ops_##target {                           \
    extern const vocabulary::VocabularyOps kVocabularyOps; \
  }
VLVK_TARGETS(VLVK_DECLARE)

namespace {

/// Lanes where no vector would be aligned, between bytes that must stay as they are.
template <class V>
struct Placed {
  alignas(64) std::uint8_t before[sizeof(V::lane[0])];
  V v;
  std::uint8_t after[32];
};

template <class V>
using LaneOf = std::remove_reference_t<decltype(V{}.lane[0])>;
template <class V>
constexpr int kLanesOf = sizeof(V::lane) / sizeof(LaneOf<V>);

/// Floats with their bits.
template <class T>
std::string show(const T* values, int count) {
  std::ostringstream text;
  for (int i = 0; i < count; ++i) {
    text << ' ' << +values[i];
    if constexpr (std::is_same_v<T, float>)
      text << std::hex << " (0x" << std::bit_cast<std::uint32_t>(values[i]) << ')';
  }
  return text.str();
}

/// Runs an operation on `blocks` sets of inputs and compares each lane with `expected(lane, inputs...)`. The lanes of
/// an input in all blocks are source(0), source(1) ..., converted to the input's type. Reports the first failure only.
template <class Out, class... In, class Expected, class... Source>
void expectLanes(const vocabulary::Operation<Out, In...>& operation, int blocks, Expected expected, Source... source) {
  Placed<Out> untouched;
  std::memset(&untouched, 0xA5, sizeof untouched);
  std::tuple<Placed<In>...> inputs;
  const auto passes = [&](int block, auto&... in) {
    const auto fill = [block]<class V>(V& v, auto& from) {
      for (int i = 0; i < kLanesOf<V>; ++i)
        v.lane[i] = static_cast<LaneOf<V>>(from(block * kLanesOf<V> + i));
    };
    (fill(in.v, source), ...);
    Placed<Out> wanted = untouched;
    for (int i = 0; i < kLanesOf<Out>; ++i)
      wanted.v.lane[i] = static_cast<LaneOf<Out>>(expected(i, in.v.lane...));
    Placed<Out> out = untouched;
    operation.run(out.v, in.v...);
    if (std::memcmp(&out, &wanted, offsetof(Placed<Out>, after) + sizeof out.after) == 0) return true;
    ADD_FAILURE() << operation.name << " gives" << show(out.v.lane, kLanesOf<Out>) << "\n  instead of"
                  << show(wanted.v.lane, kLanesOf<Out>) << ", or stores more than that"
                  << (std::string() + ... + ("\n  input" + show(in.v.lane, kLanesOf<In>)));
    return false;
  };
  for (int block = 0; block < blocks; ++block) {
    if (!std::apply([&](auto&... in) { return passes(block, in...); }, inputs)) return;
  }
}

// Sources of inputs. The bytes of kEveryByte meet every lane of 16 within 4096 elements; those of kShifted and
// kHighByte are all pairs of bytes in 65536 elements, in every lane of 16 in 16 times as many.
constexpr auto kHighByte = [](int e) { return e >> 8; };
constexpr auto kEveryByte = [](int e) { return e + (e >> 8); };
constexpr auto kShifted = [](int e) { return e + (e >> 16); };
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

  /// Integers of any width: their ends and random ones.
  auto any() {
    return [this](int) {
      const std::uint64_t bits = static_cast<std::uint64_t>(random_.bits()) << 32U | random_.bits();
      return random_.pick<std::uint64_t>({0, 1, 0x7FFF, 0x8000, 0xFFFF, 0x7FFFFFFF, 0x80000000, ~0ULL, bits, bits});
    };
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

TEST_P(Vocabulary, ColumnSums) {
  const auto moved = [](int i, auto* sums, auto* a, auto* b) { return sums[i] + a[i] - b[i]; };
  const auto movedSquare = [](int i, auto* sums, auto* a, auto* b) { return sums[i] + a[i] * a[i] - b[i] * b[i]; };
  expectLanes(ops_->addDifference, 65536, moved, any(), kShifted, kHighByte);
  expectLanes(ops_->addSquareDifference, 65536, movedSquare, any(), kShifted, kHighByte);
}

TEST_P(Vocabulary, PairSteps) {
  const auto steps = [](int i, auto* entering, auto* leaving) {
    const auto step = [&](int column) { return entering[column] - leaving[column]; };
    const int odd = 2 * (i % 8) + 1;
    return i < 8 ? step(odd - 1) + step(odd) : step(odd);
  };
  const auto below2To15 = [source = any()](int e) { return source(e) & 0x7FFF; };
  expectLanes(ops_->pairStepsOfWords, 20000, steps, below2To15, below2To15);
  expectLanes(ops_->pairStepsOfDwords, 20000, steps, any(), any());
}

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
  expectLanes(ops_->bytesToFloat, 512, converted, kEveryByte);
  const auto even = [](int i, auto* v) { return static_cast<float>(v[2 * i]); };
  const auto odd = [](int i, auto* v) { return static_cast<float>(v[2 * i + 1]); };
  expectLanes(ops_->toFloatEven, 256, even, kEveryByte);
  expectLanes(ops_->toFloatOdd, 256, odd, kEveryByte);
}

TEST_P(Vocabulary, FloatArithmeticRoundsEachResult) {
  const auto sum = [](int i, auto* a, auto* b) { return a[i] + b[i]; };
  const auto difference = [](int i, auto* a, auto* b) { return a[i] - b[i]; };
  const auto product = [](int i, auto* a, auto* b) { return a[i] * b[i]; };
  expectLanes(ops_->addFloats, 20000, sum, anyFloat(), anyFloat());
  expectLanes(ops_->subFloats, 20000, difference, anyFloat(), anyFloat());
  expectLanes(ops_->mulFloats, 20000, product, anyFloat(), anyFloat());
  const auto plus = [](int i, auto* to, auto* a, auto* b) { return to[i] + a[i] * b[i]; };
  const auto minus = [](int i, auto* from, auto* a, auto* b) { return from[i] - a[i] * b[i]; };
  expectLanes(ops_->addProduct, 20000, plus, anyFloat(), anyFloat(), anyFloat());
  expectLanes(ops_->subProduct, 20000, minus, anyFloat(), anyFloat(), anyFloat());
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
  // Not (c ? even : odd)[i / 2], which GCC 12 gets wrong under -fsanitize=undefined.
  const auto low8OfPair = [](int i, auto* even, auto* odd) {
    return static_cast<int>(i % 2 == 0 ? even[i / 2] : odd[i / 2]) & 0xFF;
  };
  const auto below2To15 = [&](int) { return static_cast<float>(random_.bits() >> random_.between(8, 16)) / 512.0f; };
  expectLanes(ops_->truncPairsToLowBytes, 100000, low8OfPair, below2To15, below2To15);
}

VLVK_TEST_ALL_TARGETS(Vocabulary);

}  // namespace
