/// The box statistics of line_mean.h and reference_filter.h against direct boxes, and what smooths by statistics.
#include <gtest/gtest.h>

#include <cstdint>
#include <tuple>
#include <vector>

#include <vlvk/band_smoothing.h>
#include <vlvk/line_mean.h>
#include <vlvk/mean_var_blend.h>
#include <vlvk/reference_filter.h>
#include "tests/naive/naive.h"
#include "tests/support/box_planes.h"
#include "tests/support/target_test.h"

namespace {

using namespace testing_support;

BoxCase lineMeanCase(Random& random) {
  BoxCase c = randomBoxCase(8, 200, random);
  c.radius = random.between(1, random.pick({8, 16, 64}));
  // From planes lower than the box to such that have room for every kind of band.
  c.height = random.between(1, random.pick({c.R(), 2 * c.R(), 3 * c.R() + 20}));
  return c;
}

/// A kernel, the rows that it reads around its band, and the elements between rows of its results.
struct Kernel {
  decltype(&MeanTop_Window_V2_Neon) run;
  int above, below, pitch;
};

/// One that takes its arguments in the order of Mean.
template <decltype(&Mean) kKernel>
void reordered(const std::uint8_t* source, std::uint32_t* sums, std::uint32_t* squares, int width, int rows, int stride,
               int radius) {
  kKernel(source, width, rows, stride, sums, squares, radius);
}

void withLevel(const std::uint8_t* source, std::uint32_t* sums, std::uint32_t* squares, int width, int rows, int stride,
               int radius) {
  MeanMid_Window_Neon2(source, sums, squares, width, rows, stride, radius, 100);
}

class BoxStatistics : public TargetTest {
 protected:
  /// Bands of any height, also lower than the box; rows that a kernel may not read do not exist.
  static void checkBands(const BoxCase& c, const Plane& plane, int columns, const naive::Statistics& boxes,
                         std::initializer_list<Kernel> kernels, Random& random) {
    for (const Kernel& k : kernels) {
      const Band band = cutBand(plane, k.above, k.below, 1, c.guard, random);
      if (band.rows == 0) continue;
      const StatisticsPlanes out(columns, band.rows, k.pitch, c.guard);
      k.run(band.start(), out.sums(), out.squares(), c.width, band.rows, c.stride, c.radius);
      ASSERT_TRUE(out.hold(boxes, band.firstRow)) << c << "kernel " << &k - kernels.begin();
    }
  }

  static void checkLineMean(const BoxCase& c, Random& random) {
    const Plane plane(c.width, c.height, c.stride, c.guard, c.content, random);
    const Plane destination(c.columns(), c.height, c.stride, c.guard);
    Mean_Window_Neon(plane.data(), destination.data(), c.width, c.height, c.stride, c.radius, c.level);
    const auto smoothed = naive::smoothPlane(plane.data(), c.width, c.height, c.stride, c.h(), c.level);
    ASSERT_TRUE(holds(destination, [&](int x, int y) { return smoothed.data()[y * c.width + x]; })) << c;
    checkBands(c, plane, c.columns(),
               naive::boxStatistics(rowsOf(plane), c.columns(), c.height, c.h(), naive::ColumnWidth::k16Bits),
               {{MeanTop_Window_V2_Neon, 0, c.h(), c.width},
                {MeanMid_Window_V2_Neon, c.h(), c.h(), c.width},
                {MeanBottom_Window_V2_Neon, c.h(), 0, c.width},
                {withLevel, c.h(), c.h(), c.stride}},
               random);
  }

