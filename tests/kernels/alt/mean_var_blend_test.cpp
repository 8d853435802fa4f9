/// Smoothing from ready statistics, alone and behind the kernels that make them.
#include <vlvk/mean_var_blend.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include <vlvk/integral_mean.h>
#include <vlvk/line_mean.h>
#include "tests/naive/naive.h"
#include "tests/support/box_planes.h"
#include "tests/support/target_test.h"

namespace {

using namespace testing_support;

// 1667: the bias is exactly 0; behind it negative. -228: flat areas have a divisor near 0.
constexpr std::initializer_list<int> kLevels = {0, 1, 100, 600, 1667, 5000, -228, -1, 123456, INT32_MAX, INT32_MIN};

class MeanVarBlend : public TargetTest {
 protected:
  /// Compares `destination` with the rows of `source` from `firstRow` on and their statistics.
  static testing::AssertionResult isBlendOf(const Plane& destination, const Plane& source, int firstRow,
                                            const naive::Statistics& boxes, int radius, int level) {
    std::vector<std::uint8_t> expected(destination.bytes().size(), Plane::kCanary);
    for (int y = 0; y < destination.height(); ++y) {
      for (int x = 0; x < destination.width(); ++x) {
        const auto at = static_cast<std::size_t>((firstRow + y) * destination.width() + x);
        expected[static_cast<std::size_t>(y * destination.stride() + x)] = naive::blendedStatistics(
            boxes.sums[at], boxes.squares[at], source.row(firstRow + y)[x], x, destination.width(), radius, level);
      }
    }
    return sameBytes(destination, expected);
  }
};

TEST_P(MeanVarBlend, TakesAnyStatistics) {
  Random random(91);
  for (int i = 0; i < 1500; ++i) {
    BoxCase c = randomBoxCase(random.pick({0, 1, 8}), random);
    c.height = random.between(1, 4);
    c.radius = random.between(0, random.pick({1, 20, 200}));
    c.level = random.pick(kLevels);
    // Real boxes, boxes with the arrays the wrong way round, and any bits.
    const auto area = static_cast<std::uint32_t>((2 * c.radius + 1) * (2 * c.radius + 1));
    naive::Statistics boxes;
    for (int at = 0; at < c.width * c.height; ++at) {
      const std::uint32_t mean = random.byte();
      const std::uint32_t square = mean * mean + random.bits() % random.pick({1U, 300U, 16000U});
      boxes.sums.push_back(i % 3 == 0 ? random.bits() : area * (i % 3 == 1 ? mean : square));
      boxes.squares.push_back(i % 3 == 0 ? random.bits() : area * (i % 3 == 1 ? square : mean));
    }
    const Elements<std::uint32_t> third(boxes.sums, c.guard);
    const Elements<std::uint32_t> fourth(boxes.squares, c.guard);
    Plane source(c.width, c.height, c.stride, c.guard, c.content, random);
    source.makeReadOnly();
    const Plane destination(c.width, c.height, c.stride, c.guard);
    Mean_var_Blend(destination.data(), source.data(), third.data(), fourth.data(), c.width, c.height, c.stride,
                   c.radius, c.level);
    ASSERT_TRUE(isBlendOf(destination, source, 0, boxes, c.radius, c.level)) << c.text() << "run " << i;
  }
  Mean_var_Blend(nullptr, nullptr, nullptr, nullptr, 16, 0, 16, 1, 100);
  Mean_var_Blend(nullptr, nullptr, nullptr, nullptr, 16, -1, 16, 1, 100);
}

// A flat area of value 5: the halves of a group and the columns behind it differ.
TEST_P(MeanVarBlend, HalvesOfAGroupTakeTheArraysByTurns) {
  const std::vector<std::uint8_t> source(12, 5);
  const std::vector<std::uint32_t> sums(12, 9 * 5);
  const std::vector<std::uint32_t> squares(12, 9 * 25);
  std::vector<std::uint8_t> destination(12);
  Mean_var_Blend(destination.data(), source.data(), sums.data(), squares.data(), 12, 1, 12, 1, 100);
  EXPECT_EQ(destination, (std::vector<std::uint8_t>{2, 2, 2, 2, 4, 4, 4, 4, 5, 5, 5, 5}));
}

TEST_P(MeanVarBlend, FollowsTheStatisticsKernels) {
  Random random(92);
  for (int i = 0; i < 60; ++i) {
    BoxCase c = randomBoxCase(8, random);
    c.stride = c.width;  // the integral kernel's rows are as far apart as the plane's, the blend takes them dense
    c.radius = random.between(1, 12);
    c.height = c.radius + random.between(1, 40);
    c.level = random.pick(kLevels);
    const auto count = static_cast<std::size_t>(c.width * c.height);
    const Elements<std::uint32_t> sums(std::vector<std::uint32_t>(count), c.guard);
    const Elements<std::uint32_t> squares(std::vector<std::uint32_t>(count), c.guard);
    const Plane plane(c.width, c.height, c.width, c.guard, c.content, random);
    const Plane whole(c.width, c.height, c.width, c.guard);
    Integral_Mean_Neon2(plane.data(), sums.data(), squares.data(), c.width, c.height, c.width, c.radius);
    Mean_var_Blend(whole.data(), plane.data(), sums.data(), squares.data(), c.width, c.height, c.width, c.radius,
                   c.level);
    const naive::Statistics boxes =
        naive::boxStatistics(clampedRows(plane), c.width, c.height, c.radius, naive::ColumnWidth::k32Bits);
    ASSERT_TRUE(isBlendOf(whole, plane, 0, boxes, c.radius, c.level)) << c.text();
  }

  // The column kernels leave out the columns behind the last group; the half-size of their box is not the radius.
  constexpr int kWidth = 40;
  constexpr int kHeight = 70;
  const Plane plane(kWidth, kHeight, 52, Guard::kBehind, Content::kNoise, random);
  const naive::Statistics boxes =
      naive::boxStatistics(clampedRows(plane), kWidth, kHeight, 15, naive::ColumnWidth::k16Bits);
  const auto check = [&](decltype(&MeanTop_Window_V2_Neon) kernel, int firstRow, int rows) {
    std::vector<std::uint32_t> sums(std::size_t{kWidth} * kHeight);
    std::vector<std::uint32_t> squares(sums.size());
    kernel(plane.row(firstRow), sums.data(), squares.data(), kWidth, rows, 52, 9);
    const Plane destination(kWidth, rows, 52);
    Mean_var_Blend(destination.data(), plane.row(firstRow), sums.data(), squares.data(), kWidth, rows, 52, 15, 100);
    EXPECT_TRUE(isBlendOf(destination, plane, firstRow, boxes, 15, 100)) << rows << " rows from " << firstRow;
  };
  check(MeanTop_Window_V2_Neon, 0, 40);
  check(MeanMid_Window_V2_Neon, 20, 30);
  check(MeanBottom_Window_V2_Neon, 50, 20);
}

VLVK_TEST_ALL_TARGETS(MeanVarBlend);

}  // namespace
