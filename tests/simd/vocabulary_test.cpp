/// Every operation of the vector vocabulary on every target against plain arithmetic: all inputs of 8-bit operations
/// and of 16-bit ones with one operand, every class of inputs to the reciprocal estimate, boundaries and random values
/// elsewhere.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <numeric>
#include <sstream>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "tests/naive/naive.h"
#include "tests/simd/vocabulary_ops.h"
#include "tests/support/random_content.h"
#include "tests/support/target_test.h"

namespace vlvk {
#if defined(__x86_64__)
namespace ops_avx2 {
extern const vocabulary::VocabularyOps kVocabularyOps;
}
namespace ops_sse2 {
extern const vocabulary::VocabularyOps kVocabularyOps;
}
#elif defined(__aarch64__) || defined(__arm__)
namespace ops_neon {
extern const vocabulary::VocabularyOps kVocabularyOps;
}
#endif
namespace ops_scalar {
extern const vocabulary::VocabularyOps kVocabularyOps;
}
}  // namespace vlvk

namespace {

using testing_support::Random;

/// Lanes where no vector would be aligned, between bytes that must stay as they are.
template <class V>
struct Placed {
  alignas(64) std::uint8_t before[sizeof(V::lane[0])];
  V v;
  std::uint8_t behind[32];
};

/// Floats with their bits.
template <class T>
std::string show(const T* values, std::size_t count) {
  std::ostringstream text;
  for (std::size_t i = 0; i < count; ++i) {
    text << ' ' << +values[i];
    if constexpr (std::is_same_v<T, float>)
      text << std::hex << " (0x" << std::bit_cast<std::uint32_t>(values[i]) << ')';
  }
  return text.str();
}

template <class V, class Source>
void fillLanes(V& v, int block, Source source) {
  constexpr int kLanes = std::size(V{}.lane);
  for (int i = 0; i < kLanes; ++i)
    v.lane[i] = static_cast<std::remove_reference_t<decltype(v.lane[i])>>(source(block * kLanes + i));
}

/// Runs an operation on `blocks` sets of inputs and compares each lane with `expected(lane, inputs...)`. The lanes of
/// an input in all blocks are source(0), source(1) ..., converted to the input's type. Reports the first failure only.
template <class Out, class... In, class Expected, class... Source>
void expectLanes(const vocabulary::Operation<Out, In...>& operation, int blocks, Expected expected, Source... source) {
  using T = std::remove_reference_t<decltype(Out{}.lane[0])>;
  Placed<Out> out;
  Placed<Out> untouched;
  std::memset(&untouched, 0xA5, sizeof untouched);
  const auto passes = [&](int block, auto&... in) {
    (fillLanes(in.v, block, source), ...);
    out = untouched;
    operation.run(out.v, in.v...);
    for (int i = 0; i < static_cast<int>(std::size(out.v.lane)); ++i) {
      const T want = static_cast<T>(expected(i, in.v.lane...));
      if (std::memcmp(&out.v.lane[i], &want, sizeof want) == 0) continue;
      ADD_FAILURE() << operation.name << ", lane " << i << ':' << show(&out.v.lane[i], 1) << " instead of"
                    << show(&want, 1) << (std::string() + ... + ("\n  input" + show(in.v.lane, std::size(in.v.lane))));
      return false;
    }
    if (std::memcmp(out.before, untouched.before, sizeof out.before) == 0 &&
        std::memcmp(out.behind, untouched.behind, sizeof out.behind) == 0) {
      return true;
    }
    ADD_FAILURE() << operation.name << " stores more than its result";
    return false;
  };
  std::tuple<Placed<In>...> inputs;
  for (int block = 0; block < blocks; ++block) {
    if (!std::apply([&](auto&... in) { return passes(block, in...); }, inputs)) return;
  }
}

// Sources of inputs. The bytes of kEveryByte meet every lane of 16 within 4096 elements, of 32 within 8192; those of
// kShifted and kHighByte are all pairs of bytes in 65536 elements, in every lane of 16 in 16 times as many.
constexpr auto kCount = [](int e) { return e; };
constexpr auto kHighByte = [](int e) { return e >> 8; };
constexpr auto kEveryByte = [](int e) { return e + (e >> 8); };
constexpr auto kShifted = [](int e) { return e + (e >> 16); };
template <class T>
auto cycle(const std::vector<T>& values) {
  return [&values](int e) { return values[static_cast<std::size_t>(e) % values.size()]; };
}

constexpr auto kSum = [](int i, auto* a, auto* b) { return a[i] + b[i]; };
constexpr auto kDifference = [](int i, auto* a, auto* b) { return a[i] - b[i]; };
constexpr auto kProduct = [](int i, auto* a, auto* b) { return a[i] * b[i]; };

class Vocabulary : public testing_support::TargetTest {
 protected:
  void SetUp() override {
    TargetTest::SetUp();
    const vocabulary::VocabularyOps* const all[] = {
#if defined(__x86_64__)
      &vlvk::ops_avx2::kVocabularyOps,
      &vlvk::ops_sse2::kVocabularyOps,
#elif defined(__aarch64__) || defined(__arm__)
      &vlvk::ops_neon::kVocabularyOps,
#endif
      &vlvk::ops_scalar::kVocabularyOps
    };
    for (const vocabulary::VocabularyOps* candidate : all) {
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
  Random random_{71};
};

TEST_P(Vocabulary, Splats) {
  const auto first = [](int, auto* value) { return value[0]; };
  expectLanes(ops_->splatWord, 65536, first, kCount);
  expectLanes(ops_->splatDword, 1000, first, any());
  expectLanes(ops_->splatFloat, 1000, first, anyFloat());
  expectLanes(ops_->splatRows, 256, first, kCount);
  expectLanes(ops_->splatI16, 65536, first, kCount);
  const auto alternating = [](int i, auto* a, auto* b) { return i % 2 == 0 ? *a : *b; };
  expectLanes(ops_->splatPair16, 65536, alternating, kCount, kHighByte);
}

TEST_P(Vocabulary, RunningSums) {
  const auto moved = [](int i, auto* sums, auto* a, auto* b) { return sums[i] + a[i] - b[i]; };
  const auto movedSquare = [](int i, auto* sums, auto* a, auto* b) { return sums[i] + a[i] * a[i] - b[i] * b[i]; };
  expectLanes(ops_->addDifference, 65536, moved, any(), kShifted, kHighByte);
  expectLanes(ops_->addSquareDifference, 65536, movedSquare, any(), kShifted, kHighByte);
  expectLanes(ops_->differenceWiden, 20000, kDifference, any(), any());
  expectLanes(ops_->addDwords, 20000, kSum, any(), any());
  expectLanes(ops_->subDwords, 20000, kDifference, any(), any());
}

TEST_P(Vocabulary, DwordsAcrossLanes) {
  const auto same = [](int i, auto* v) { return v[i]; };
  const auto halves = [](int i, auto* a, auto* b) { return i < 4 ? a[i] : b[i]; };
  const auto sumUpTo = [](int i, auto* v) { return std::accumulate(v, v + i + 1, 0U); };
  const auto last = [](int, auto* v) { return v[7]; };
  expectLanes(ops_->loadLow8, 1000, same, any());
  expectLanes(ops_->joinHalves, 1000, halves, any(), any());
  expectLanes(ops_->prefixSum, 1000, sumUpTo, any());
  expectLanes(ops_->splatLast, 1000, last, any());
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
  expectLanes(ops_->addFloats, 20000, kSum, anyFloat(), anyFloat());
  expectLanes(ops_->subFloats, 20000, kDifference, anyFloat(), anyFloat());
  expectLanes(ops_->mulFloats, 20000, kProduct, anyFloat(), anyFloat());
  const auto plus = [](int i, auto* sum, auto* a, auto* b) { return sum[i] + a[i] * b[i]; };
  const auto minus = [](int i, auto* sum, auto* a, auto* b) { return sum[i] - a[i] * b[i]; };
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
    inputs.push_back(static_cast<float>(random_.bits()) / 16777216.0f);
    inputs.push_back(static_cast<float>(random_.bits()));
    inputs.push_back(std::bit_cast<float>(random_.bits()));
  }
  // As many times as it takes for each input to meet each lane: their number is odd.
  ASSERT_EQ(inputs.size() % 2, 1U);
  const int blocks = static_cast<int>(inputs.size());
  const auto low8 = [](int i, auto* v) { return naive::toUnsigned(v[i]) & 0xFFU; };
  expectLanes(ops_->truncToLowBytes, blocks, low8, cycle(inputs));
  // Not (c ? even : odd)[i / 2], which GCC 12 gets wrong under -fsanitize=undefined.
  const auto low8OfPair = [](int i, auto* even, auto* odd) {
    return static_cast<int>(i % 2 == 0 ? even[i / 2] : odd[i / 2]) & 0xFF;
  };
  const auto below2To15 = [&](int) { return static_cast<float>(random_.bits() >> random_.between(8, 16)) / 512.0f; };
  expectLanes(ops_->truncPairsToLowBytes, 100000, low8OfPair, below2To15, below2To15);
}

TEST_P(Vocabulary, SkinWeights) {
  const auto distance = [](int i, auto* a, auto* b) { return std::abs(a[i] - b[i]); };
  expectLanes(ops_->absDifference, 65536, distance, kShifted, kHighByte);
  const auto entry = [](int i, auto* table, auto* index) { return index[i] < 64 ? table[index[i]] : 0; };
  expectLanes(ops_->lookup, 4096, entry, any(), kEveryByte);
  const auto product64 = [](int i, auto* v) { return v[i & ~1] * v[i | 1] / 64; };
  expectLanes(ops_->mulPairsShift6, 65 * 65, product64, [](int e) { return e / (e % 2 == 0 ? 2 : 130) % 65; });
}

TEST_P(Vocabulary, MixBy64ths) {
  const auto mixed = [](int i, auto* a, auto* b, auto* weight) {
    return (a[i] * (64 - weight[i % 16]) + b[i] * weight[i % 16]) / 64;
  };
  for (int weight = 0; weight <= 64; ++weight) {
    const auto moved = [=](int e) { return e + weight; };
    expectLanes(ops_->mixBy64ths, 2048, mixed, moved, kHighByte, [=](int) { return weight; });
  }
  expectLanes(ops_->mixBy64ths, 4096, mixed, any(), any(), [&](int) { return random_.between(0, 64); });
}

TEST_P(Vocabulary, ChromaTermsOfBothRows) {
  const auto same = [](int i, auto* v) { return v[i % 8]; };
  const auto each = [](int i, auto* v) { return v[i / 16 * 4 + i % 8 / 2]; };
  expectLanes(ops_->bothRows, 20000, same, any());
  expectLanes(ops_->duplicateEach, 1000, each, any());
  const auto fours = [](int i, auto* v) { return v[i / 16 * 4 + i % 4]; };
  expectLanes(ops_->duplicateFours, 1000, fours, any());
  const auto pairs = [](int e) { return e % 2 == 0 ? kShifted(e / 2) : kHighByte(e / 2); };
  const auto weighted = [](int first, int second) {
    return
        [=](int i, auto* v, auto* offset) { return offset[i % 8] + first * v[i % 8 * 2] + second * v[i % 8 * 2 + 1]; };
  };
  expectLanes(ops_->redOfVu, 65536, weighted(102, 0), pairs, any());
  expectLanes(ops_->redOfUv, 65536, weighted(0, 102), pairs, any());
  expectLanes(ops_->greenOfVu, 65536, weighted(-52, -25), pairs, any());
  expectLanes(ops_->greenOfUv, 65536, weighted(-25, -52), pairs, any());
  expectLanes(ops_->blueOfVu, 65536, weighted(0, 129), pairs, any());
  expectLanes(ops_->blueOfUv, 65536, weighted(129, 0), pairs, any());
}

TEST_P(Vocabulary, LumaOfTwoRowsToPixels) {
  const auto low = [](int i, auto* v, auto* factor) { return v[i / 8 * 16 + i % 8] * *factor; };
  const auto high = [](int i, auto* v, auto* factor) { return v[i / 8 * 16 + 8 + i % 8] * *factor; };
  expectLanes(ops_->mulWidenLow, 65536, low, kEveryByte, kHighByte);
  expectLanes(ops_->mulWidenHigh, 65536, high, kEveryByte, kHighByte);
  expectLanes(ops_->addShortRows, 20000, kSum, any(), any());
  const auto limitedSum = [](int i, auto* a, auto* b) { return std::clamp(a[i] + b[i], -32768, 32767); };
  expectLanes(ops_->addShortRowsSat, 20000, limitedSum, any(), any());
  const auto rounded = [](int i, auto* first, auto* last) {
    const int column = i / 16 * 8 + i % 8;
    const int sum = i % 16 < 8 ? first[column] : last[column];
    return std::clamp((sum + 32) >> 6, 0, 255);
  };
  expectLanes(ops_->roundShiftNarrowSat, 65536, rounded, kShifted, [](int e) { return ~kShifted(e); });
  const auto interleaved = [](int i, auto*... channels) { return std::array{channels...}[i % 4][i / 4]; };
  expectLanes(ops_->storePixels, 1000, interleaved, any(), any(), any(), any());
}

TEST_P(Vocabulary, PixelsToLumaAndChroma) {
  std::vector<std::uint8_t> bytes;
  const auto add = [&](int c0, int c1, int c2) {
    for (const int byte : {c0, c1, c2, random_.between(0, 255)})
      bytes.push_back(static_cast<std::uint8_t>(byte));
  };
  for (int value = 0; value < 256; ++value) {
    for (const int one : {0, 1, 127, 128, 254, 255}) {
      for (const int other : {0, 1, 127, 128, 254, 255}) {
        add(value, one, other);
        add(one, value, other);
        add(one, other, value);
      }
    }
    for (int i = 0; i < 400; ++i)
      add(random_.byte(), random_.byte(), random_.byte());
  }
  const int blocks = static_cast<int>(bytes.size() / 64);
  const auto atEven = [&](int e) { return e % 8 < 4 ? bytes[static_cast<std::size_t>(e / 8 * 4 + e % 4)] : ~e; };
  // Pixels whose red or lowest channel is the one at 0 or at 2.
  const auto luma = [](int red) {
    return [=](int i, auto* p) { return naive::pixelToYuv(p[4 * i + red], p[4 * i + 1], p[4 * i + 2 - red], true).y; };
  };
  const auto chroma = [](int red, bool uFirst) {
    return [=](int i, auto* p) {
      const auto* even = p + i / 2 * 8;
      const naive::Yuv yuv = naive::pixelToYuv(even[red], even[1], even[2 - red], true);
      return (i % 2 == 0) == uFirst ? yuv.u : yuv.v;
    };
  };
  const auto colorIndex = [](int lowest) {
    return [=](int i, auto* p) {
      return p[4 * i + lowest] / 4 + p[4 * i + 1] / 4 * 64 + p[4 * i + 2 - lowest] / 4 * 4096;
    };
  };
  expectLanes(ops_->lumaOfRgba, blocks, luma(0), cycle(bytes));
  expectLanes(ops_->lumaOfBgra, blocks, luma(2), cycle(bytes));
  expectLanes(ops_->vuOfRgba, 2 * blocks, chroma(0, false), atEven);
  expectLanes(ops_->vuOfBgra, 2 * blocks, chroma(2, false), atEven);
  expectLanes(ops_->uvOfRgba, 2 * blocks, chroma(0, true), atEven);
  expectLanes(ops_->uvOfBgra, 2 * blocks, chroma(2, true), atEven);
  expectLanes(ops_->colorIndicesOfRgba, blocks, colorIndex(0), cycle(bytes));
  expectLanes(ops_->colorIndicesOfBgra, blocks, colorIndex(2), cycle(bytes));
}

VLVK_TEST_ALL_TARGETS(Vocabulary);

}  // namespace
