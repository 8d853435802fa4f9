/// The integral-image family at its three levels against direct boxes.
#include <vlvk/integral_mean.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "tests/naive/naive.h"
#include "tests/support/box_planes.h"
#include "tests/support/target_test.h"

namespace {

using namespace testing_support;

// 1667: the bias is exactly 0; behind it negative. -228: flat areas have a divisor near 0.
constexpr std::initializer_list<int> kLevels = {0, 1, 50, 100, 1000, 1667, 5000, -228, 123456, INT32_MAX, INT32_MIN};

BoxCase randomCase(Random& random) {
  BoxCase c = randomBoxCase(8, random);
  c.radius = random.between(1, random.pick({2, 9, 40}));
  c.height = c.radius + 1 + random.between(0, random.pick({0, 12, 90}));
  c.level = random.pick(kLevels);
  return c;
}

decltype(&Integral_Mean_Neon) driverOf(BandKind kind) {
  switch (kind) {
    case BandKind::kWhole:
      return Integral_Mean_Neon;
    case BandKind::kTop:
      return Integral_MeanTop_Neon;
    case BandKind::kMiddle:
      return Integral_MeanMid_Neon;
    case BandKind::kBottom:
      return Integral_MeanBottom_Neon;
  }
  return nullptr;
}

class IntegralMean : public TargetTest {
 protected:
  /// The whole plane, bands cut from it and the plane's statistics; rows that a driver may not read do not exist.
  static void checkDrivers(const BoxCase& c, Random& random) {
    Plane plane(c.width, c.height, c.stride, c.guard, c.content, random);
    plane.makeReadOnly();
    const naive::Statistics boxes =
        naive::boxStatistics(clampedRows(plane), c.width, c.height, c.radius, naive::ColumnWidth::k32Bits);
    for (const BandKind kind : {BandKind::kWhole, BandKind::kTop, BandKind::kMiddle, BandKind::kBottom}) {
      const BandCut band = cutBand(kind, plane, {c.radius + 1, c.radius, c.radius + 1}, c.guard, random);
      if (band.rows == 0) continue;
      const Plane destination(c.width, band.rows, c.stride, c.guard);
      std::vector<std::uint8_t> expected = destination.bytes();
      for (int y = 0; y < band.rows; ++y) {
        for (int x = 0; x < c.width; ++x) {
          const auto at = static_cast<std::size_t>((band.firstRow + y) * c.width + x);
          expected[static_cast<std::size_t>(y * c.stride + x)] = naive::smoothedPixel(
              boxes.sums[at], boxes.squares[at], plane.row(band.firstRow + y)[x], c.radius, c.level);
        }
      }
      driverOf(kind)(band.start(), destination.data(), c.width, band.rows, c.stride, c.radius, c.level);
      ASSERT_TRUE(sameBytes(destination, expected)) << c.text() << band.text();
    }
    const StatisticsPlanes statistics(c.width, c.height, c.stride, c.guard);
    Integral_Mean_Neon2(plane.data(), statistics.sums(), statistics.squares(), c.width, c.height, c.stride, c.radius);
    ASSERT_TRUE(statistics.hold(boxes)) << c.text();
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

TEST_P(IntegralMean, WhitePlaneHasTheLargestSums) {
  Random random(72);
  const Plane plane(21, 9, 30, Guard::kBehind, Content::kWhite, random);
  const StatisticsPlanes statistics(21, 9, 30, Guard::kBehind);
  Integral_Mean_Neon2(plane.data(), statistics.sums(), statistics.squares(), 21, 9, 30, 1);
  const std::size_t count = std::size_t{21} * 9;
  EXPECT_TRUE(statistics.hold({std::vector<std::uint32_t>(count, 2295), std::vector<std::uint32_t>(count, 585225)}));
}

// From accumulators of any content, so that both widths wrap, and with squares that are none: they must be taken.
TEST_P(IntegralMean, RowBuildersAddExtendedRows) {
  Random random(73);
  for (int i = 0; i < 400; ++i) {
    const BoxCase c = randomCase(random);
    const auto length = static_cast<std::size_t>(c.width + 2 * c.radius + 1);
    const bool given = i % 2 == 0;
    Plane row(c.width, 1, c.width, c.guard, c.content, random);
    row.makeReadOnly();
    const auto squares = randomBits<std::uint16_t>(static_cast<std::size_t>(c.width), random);
    const Elements<std::uint16_t> givenSquares(squares, c.guard);
    auto columnSums = randomBits<std::uint32_t>(length, random);
    auto columnSquares = randomBits<std::uint64_t>(length, random);
    const Elements<std::uint32_t> sums(columnSums, c.guard);
    const Elements<std::uint64_t> sumsOfSquares(columnSquares, c.guard);
    const Elements<std::uint32_t> integral(std::vector<std::uint32_t>(length), c.guard);
    const Elements<std::uint64_t> integralSquares(std::vector<std::uint64_t>(length), c.guard);
    if (given) {
      Integral_Mean_Integral_Line_with_V_Neon(sums.data(), sumsOfSquares.data(), row.data(), givenSquares.data(),
                                              integral.data(), integralSquares.data(), c.width, c.radius);
    } else {
      Integral_Mean_Integral_Line_Neon(sums.data(), sumsOfSquares.data(), row.data(), integral.data(),
                                       integralSquares.data(), c.width, c.radius);
    }

    std::vector<std::uint32_t> prefix(length);
    std::vector<std::uint64_t> prefixSquares(length);
    std::uint32_t S = 0;
    std::uint64_t Q = 0;
    for (std::size_t at = 0; at < length; ++at) {
      const int x = std::clamp(static_cast<int>(at) - c.radius - 1, 0, c.width - 1);
      const std::uint32_t sample = row.data()[x];
      columnSums[at] += sample;
      columnSquares[at] += given ? squares[static_cast<std::size_t>(x)] : sample * sample;
      prefix[at] = S += columnSums[at];
      prefixSquares[at] = Q += columnSquares[at];
    }
    ASSERT_EQ(sums.values(), columnSums) << c.text();
    ASSERT_EQ(sumsOfSquares.values(), columnSquares) << c.text();
    ASSERT_EQ(integral.values(), prefix) << c.text();
    ASSERT_EQ(integralSquares.values(), prefixSquares) << c.text();
  }
}

/// Four integral rows of any content, in memory as the kernels get them.
struct IntegralRows {
  std::vector<std::uint32_t> top, bottom;
  std::vector<std::uint64_t> topSquares, bottomSquares;
  Elements<std::uint32_t> T, B;
  Elements<std::uint64_t> Tq, Bq;

  /// Boxes of any sums, or of those that have the mean and variance of samples.
  IntegralRows(std::size_t length, std::uint32_t side, bool samples, Guard guard, Random& random)
      : top(randomBits<std::uint32_t>(length, random)),
        bottom(randomBits<std::uint32_t>(length, random)),
        topSquares(randomBits<std::uint64_t>(length, random)),
        bottomSquares(randomBits<std::uint64_t>(length, random)),
        T(top, guard),
        B(bottom, guard),
        Tq(topSquares, guard),
        Bq(bottomSquares, guard) {
    for (std::size_t c = side; samples && c < length; ++c) {
      const std::uint32_t area = side * side;
      const std::uint32_t mean = random.byte();
      B.data()[c] = bottom[c] = bottom[c - side] - top[c - side] + top[c] + area * mean;
      Bq.data()[c] = bottomSquares[c] = bottomSquares[c - side] - topSquares[c - side] + topSquares[c] +
                                        std::uint64_t{area} * (mean * mean + random.bits() % 3000);
    }
  }

  /// Sum and low half of the sum of squares of the box of pixel x.
  std::pair<std::uint32_t, std::uint32_t> box(std::size_t x, std::size_t side) const {
    const std::uint64_t Q = bottomSquares[x + side] - bottomSquares[x] - (topSquares[x + side] - topSquares[x]);
    return {bottom[x + side] - bottom[x] - (top[x + side] - top[x]), static_cast<std::uint32_t>(Q)};
  }
};

TEST_P(IntegralMean, LinesTakeAnyIntegralRows) {
  Random random(74);
  for (int i = 0; i < 500; ++i) {
    const BoxCase c = randomCase(random);
    const auto side = static_cast<std::uint32_t>(2 * c.radius + 1);
    const IntegralRows rows(static_cast<std::size_t>(c.width) + side, side, i % 2 == 0, c.guard, random);
    Plane source(c.width, 1, c.width, c.guard, Content::kNoise, random);
    source.makeReadOnly();
    const Plane destination(c.width, 1, c.width, c.guard);
    const StatisticsPlanes statistics(c.width, 1, c.width, c.guard);
    Integral_Mean_Line_Neon(rows.T.data(), rows.Tq.data(), rows.B.data(), rows.Bq.data(), source.data(),
                            destination.data(), c.width, c.radius, c.level);
    Integral_Mean_Line_Neon2(rows.T.data(), rows.Tq.data(), rows.B.data(), rows.Bq.data(), nullptr, statistics.sums(),
                             statistics.squares(), c.width, c.radius);
    std::vector<std::uint8_t> smoothed;
    naive::Statistics boxes;
    for (int x = 0; x < c.width; ++x) {
      const auto [S, Q] = rows.box(static_cast<std::size_t>(x), side);
      smoothed.push_back(naive::smoothedPixel(S, Q, source.data()[x], c.radius, c.level));
      boxes.sums.push_back(S);
      boxes.squares.push_back(Q);
    }
    ASSERT_TRUE(sameBytes(destination, smoothed)) << c.text();
    ASSERT_TRUE(statistics.hold(boxes)) << c.text();
  }
}

// The caller brings the constants: any floats, another one in each lane. The two integers that are not read are wrong.
TEST_P(IntegralMean, BlocksTakeTheConstantsOfTheirLane) {
  Random random(75);
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  for (int i = 0; i < 4000; ++i) {
    const auto side = static_cast<std::uint32_t>(2 * random.between(1, 40) + 1);
    const Guard guard = random.pick({Guard::kBehind, Guard::kBefore});
    const IntegralRows rows(8 + side, side, i % 4 != 0, guard, random);
    Plane source(8, 1, 8, guard, Content::kNoise, random);
    source.makeReadOnly();
    const Plane destination(8, 1, 8, guard);
    const StatisticsPlanes statistics(8, 1, 8, guard);
    const float inverse =
        i % 16 == 0 ? random.pick({-1.0f, 1e30f, kInfinity, NAN}) : 1.0f / static_cast<float>(side * side);
    VKFloat4 strengths{};
    VKFloat4 biases{};
    for (int lane = 0; lane < 4; ++lane) {
      const auto rare = [&](float value) {
        return i % 8 == 1 ? random.pick({value, -value, 1e38f, -3e38f, kInfinity, -kInfinity, NAN}) : value;
      };
      strengths[lane] = rare(static_cast<float>(random.between(-200, 1000)));
      biases[lane] = rare(static_cast<float>(random.between(-200, 1200)) / 8);
    }
    Integral_Mean_Block_Neon(rows.T.data(), rows.Tq.data(), rows.B.data(), rows.Bq.data(), static_cast<int>(side),
                             std::bit_cast<unsigned int>(inverse), source.data(), destination.data(), -77, 31000,
                             strengths, biases);
    Integral_Mean_Block_Neon2(rows.T.data(), rows.Tq.data(), rows.B.data(), rows.Bq.data(), static_cast<int>(side),
                              nullptr, statistics.sums(), statistics.squares());
    std::vector<std::uint8_t> smoothed;
    naive::Statistics boxes;
    for (std::size_t x = 0; x < 8; ++x) {
      const auto [S, Q] = rows.box(x, side);
      smoothed.push_back(naive::smoothedPixel(S, Q, source.data()[x],
                                              naive::FormulaConstants{inverse, biases[x % 4], strengths[x % 4]}));
      boxes.sums.push_back(S);
      boxes.squares.push_back(Q);
    }
    ASSERT_TRUE(sameBytes(destination, smoothed)) << "run " << i << ", side " << side << ", inverse " << inverse;
    ASSERT_TRUE(statistics.hold(boxes)) << "run " << i << ", side " << side;
  }
}

VLVK_TEST_ALL_TARGETS(IntegralMean);

}  // namespace