  static void checkReference(const BoxCase& c, Random& random) {
    const Plane plane(c.width, c.height, c.stride, c.guard, c.content, random);
    checkBands(c, plane, c.width,
               naive::boxStatistics(rowsOf(plane), c.width, c.height, c.radius, naive::ColumnWidth::k32Bits),
               {{reordered<Mean>, 0, 0, c.stride},
                {reordered<MeanTop>, 0, c.radius, c.stride},
                {reordered<MeanMid>, c.radius, c.radius, c.stride},
                {reordered<MeanBottom>, c.radius, 0, c.stride}},
               random);
  }
};

TEST_P(BoxStatistics, LineMeanMatchesDirectBoxes) {
  Random random(81);
  for (int i = 0; i < 200 && !HasFatalFailure(); ++i)
    checkLineMean(lineMeanCase(random), random);
  for (int width = 8; width <= 26 && !HasFatalFailure(); ++width)
    checkLineMean({Content::kNoise, width, random.pick({9, 30}), width, random.pick({1, 8}), 600, Guard::kBehind},
                  random);
  // From R = 136 on the 16-bit column sums of white rows wrap, and the boxes are those of the wrapped sums.
  for (const int radius : {128, 136}) {
    for (const Content content : {Content::kWhite, Content::kNoise})
      checkLineMean({content, 19, 2 * radius + 9, 19, radius, 600, Guard::kBehind}, random);
  }
}

TEST_P(BoxStatistics, LinesTakeAnySumsAndHalfSize) {
  Random random(82);
  for (int i = 0; i < 1500; ++i) {
    const BoxCase c = lineMeanCase(random);
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

TEST_P(BoxStatistics, ReferenceMatchesDirectBoxes) {
  Random random(101);
  for (int i = 0; i < 300 && !HasFatalFailure(); ++i) {
    BoxCase c = randomBoxCase(1, 200, random);
    // From a single sample to a box that the plane is lost in.
    c.radius = random.pick({0, random.between(1, 8), random.between(1, 30), random.between(1, 300)});
    c.height = random.between(1, random.pick({3, 40, 90}));
    checkReference(c, random);
  }
  checkReference({Content::kWhite, 9, 290, 11, 140, 0, Guard::kBehind}, random);  // sums of squares pass 2^32
}

// A strength of 0 divides 0 by 0 in flat areas; a negative one may divide by 0, and gives results far out of range.
TEST_P(BoxStatistics, BlendsTakeAnySums) {
  Random random(103);
  for (int i = 0; i < 2000; ++i) {
    BoxCase c = randomBoxCase(random.pick({1, 8}), 200, random);
    c.height = random.between(1, 4);
    c.radius = random.between(0, random.pick({1, 20, 200}));
    if (i % 8 < 5) c.level = random.pick({0, 1, 30, 400, 100000, -1, -20, -300, INT32_MAX, INT32_MIN});
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
    const auto checkImage = [&](const Plane& actual, int pitch, auto pixel) {
      ASSERT_TRUE(holds(actual,
                        [&](int x, int y) {
                          const auto at = static_cast<std::size_t>(y * pitch + x);
                          return pixel(boxes.sums[at], boxes.squares[at],
                                       before[static_cast<std::size_t>(y * c.stride + x)], x);
                        }))
          << c << "run " << i << ", pitch " << pitch;
    };
    // Rows of sums follow each other here, with the stride of the image below.
    const Plane destination(c.width, c.height, c.stride, c.guard);
    Mean_var_Blend(destination.data(), image.data(), sums.data(), squares.data(), c.width, c.height, c.stride, c.radius,
                   c.level);
    checkImage(destination, c.width, [&](std::uint32_t S, std::uint32_t Q, std::uint8_t sample, int x) {
      return naive::blendedStatistics(S, Q, sample, x, c.width, c.radius, c.level);
    });
    MeanBlendImage(image.data(), sums.data(), squares.data(), c.width, c.height, c.stride, c.level, c.radius);
    checkImage(image, c.stride, [&](std::uint32_t S, std::uint32_t Q, std::uint8_t sample, int) {
      return naive::referencePixel(S, Q, sample, c.radius, c.level);
    });
    ASSERT_FALSE(HasFatalFailure());
  }
  for (const auto& [columns, rows] : {std::pair{16, 0}, {16, -1}, {0, 1}})
    Mean_var_Blend(nullptr, nullptr, nullptr, nullptr, columns, rows, 16, 1, 100);
}

// A flat area of value 5: the halves of a group and the columns after it differ.
TEST_P(BoxStatistics, HalvesOfAGroupTakeTheArraysByTurns) {
  const std::vector<std::uint8_t> source(12, 5);
  const std::vector<std::uint32_t> sums(12, 9 * 5);
  const std::vector<std::uint32_t> squares(12, 9 * 25);
  std::vector<std::uint8_t> destination(12);
  Mean_var_Blend(destination.data(), source.data(), sums.data(), squares.data(), 12, 1, 12, 1, 100);
  EXPECT_EQ(destination, (std::vector<std::uint8_t>{2, 2, 2, 2, 4, 4, 4, 4, 5, 5, 5, 5}));
}

VLVK_TEST_ALL_TARGETS(BoxStatistics);

}  // namespace
