/// The choice among the compiled sets of row loops, the formula's constants, and numbers worked out by hand, so that
/// library and oracle cannot be wrong in the same way.
#include "rows/row_loops.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "rows/pixel_formula.h"
#include "simd/reciprocal_estimate.h"
#include "tests/naive/naive.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/random_content.h"
#include "tests/support/target_test.h"

namespace {

TEST(PinnedValues, ReciprocalEstimate) {
  struct {
    float input;
    float output;
  } constexpr kCases[] = {{1.0f, 511 / 512.0f},     {2.0f, 511 / 1024.0f}, {3.0f, 341 / 1024.0f},
                          {-1.0f, -511 / 512.0f},   {1.5f, 341 / 512.0f},  {1.9999999f, 256 / 512.0f},
                          {120.0f, 273 / 32768.0f}, {0x1p126f, 0.0f},      {0x1.8p125f, 0x1.55p-126f}};
  for (const auto& c : kCases) {
    EXPECT_EQ(naive::reciprocalEstimate(c.input), c.output) << c.input;
    EXPECT_EQ(vlvk::reciprocalEstimate(c.input), c.output) << c.input;
  }
}

TEST(PinnedValues, FormulaConstants) {
  struct {
    int h, level;
    float inverseArea, bias, strength;
  } constexpr kCases[] = {{7, 0, 1 / 225.0f, 120.0f, 0.0f},
                          {15, 1000, 1 / 961.0f, 48.0f, 600.0f},
                          {0, 100, 1.0f, 112.8f, 60.0f},
                          {1, 1667, 1 / 9.0f, 0.0f, 1000.0f},
                          {1, -1, 1 / 9.0f, 120.0f, 0.0f},
                          {1, -5000, 1 / 9.0f, 480.0f, -3000.0f},
                          // 600 * 1288490188 is -480 modulo 2^32.
                          {INT_MAX, INT_MAX, 0x1p-64f, 120.096f, 1288490188.0f}};
  for (const auto& c : kCases) {
    const auto [inverseArea, bias, strength] = naive::formulaConstants(c.h, c.level);
    EXPECT_TRUE(inverseArea == c.inverseArea && bias == c.bias && strength == c.strength)
        << c.h << ' ' << c.level << ": " << inverseArea << ' ' << bias << ' ' << strength;
  }
  for (long long level = INT_MIN; level <= INT_MAX; level += level > -9000 && level < 9000 ? 1 : 65521) {
    const int h = static_cast<int>((level & 0x7FFFFFFF) >> ((level & 31)));
    const auto expected = naive::formulaConstants(h, static_cast<int>(level));
    const vlvk::PixelFormula formula = vlvk::makePixelFormula(h, static_cast<int>(level));
    ASSERT_EQ(formula.inverseArea, expected.inverseArea) << "h " << h;
    ASSERT_EQ(formula.bias, expected.bias) << "level " << level;
    ASSERT_EQ(formula.strength, expected.strength) << "level " << level;
  }
}

TEST(PinnedValues, SmoothedPixel) {
  // Flat 100 at level 0: 100 * 120 * (273 / 32768) = 99.976.
  EXPECT_EQ(naive::smoothedPixel(22500, 2250000, 100, 7, 0), 99);
  // Flat 100 at level 1000, K = 600, A = 48: 64800 * estimate(648). 648 / 512 is in class 324 of 256 .. 511, so the
  // estimate is 404 / 2^18 and the result 99.87.
  EXPECT_EQ(naive::smoothedPixel(22500, 2250000, 100, 7, 1000), 99);
  // The sample 200 in a box of mean 100 and variance 0: (200 * 48 + 100 * 600) * 404 / 2^18 = 107.26.
  EXPECT_EQ(naive::smoothedPixel(22500, 2250000, 200, 7, 1000), 107);
  // Level 1667: A is 0, and without variance only the mean is left: 100 * 1000 * 262 / 2^18 = 99.95.
  EXPECT_EQ(naive::smoothedPixel(22500, 2250000, 200, 7, 1667), 99);
}

TEST(PinnedValues, YuvToPixel) {
  struct {
    int Y, U, V;
    bool wrap;
    int r, g, b;
  } constexpr kCases[] = {
      {16, 128, 128, true, 0, 0, 0},        {235, 128, 128, true, 255, 255, 255},  {0, 128, 128, true, 0, 0, 0},
      {255, 255, 128, true, 255, 230, 0},   {255, 255, 128, false, 255, 230, 255}, {253, 244, 128, true, 255, 232, 255},
      {254, 244, 128, true, 255, 234, 0},   {243, 250, 128, true, 255, 218, 255},  {244, 250, 128, true, 255, 220, 0},
      {234, 255, 128, true, 255, 206, 255}, {235, 255, 128, true, 255, 207, 0},    {81, 90, 240, true, 255, 0, 0}};
  for (const auto& c : kCases) {
    const naive::Rgb p = naive::yuvToPixel(c.Y, c.U, c.V, c.wrap);
    EXPECT_TRUE(p.r == c.r && p.g == c.g && p.b == c.b)
        << c.Y << ' ' << c.U << ' ' << c.V << ": " << int{p.r} << ' ' << int{p.g} << ' ' << int{p.b};
  }
}

TEST(PinnedValues, PixelToYuv) {
  struct {
    int R, G, B;
    bool rounded;
    int y, u, v;
  } constexpr kCases[] = {{0, 0, 0, true, 16, 128, 128},        {0, 0, 0, false, 16, 128, 128},
                          {1, 1, 1, true, 17, 128, 128},        {1, 1, 1, false, 16, 128, 128},
                          {255, 0, 0, true, 82, 90, 240},       {255, 0, 0, false, 81, 90, 239},
                          {0, 0, 255, true, 41, 240, 110},      {0, 0, 255, false, 40, 239, 110},
                          {255, 255, 255, true, 235, 128, 128}, {255, 255, 255, false, 235, 128, 128}};
  for (const auto& c : kCases) {
    const naive::Yuv p = naive::pixelToYuv(c.R, c.G, c.B, c.rounded);
    EXPECT_TRUE(p.y == c.y && p.u == c.u && p.v == c.v)
        << c.R << ' ' << c.G << ' ' << c.B << ": " << int{p.y} << ' ' << int{p.u} << ' ' << int{p.v};
  }
}

TEST(Targets, EachSetIsCodeOfItsOwnAndCanBeForced) {
  int count = 0;
  const vlvk::RowLoops* const* sets = vlvk::availableRowLoops(count);
  ASSERT_GE(count, 1);
  std::set<std::string> names;
  std::set<vlvk::RowLoops::SmoothRow> smoothRows;
  std::set<vlvk::RowLoops::YuvToPixels> conversions;
  for (int i = 0; i < count; ++i) {
    names.insert(sets[i]->name);
    smoothRows.insert(std::begin(sets[i]->smoothRow), std::end(sets[i]->smoothRow));
    smoothRows.insert(std::begin(sets[i]->smoothRowAnySums), std::end(sets[i]->smoothRowAnySums));
    for (const auto& ofColors : sets[i]->yuvToPixels) {
      for (const auto& ofChroma : ofColors)
        conversions.insert(std::begin(ofChroma), std::end(ofChroma));
    }
    EXPECT_TRUE(vlvk::forceRowLoops(sets[i]->name));
    EXPECT_EQ(&vlvk::rowLoops(), sets[i]);
    EXPECT_FALSE(vlvk::forceRowLoops("no such target"));
    EXPECT_EQ(&vlvk::rowLoops(), sets[i]) << "a refused choice must change nothing";
  }
  const auto number = static_cast<std::size_t>(count);
  EXPECT_EQ(names.size(), number);
  EXPECT_EQ(smoothRows.size(), 2 * vlvk::kContrastRules * number);
  EXPECT_EQ(conversions.size(), 16 * number);
  EXPECT_TRUE(names.contains("scalar"));
#if defined(__x86_64__) || defined(__aarch64__) || defined(__arm__)
  EXPECT_GE(count, 2) << "this processor has vector instructions";
#endif

  EXPECT_TRUE(vlvk::forceRowLoops(nullptr));
  EXPECT_EQ(&vlvk::rowLoops(), sets[0]);
}

class Curves : public testing_support::TargetTest {
 protected:
  using Curve = std::vector<std::uint8_t>;

