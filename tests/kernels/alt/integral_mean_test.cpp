/// The integral-image family at its three levels against direct boxes.
#include <vlvk/integral_mean.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <vector>

#include "tests/naive/naive.h"
#include "tests/support/box_planes.h"
#include "tests/support/target_test.h"

namespace {

using namespace testing_support;

BoxCase randomCase(Random& random) {
  BoxCase c = randomBoxCase(8, 200, random);
  c.radius = random.between(1, random.pick({2, 9, 40}));
  c.height = c.radius + 1 + random.between(0, random.pick({0, 12, 90}));
  return c;
}

class IntegralMean : public TargetTest {
 protected:
  /// The whole plane, bands cut from it and the plane's statistics; rows that a driver may not read do not exist.
  static void checkDrivers(const BoxCase& c, Random& random) {
    const Plane plane(c.width, c.height, c.stride, c.guard, c.content, random);
    const int r = c.radius;
    const auto boxes = naive::boxStatistics(rowsOf(plane), c.width, c.height, r, naive::ColumnWidth::k32Bits);
    struct {
      decltype(&Integral_Mean_Neon) driver;
      int above, below, leastRows;
    } const kDrivers[] = {{Integral_Mean_Neon, 0, 0, 1},
                          {Integral_MeanTop_Neon, 0, r, 1},
                          {Integral_MeanMid_Neon, r + 1, r, 1},
                          {Integral_MeanBottom_Neon, r + 1, 0, r + 1}};
    for (const auto& d : kDrivers) {
      const Band band = cutBand(plane, d.above, d.below, d.leastRows, c.guard, random);
      const Plane destination(c.width, band.rows, c.stride, c.guard);
      d.driver(band.start(), destination.data(), c.width, band.rows, c.stride, r, c.level);
      const auto smoothed = [&](int x, int y) {
        const auto at = static_cast<std::size_t>((band.firstRow + y) * c.width + x);
        return naive::smoothedPixel(boxes.sums[at], boxes.squares[at], plane.row(band.firstRow + y)[x], r, c.level);
      };
      ASSERT_TRUE(holds(destination, smoothed)) << c << "driver " << &d - kDrivers;
    }
    const StatisticsPlanes statistics(c.width, c.height, c.stride, c.guard);
    Integral_Mean_Neon2(plane.data(), statistics.sums(), statistics.squares(), c.width, c.height, c.stride, r);
    ASSERT_TRUE(statistics.hold(boxes)) << c;
  }
};

TEST_P(IntegralMean, PlanesAndBandsMatchDirectBoxes) {
  Random random(71);
  for (int i = 0; i < 250 && !HasFatalFailure(); ++i)
    checkDrivers(randomCase(random), random);
  // Every width around whole blocks, the lowest planes, bands of one row, every strength.
  for (int width = 8; width <= 26 && !HasFatalFailure(); ++width) {
    for (const int height : {3, 4, 6, 7})
      checkDrivers({Content::kNoise, width, height, width, 2, random.pick(kLevels), Guard::kBehind}, random);
  }
  for (const int level : kLevels) {
    for (const Content content : {Content::kFlat, Content::kFaintNoise, Content::kEdges})
      checkDrivers({content, 33, 20, 40, 3, level, Guard::kBehind}, random);
  }
  // Sums of squares pass 2^31, then 2^32.
  checkDrivers({Content::kWhite, 19, 120, 19, 100, 100, Guard::kBehind}, random);
  checkDrivers({Content::kWhite, 19, 140, 19, 135, 100, Guard::kBehind}, random);
}

// From accumulators of any content, so that both widths wrap, and with squares that are none: they must be taken.
TEST_P(IntegralMean, RowBuildersAddExtendedRows) {
  Random random(73);
  for (int i = 0; i < 400; ++i) {
    const BoxCase c = randomCase(random);
    const auto length = static_cast<std::size_t>(c.width + 2 * c.radius + 1);
    const Plane row(c.width, 1, c.width, c.guard, c.content, random);
    const Elements<std::uint16_t> given(randomBits<std::uint16_t>(static_cast<std::size_t>(c.width), random), c.guard);
    auto columnSums = randomBits<std::uint32_t>(length, random);
    auto columnSquares = randomBits<std::uint64_t>(length, random);
    const Elements<std::uint32_t> sums(columnSums, c.guard);
    const Elements<std::uint64_t> squares(columnSquares, c.guard);
    const Elements<std::uint32_t> integral(columnSums, c.guard);
    const Elements<std::uint64_t> integralSquares(columnSquares, c.guard);
    if (i % 2 == 0) {
      Integral_Mean_Integral_Line_with_V_Neon(sums.data(), squares.data(), row.data(), given.data(), integral.data(),
                                              integralSquares.data(), c.width, c.radius);
    } else {
      Integral_Mean_Integral_Line_Neon(sums.data(), squares.data(), row.data(), integral.data(), integralSquares.data(),
                                       c.width, c.radius);
    }
    for (std::size_t at = 0; at < length; ++at) {
      const int x = std::clamp(static_cast<int>(at) - c.radius - 1, 0, c.width - 1);
      const std::uint32_t sample = row.data()[x];
      columnSums[at] += sample;
      columnSquares[at] += i % 2 == 0 ? given.data()[x] : sample * sample;
    }
    ASSERT_TRUE(sums.values() == columnSums && squares.values() == columnSquares) << c << "run " << i;
    std::partial_sum(columnSums.begin(), columnSums.end(), columnSums.begin());
    std::partial_sum(columnSquares.begin(), columnSquares.end(), columnSquares.begin());
    ASSERT_EQ(integral.values(), columnSums) << c << "run " << i;
    ASSERT_EQ(integralSquares.values(), columnSquares) << c << "run " << i;
  }
}

/// Integral rows of any content, in memory as the kernels get them, and the boxes between them.
struct IntegralRows {
  Elements<std::uint32_t> top, bottom;
  Elements<std::uint64_t> topSquares, bottomSquares;
  naive::Statistics boxes;

