/// The whole-plane smoother and the box statistics on running column sums against direct boxes.
#include <vlvk/line_mean.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include <vlvk/band_smoothing.h>
#include "tests/naive/naive.h"
#include "tests/support/box_planes.h"
#include "tests/support/target_test.h"

namespace {

using namespace testing_support;

struct Case : BoxCase {
  int columns() const { return width & ~7; }
  int R() const { return (radius + 7) / 8 * 8; }
  int h() const { return R() - 1; }
};

Case randomCase(Random& random) {
  Case c{randomBoxCase(8, random)};
  c.radius = random.between(1, random.pick({8, 16, 64}));
  // From planes lower than the box to such that have room for every kind of band.
  c.height = random.between(1, random.pick({c.R(), 2 * c.R(), 3 * c.R() + 20}));
  c.level = random.pick({0, 1, 100, 1000, 1667, 5000, -228, INT32_MAX});
  return c;
}

class LineMean : public TargetTest {
 protected:
  static void checkWholePlane(const Case& c, const Plane& plane) {
    const Plane destination(c.columns(), c.height, c.stride, c.guard);
    std::vector<std::uint8_t> expected = destination.bytes();
    const auto smoothed = naive::smoothPlane(plane.data(), c.width, c.height, c.stride, c.h(), c.level);
    for (std::ptrdiff_t y = 0; y < c.height; ++y)
      std::copy_n(smoothed.begin() + y * c.width, c.columns(), expected.begin() + y * c.stride);
    Mean_Window_Neon(plane.data(), destination.data(), c.width, c.height, c.stride, c.radius, c.level);
    ASSERT_TRUE(sameBytes(destination, expected)) << c.text();
  }

  /// Bands of any height, also lower than the box; rows -h .. rows + h - 1 exist and no others.
  static void checkStatistics(const Case& c, const Plane& plane, Random& random) {
    const naive::Statistics boxes =
        naive::boxStatistics(clampedRows(plane), c.columns(), c.height, c.h(), naive::ColumnWidth::k16Bits);
    for (const BandKind kind : {BandKind::kTop, BandKind::kMiddle, BandKind::kBottom}) {
      const BandCut band = cutBand(kind, plane, {c.h(), c.h(), 1}, c.guard, random);
      if (band.rows == 0) continue;
      const StatisticsPlanes dense(c.columns(), band.rows, c.width, c.guard);
      const auto kernel = kind == BandKind::kTop      ? MeanTop_Window_V2_Neon
                          : kind == BandKind::kMiddle ? MeanMid_Window_V2_Neon
                                                      : MeanBottom_Window_V2_Neon;
      kernel(band.start(), dense.sums(), dense.squares(), c.width, band.rows, c.stride, c.radius);
      ASSERT_TRUE(dense.hold(boxes, band.firstRow)) << c.text() << band.text();
      if (kind != BandKind::kMiddle) continue;
      const StatisticsPlanes wide(c.columns(), band.rows, c.stride, c.guard);
      MeanMid_Window_Neon2(band.start(), wide.sums(), wide.squares(), c.width, band.rows, c.stride, c.radius, c.level);
      ASSERT_TRUE(wide.hold(boxes, band.firstRow)) << "Neon2, " << c.text() << band.text();
    }
  }

  static void check(const Case& c, Random& random) {
    Plane plane(c.width, c.height, c.stride, c.guard, c.content, random);
    plane.makeReadOnly();
    checkWholePlane(c, plane);
    if (!HasFatalFailure()) checkStatistics(c, plane, random);
  }
};

TEST_P(LineMean, PlanesAndBandsMatchDirectBoxes) {
  Random random(81);
  for (int i = 0; i < 200 && !HasFatalFailure(); ++i)
    check(randomCase(random), random);
  for (int width = 8; width <= 26 && !HasFatalFailure(); ++width)
    check({{Content::kNoise, width, random.pick({9, 30}), width, random.pick({1, 8}), 600, Guard::kBehind}}, random);
  // From R = 136 on the 16-bit column sums of white rows wrap, and the boxes are those of the wrapped sums.
  for (const int radius : {128, 136}) {
    for (const Content content : {Content::kWhite, Content::kNoise})
      check({{content, 19, 2 * radius + 9, 19, radius, 600, Guard::kBehind}}, random);
  }
}

TEST_P(LineMean, LinesTakeAnySumsAndHalfSize) {
  Random random(82);
  for (int i = 0; i < 1500; ++i) {
    const Case c = randomCase(random);
    const auto columns = static_cast<std::size_t>(c.columns());
    const int h = random.pick({random.between(0, 3), random.between(0, 40), random.between(0, 300), 100000, INT32_MAX});
    const auto sums = randomBits<std::uint16_t>(columns, random);
    const auto squares = randomBits<std::uint32_t>(columns, random);
    const naive::Statistics boxes = naive::scanColumns({{sums.begin(), sums.end()}, squares}, -std::int64_t{h}, h);
    const Elements<std::uint16_t> columnSums(sums, c.guard);
    const Elements<std::uint32_t> columnSquares(squares, c.guard);
    const StatisticsPlanes first(c.columns(), 1, c.width, c.guard);
    const StatisticsPlanes second(c.columns(), 1, c.width, c.guard);
    MeanLine_V2_Neon(columnSums.data(), columnSquares.data(), c.width, first.sums(), first.squares(), h);
    MeanLine_Neon2(columnSums.data(), columnSquares.data(), c.width, nullptr, second.sums(), second.squares(), h,
                   c.level);
    ASSERT_TRUE(first.hold(boxes)) << "h " << h << ", width " << c.width;
    ASSERT_TRUE(second.hold(boxes)) << "Neon2, h " << h << ", width " << c.width;
    ASSERT_TRUE(columnSums.values() == sums && columnSquares.values() == squares) << "the column sums changed";
  }
}

TEST_P(LineMean, FusedLineIsTheSlidingLineOfTheBands) {
  Random random(83);
  for (int i = 0; i < 300; ++i) {
    const Case c = randomCase(random);
    const auto row = [&] { return Plane(c.width, 1, c.width, c.guard, c.content, random); };
    const Plane add = row();
    const Plane sub = row();
    const Plane source = row();
    const int h = random.pick({0, 7, 15, random.between(0, 300)});
    const auto sums = randomBits<std::uint16_t>(static_cast<std::size_t>(c.columns()), random);
    const auto squares = randomBits<std::uint32_t>(static_cast<std::size_t>(c.columns()), random);
    struct Result {
      Elements<std::uint16_t> sums;
      Elements<std::uint32_t> squares;
      Plane destination;
    };
    const auto run = [&](decltype(&MeanLineEx_Neon) kernel, const Result& result) {
      kernel(result.sums.data(), result.squares.data(), add.data(), sub.data(), c.width, source.data(),
             result.destination.data(), h, c.level);
    };
    const Result expected{{sums, c.guard}, {squares, c.guard}, {c.columns(), 1, c.width, c.guard}};
    const Result actual{{sums, c.guard}, {squares, c.guard}, {c.columns(), 1, c.width, c.guard}};
    run(MeanLineEx_Neon, expected);
    run(MeanLine_V4_Neon, actual);
    ASSERT_TRUE(sameBytes(actual.destination, expected.destination.bytes())) << c.text() << ", h " << h;
    ASSERT_EQ(actual.sums.values(), expected.sums.values());
    ASSERT_EQ(actual.squares.values(), expected.squares.values());
  }
}

VLVK_TEST_ALL_TARGETS(LineMean);

}  // namespace
