/// The textbook smoother: its box sums against direct boxes, its blend against the formula.
#include <vlvk/reference_filter.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "tests/naive/naive.h"
#include "tests/support/box_planes.h"
#include "tests/support/target_test.h"

namespace {

using namespace testing_support;

class ReferenceFilter : public TargetTest {
 protected:
  /// The whole plane and bands cut from it; rows that a kernel may not read do not exist.
  static void checkSums(const BoxCase& c, Random& random) {
    const Plane plane(c.width, c.height, c.stride, c.guard, c.content, random);
    const auto boxes = naive::boxStatistics(rowsOf(plane), c.width, c.height, c.radius, naive::ColumnWidth::k32Bits);
    struct {
      decltype(&Mean) kernel;
      int above, below;
    } const kKernels[] = {
        {Mean, 0, 0}, {MeanTop, 0, c.radius}, {MeanMid, c.radius, c.radius}, {MeanBottom, c.radius, 0}};
    for (const auto& k : kKernels) {
      const Band band = cutBand(plane, k.above, k.below, 1, c.guard, random);
      if (band.rows == 0) continue;
      const StatisticsPlanes out(c.width, band.rows, c.stride, c.guard);
      k.kernel(band.start(), c.width, band.rows, c.stride, out.sums(), out.squares(), c.radius);
      ASSERT_TRUE(out.hold(boxes, band.firstRow)) << c << "kernel " << &k - kKernels;
    }
  }
};

TEST_P(ReferenceFilter, SumsAreThoseOfDirectBoxes) {
  Random random(101);
  for (int i = 0; i < 300 && !HasFatalFailure(); ++i) {
    BoxCase c = randomBoxCase(1, 200, random);
    // From a single sample to a box that the plane is lost in.
    c.radius = random.pick({0, random.between(1, 8), random.between(1, 30), random.between(1, 300)});
    c.height = random.between(1, random.pick({3, 40, 90}));
    checkSums(c, random);
  }
  checkSums({Content::kWhite, 9, 290, 11, 140, 0, Guard::kBehind}, random);  // sums of squares pass 2^32
}

// A strength of 0 divides 0 by 0 in flat areas; a negative one may divide by 0, and gives results far out of range.
TEST_P(ReferenceFilter, LineAndBlendTakeAnySums) {
  Random random(103);
  for (int i = 0; i < 1500; ++i) {
    BoxCase c = randomBoxCase(1, 200, random);
    c.height = random.between(1, 4);
    c.radius = random.between(0, random.pick({1, 20, 200}));
    c.level = random.pick({0, 1, 30, 400, 100000, -1, -20, -300, INT32_MAX, INT32_MIN});
    const auto area = static_cast<std::uint32_t>((2 * c.radius + 1) * (2 * c.radius + 1));
    const auto length = static_cast<std::size_t>((c.height - 1) * c.stride + c.width);
    naive::Statistics boxes{randomBits<std::uint32_t>(length, random), randomBits<std::uint32_t>(length, random)};
    for (std::size_t at = 0; i % 4 != 0 && at < length; ++at) {
      const std::uint32_t mean = random.byte();
      const std::uint32_t variance = random.bits() % random.pick({1U, 21U, 500U, 16000U});
      boxes.sums[at] = area * mean;
      boxes.squares[at] = area * (mean * mean + variance) - (mean > 0 ? random.bits() % 3 : 0);
    }
    const Elements<std::uint32_t> sums(boxes.sums, c.guard);
    const Elements<std::uint32_t> squares(boxes.squares, c.guard);
    const int halfSize = random.pick({0, 1, random.between(0, 300), 100000, INT32_MAX});
    const auto width = static_cast<std::ptrdiff_t>(c.width);
    const naive::Statistics columns{{boxes.sums.begin(), boxes.sums.begin() + width},
                                    {boxes.squares.begin(), boxes.squares.begin() + width}};
    const StatisticsPlanes line(c.width, 1, c.width, c.guard);
    MeanLine(sums.data(), squares.data(), c.width, line.sums(), line.squares(), halfSize);
    ASSERT_TRUE(line.hold(naive::scanColumns(columns, -std::int64_t{halfSize}, halfSize))) << c << "h " << halfSize;

    const Plane image(c.width, c.height, c.stride, c.guard, c.content, random);
    const std::vector<std::uint8_t> before = image.bytes();
    MeanBlendImage(image.data(), sums.data(), squares.data(), c.width, c.height, c.stride, c.level, c.radius);
    const auto blended = [&](int x, int y) {
      const auto at = static_cast<std::size_t>(y * c.stride + x);
      return naive::referencePixel(boxes.sums[at], boxes.squares[at], before[at], c.radius, c.level);
    };
    ASSERT_TRUE(holds(image, blended)) << c << "run " << i;
  }
}

VLVK_TEST_ALL_TARGETS(ReferenceFilter);

}  // namespace