  /// Boxes of any sums, or of those that have the mean and variance of samples.
  IntegralRows(int width, int side, bool samples, Guard guard, Random& random)
      : top(randomBits<std::uint32_t>(static_cast<std::size_t>(width + side), random), guard),
        bottom(randomBits<std::uint32_t>(static_cast<std::size_t>(width + side), random), guard),
        topSquares(randomBits<std::uint64_t>(static_cast<std::size_t>(width + side), random), guard),
        bottomSquares(randomBits<std::uint64_t>(static_cast<std::size_t>(width + side), random), guard) {
    for (int x = 0; x < width; ++x) {
      const std::uint32_t sum = top.data()[x + side] + bottom.data()[x] - top.data()[x];
      const std::uint64_t square = topSquares.data()[x + side] + bottomSquares.data()[x] - topSquares.data()[x];
      const std::uint32_t mean = random.byte();
      if (samples) {
        const auto area = static_cast<std::uint32_t>(side * side);
        bottom.data()[x + side] = sum + area * mean;
        bottomSquares.data()[x + side] = square + std::uint64_t{area} * (mean * mean + random.bits() % 3000);
      }
      boxes.sums.push_back(bottom.data()[x + side] - sum);
      boxes.squares.push_back(static_cast<std::uint32_t>(bottomSquares.data()[x + side] - square));
    }
  }

  /// The row of `samples` smoothed with the constants of each pixel.
  template <class ConstantsOf>
  std::vector<std::uint8_t> smoothed(const Plane& samples, ConstantsOf constantsOf) const {
    std::vector<std::uint8_t> row;
    for (std::size_t x = 0; x < boxes.sums.size(); ++x)
      row.push_back(naive::smoothedPixel(boxes.sums[x], boxes.squares[x], samples.data()[x], constantsOf(x)));
    return row;
  }
};

// A line, and its first block with constants of the caller's: any floats, another one in each lane. The two integers
// that are not read are wrong.
TEST_P(IntegralMean, LinesAndBlocksTakeAnyIntegralRows) {
  Random random(74);
  for (int i = 0; i < 4000; ++i) {
    const BoxCase c = randomCase(random);
    const int side = 2 * c.radius + 1;
    const int width = i % 8 == 0 ? c.width : 8;
    const IntegralRows rows(width, side, i % 4 != 0, c.guard, random);
    const auto* const top = rows.top.data();
    const auto* const bottom = rows.bottom.data();
    const auto* const topSquares = rows.topSquares.data();
    const auto* const bottomSquares = rows.bottomSquares.data();
    const Plane source(width, 1, width, c.guard, Content::kNoise, random);
    const Plane line(width, 1, width, c.guard);
    const StatisticsPlanes lineSums(width, 1, width, c.guard);
    Integral_Mean_Line_Neon(top, topSquares, bottom, bottomSquares, source.data(), line.data(), width, c.radius,
                            c.level);
    Integral_Mean_Line_Neon2(top, topSquares, bottom, bottomSquares, nullptr, lineSums.sums(), lineSums.squares(),
                             width, c.radius);
    const auto constants = naive::formulaConstants(c.radius, c.level);
    ASSERT_TRUE(sameBytes(line, rows.smoothed(source, [&](std::size_t) { return constants; }))) << c;
    ASSERT_TRUE(lineSums.hold(rows.boxes)) << c;
    if (width != 8) continue;

    const auto rare = [&](float value) {
      return i % 8 == 1 ? random.pick({value, -value, 1e38f, -3e38f, INFINITY, -INFINITY, NAN}) : value;
    };
    const float inverse = i % 16 == 2 ? random.pick({-1.0f, 1e30f, INFINITY, NAN}) : constants.inverseArea;
    VKFloat4 strengths{};
    VKFloat4 biases{};
    for (int lane = 0; lane < 4; ++lane) {
      strengths[lane] = rare(static_cast<float>(random.between(-200, 1000)));
      biases[lane] = rare(static_cast<float>(random.between(-200, 1200)) / 8);
    }
    const Plane block(8, 1, 8, c.guard);
    const StatisticsPlanes blockSums(8, 1, 8, c.guard);
    Integral_Mean_Block_Neon(top, topSquares, bottom, bottomSquares, side, std::bit_cast<unsigned int>(inverse),
                             source.data(), block.data(), -77, 31000, strengths, biases);
    Integral_Mean_Block_Neon2(top, topSquares, bottom, bottomSquares, side, nullptr, blockSums.sums(),
                              blockSums.squares());
    const auto constantsOf = [&](std::size_t x) {
      return naive::FormulaConstants{inverse, biases[x % 4], strengths[x % 4]};
    };
    ASSERT_TRUE(sameBytes(block, rows.smoothed(source, constantsOf))) << "run " << i << ", inverse " << inverse;
    ASSERT_TRUE(blockSums.hold(rows.boxes)) << "run " << i;
  }
}

VLVK_TEST_ALL_TARGETS(IntegralMean);

}  // namespace