  Curve randomCurve() {
    Curve curve(256);
    std::generate(curve.begin(), curve.end(), [&] { return random_.byte(); });
    return curve;
  }

  /// Each sixteenth lies anywhere, and rises evenly but for random residues, of which 0 and the highest occur.
  Curve curveInSteps(int highest = 15) {
    Curve curve;
    for (int start = 0; start < 256; start += 16) {
      const int level = random_.between(0, 224);
      for (int i = 0; i < 16; ++i)
        curve.push_back(static_cast<std::uint8_t>(level + i + random_.pick({0, highest, random_.between(0, highest)})));
      curve[curve.size() - 16] = static_cast<std::uint8_t>(level);
      curve.back() = static_cast<std::uint8_t>(level + 15 + highest);
    }
    return curve;
  }

  /// Every width, each channel with every value at another place of a block for each channel and width.
  static void expectEntries(const Curve (&curves)[3], bool inSteps) {
    const vlvk::ChannelCurves prepared = vlvk::prepareCurves(curves[0].data(), curves[1].data(), curves[2].data());
    EXPECT_EQ(prepared.inSteps, inSteps);
    for (int width = 0; width <= 300; ++width) {
      const std::size_t bytes = 4 * static_cast<std::size_t>(width);
      for (const vlvk::AlphaRule alpha : {vlvk::kKeepAlpha, vlvk::kOpaque}) {
        std::vector<std::uint8_t> source, expected;
        for (std::size_t i = 0; i < bytes; ++i) {
          source.push_back(static_cast<std::uint8_t>(i / 4 * 83 + i % 4 * 31 + bytes));
          expected.push_back(i % 4 < 3 ? curves[i % 4][source[i]] : alpha == vlvk::kOpaque ? 255 : source[i]);
        }
        testing_support::GuardedBuffer apart(bytes, testing_support::Guard::kBehind, 7);
        vlvk::rowLoops().applyCurves[alpha](source.data(), apart.data(), width, prepared);
        ASSERT_TRUE(std::equal(expected.begin(), expected.end(), apart.data())) << width << " pixels, alpha " << alpha;
        testing_support::GuardedBuffer inPlace(bytes, testing_support::Guard::kBefore, 7);
        std::copy(source.begin(), source.end(), inPlace.data());
        vlvk::rowLoops().applyCurves[alpha](inPlace.data(), inPlace.data(), width, prepared);
        ASSERT_TRUE(std::equal(expected.begin(), expected.end(), inPlace.data())) << width << " pixels in place";
      }
    }
  }

  testing_support::Random random_{18};
};

TEST_P(Curves, GiveTheirEntriesForEveryValueWhetherInStepsOrNot) {
  const Curve outer = curveInSteps();
  const Curve middle = curveInSteps();
  expectEntries({outer, middle, outer}, true);
  expectEntries({outer, middle, curveInSteps()}, false);
  expectEntries({outer, curveInSteps(16), outer}, false);
  expectEntries({randomCurve(), middle, randomCurve()}, false);
}

VLVK_TEST_ALL_TARGETS(Curves);

}  // namespace
