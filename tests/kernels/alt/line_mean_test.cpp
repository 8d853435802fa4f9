/// The whole-plane smoother and the box statistics on running column sums against direct boxes.
#include <vlvk/line_mean.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <tuple>
#include <vector>

#include <vlvk/band_smoothing.h>
#include "tests/naive/naive.h"
#include "tests/support/box_planes.h"
#include "tests/support/target_test.h"

namespace {

using namespace testing_support;

BoxCase randomCase(Random& random) {
  BoxCase c = randomBoxCase(8, 200, random);
  c.radius = random.between(1, random.pick({8, 16, 64}));
  // From planes lower than the box to such that have room for every kind of band.
  c.height = random.between(1, random.pick({c.R(), 2 * c.R(), 3 * c.R() + 20}));
  return c;
}

class LineMean : public TargetTest {
 protected:
  /// The whole plane, and the statistics of bands of any height, also lower than the box; rows -h .. rows + h - 1 exist
  /// and no others.
  static void check(const BoxCase& c, Random& random) {
    const Plane plane(c.width, c.height, c.stride, c.guard, c.content, random);
    const Plane destination(c.columns(), c.height, c.stride, c.guard);
    Mean_Window_Neon(plane.data(), destination.data(), c.width, c.height, c.stride, c.radius, c.level);
    const auto smoothed = naive::smoothPlane(plane.data(), c.width, c.height, c.stride, c.h(), c.level);
    ASSERT_TRUE(holds(destination, [&](int x, int y) { return smoothed.data()[y * c.width + x]; })) << c;

    const auto boxes = naive::boxStatistics(rowsOf(plane), c.columns(), c.height, c.h(), naive::ColumnWidth::k16Bits);
    const auto withStride = [](auto* source, auto* sums, auto* squares, int width, int rows, int stride, int radius) {
      MeanMid_Window_Neon2(source, sums, squares, width, rows, stride, radius, 100);
    };
    struct {
      decltype(&MeanTop_Window_V2_Neon) kernel;
      int above, below, pitch;
    } const kKernels[] = {{MeanTop_Window_V2_Neon, 0, c.h(), c.width},
                          {MeanMid_Window_V2_Neon, c.h(), c.h(), c.width},
                          {MeanBottom_Window_V2_Neon, c.h(), 0, c.width},
                          {withStride, c.h(), c.h(), c.stride}};
    for (const auto& k : kKernels) {
      const Band band = cutBand(plane, k.above, k.below, 1, c.guard, random);
      if (band.rows == 0) continue;
      const StatisticsPlanes out(c.columns(), band.rows, k.pitch, c.guard);
      k.kernel(band.start(), out.sums(), out.squares(), c.width, band.rows, c.stride, c.radius);
      ASSERT_TRUE(out.hold(boxes, band.firstRow)) << c << "kernel " << &k - kKernels;
    }
  }
};

TEST_P(LineMean, PlanesAndBandsMatchDirectBoxes) {
  Random random(81);
  for (int i = 0; i < 200 && !HasFatalFailure(); ++i)
    check(randomCase(random), random);
  for (int width = 8; width <= 26 && !HasFatalFailure(); ++width)
    check({Content::kNoise, width, random.pick({9, 30}), width, random.pick({1, 8}), 600, Guard::kBehind}, random);
  // From R = 136 on the 16-bit column sums of white rows wrap, and the boxes are those of the wrapped sums.
  for (const int radius : {128, 136}) {
    for (const Content content : {Content::kWhite, Content::kNoise})
      check({content, 19, 2 * radius + 9, 19, radius, 600, Guard::kBehind}, random);
  }
}

TEST_P(LineMean, LinesTakeAnySumsAndHalfSize) {
  Random random(82);
  for (int i = 0; i < 1500; ++i) {
    const BoxCase c = randomCase(random);
    const auto columns = static_cast<std::size_t>(c.columns());
    const int h = random.pick({random.between(0, 3), random.between(0, 40), random.between(0, 300), 100000, INT32_MAX});
    const auto sums = randomBits<std::uint16_t>(columns, random);
    const auto squares = randomBits<std::uint32_t>(columns, random);
    const naive::Statistics values{{sums.begin(), sums.end()}, squares};
    const Elements<std::uint16_t> columnSums(sums, c.guard);
    const Elements<std::uint32_t> columnSquares(squares, c.guard);
    for (const bool second : {false, true}) {
      const StatisticsPlanes out(c.columns(), 1, c.width, c.guard);
      if (second) {
        MeanLine_Neon2(columnSums.data(), columnSquares.data(), c.width, nullptr, out.sums(), out.squares(), h,
                       c.level);
      } else {
        MeanLine_V2_Neon(columnSums.data(), columnSquares.data(), c.width, out.sums(), out.squares(), h);
      }
      ASSERT_TRUE(out.hold(naive::scanColumns(values, -std::int64_t{h}, h))) << c << "h " << h << ", second " << second;
    }
    ASSERT_TRUE(columnSums.values() == sums && columnSquares.values() == squares) << "the column sums changed";

    const auto slid = [&](decltype(&MeanLineEx_Neon) kernel, const Plane& add, const Plane& sub) {
      const Elements<std::uint16_t> slidSums(sums, c.guard);
      const Elements<std::uint32_t> slidSquares(squares, c.guard);
      const Plane out(c.columns(), 1, c.width, c.guard);
      kernel(slidSums.data(), slidSquares.data(), add.data(), sub.data(), c.width, sub.data(), out.data(), h, c.level);
      return std::tuple(slidSums.values(), slidSquares.values(), out.bytes());
    };
    const Plane add(c.width, 1, c.width, c.guard, c.content, random);
    const Plane sub(c.width, 1, c.width, c.guard, Content::kNoise, random);
    ASSERT_EQ(slid(MeanLine_V4_Neon, add, sub), slid(MeanLineEx_Neon, add, sub)) << c << "h " << h;
  }
}

VLVK_TEST_ALL_TARGETS(LineMean);

}  // namespace
