/// Smoothing from ready statistics.
#include <vlvk/mean_var_blend.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "tests/naive/naive.h"
#include "tests/support/box_planes.h"
#include "tests/support/target_test.h"

namespace {

using namespace testing_support;

class MeanVarBlend : public TargetTest {};

TEST_P(MeanVarBlend, TakesAnyStatistics) {
  Random random(91);
  for (int i = 0; i < 1500; ++i) {
    BoxCase c = randomBoxCase(random.pick({0, 1, 8}), 200, random);
    c.height = random.between(1, 4);
    c.radius = random.between(0, random.pick({1, 20, 200}));
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
    const Plane source(c.width, c.height, c.stride, c.guard, c.content, random);
    const Plane destination(c.width, c.height, c.stride, c.guard);
    Mean_var_Blend(destination.data(), source.data(), third.data(), fourth.data(), c.width, c.height, c.stride,
                   c.radius, c.level);
    const auto blended = [&](int x, int y) {
      const auto at = static_cast<std::size_t>(y * c.width + x);
      return naive::blendedStatistics(boxes.sums[at], boxes.squares[at], source.row(y)[x], x, c.width, c.radius,
                                      c.level);
    };
    ASSERT_TRUE(holds(destination, blended)) << c << "run " << i;
  }
  Mean_var_Blend(nullptr, nullptr, nullptr, nullptr, 16, 0, 16, 1, 100);
  Mean_var_Blend(nullptr, nullptr, nullptr, nullptr, 16, -1, 16, 1, 100);
}

// A flat area of value 5: the halves of a group and the columns after it differ.
TEST_P(MeanVarBlend, HalvesOfAGroupTakeTheArraysByTurns) {
  const std::vector<std::uint8_t> source(12, 5);
  const std::vector<std::uint32_t> sums(12, 9 * 5);
  const std::vector<std::uint32_t> squares(12, 9 * 25);
  std::vector<std::uint8_t> destination(12);
  Mean_var_Blend(destination.data(), source.data(), sums.data(), squares.data(), 12, 1, 12, 1, 100);
  EXPECT_EQ(destination, (std::vector<std::uint8_t>{2, 2, 2, 2, 4, 4, 4, 4, 5, 5, 5, 5}));
}

VLVK_TEST_ALL_TARGETS(MeanVarBlend);

}  // namespace
