/// The band and line kernels against the naive smoother: geometry, edges, saved rows, wrapping sums, odd strengths.
#include <vlvk/band_smoothing.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstring>
#include <utility>
#include <vector>

#include "tests/naive/naive.h"
#include "tests/support/box_planes.h"
#include "tests/support/target_test.h"

namespace {

using namespace testing_support;
using naive::ColumnWidth;
using naive::Statistics;

BoxCase randomBand(Random& random, int smallestRowsPerR, int largestRadius) {
  BoxCase c = randomBoxCase(0, 700, random);
  c.radius = random.between(1, random.pick({8, 24, largestRadius}));
  c.height = smallestRowsPerR * c.R() + (smallestRowsPerR > 0 ? random.between(0, 20) : random.between(1, 50));
  return c;
}

std::vector<std::uint16_t> narrow(const std::vector<std::uint32_t>& sums) {
  return {sums.begin(), sums.end()};
}

/// Runs a kernel on a band that starts at row `bandRow` of `source` and compares what it wrote with the boxes of
/// `rows`. The scratch is exactly as large as it must be, and nothing but the columns and rows that the kernel may
/// touch exists.
void checkBand(decltype(&MeanTop_Window_Neon) kernel, const BoxCase& c, const Plane& source, int bandRow,
               const Plane* saved, const naive::Rows& rows) {
  const Plane destination(c.columns(), c.height, c.stride, c.guard);
  const Statistics none{std::vector<std::uint32_t>(static_cast<std::size_t>(c.columns())), {}};
  const Elements<std::uint16_t> sums(narrow(none.sums), c.guard, c.shift);
  const Elements<std::uint32_t> squares(none.sums, c.guard, c.shift);
  const GuardedBuffer unused(0, Guard::kBehind, 0);
  const VKBandScratch scratch{unused.data(), reinterpret_cast<unsigned char*>(sums.data()),
                              reinterpret_cast<unsigned char*>(squares.data()), unused.data(),
                              saved != nullptr ? saved->data() : nullptr};
  // Without saved rows the record ends after its third pointer.
  GuardedBuffer record(saved != nullptr ? sizeof scratch : offsetof(VKBandScratch, lineSums), Guard::kBehind, 0);
  std::memcpy(record.data(), &scratch, record.size());
  record.makeReadOnly();
  std::vector<std::uint8_t> expected = destination.bytes();
  kernel(source.row(bandRow), destination.data(), c.width, c.height, c.stride, c.radius, c.level,
         record.as<VKBandScratch>());

  for (int y = 0; c.columns() > 0 && y < c.height; ++y) {
    const Statistics box = naive::sumColumns(rows, y - c.h(), y + c.h(), c.columns(), ColumnWidth::k16Bits);
    const auto row = naive::smoothRow(box, source.row(bandRow + y), c.h(), c.level);
    std::copy(row.begin(), row.end(), expected.begin() + static_cast<std::ptrdiff_t>(y) * c.stride);
  }
  ASSERT_TRUE(sameBytes(destination, expected)) << c;
}

class BandSmoothing : public TargetTest {
 protected:
  static Plane readable(const BoxCase& c, int rows, Content content, Random& random) {
    return {c.columns() > 0 ? c.width : 0, rows, c.stride, c.guard, content, random};
  }

  /// The three kernels that read their neighbours from the plane; rows that they may not read do not exist.
  static void checkPlainKernels(const BoxCase& c, Random& random) {
    const int R = c.R();
    struct {
      decltype(&MeanTop_Window_Neon) kernel;
      int above, rows;
    } const kKernels[] = {{MeanTop_Window_Neon, 0, c.height + R - 1},
                          {MeanMid_Window_Neon, R, c.height + R - 1},
                          // A band that is too short to reach its last row by sliding ends at row R - 1.
                          {MeanBottom_Window_Neon, R, std::max(c.height, R)}};
    for (const auto& [kernel, above, rows] : kKernels) {
      Plane source = readable(c, above + rows, c.content, random);
      source.makeReadOnly();
      checkBand(kernel, c, source, above, nullptr, rowsOf(source, above));
    }
  }

  /// The three kernels with saved rows. What they saved differs from every row of the band, the band's own last row
  /// included, so that it shows which of the two was read. Only the rows that a kernel reads are there.
  static void checkSavedRowKernels(const BoxCase& c, Random& random) {
    Plane source = readable(c, c.height, c.content, random);
    source.makeReadOnly();
    const int R = c.R();
    const int last = c.height - 1;
    struct {
      decltype(&MeanTop_Window_Neon) kernel;
      int above, below;
    } const kKernels[] = {
        {MeanTop_Window_V3_Neon, 0, R}, {MeanMid_Window_V3_Neon, R, R}, {MeanBottom_Window_V3_Neon, R, 0}};
    for (const auto& k : kKernels) {
      Plane saved = readable(c, k.above + k.below, Content::kNoise, random);
      saved.makeReadOnly();
      const auto rowAt = [&](long long i) {
        const int y = static_cast<int>(i);
        if (y < 0) return saved.row(k.above + y);
        return k.below > 0 && y >= last ? saved.row(k.above + y - last) : source.row(y);
      };
      checkBand(k.kernel, c, source, 0, &saved, {rowAt, -k.above, last + std::max(k.below - 1, 0)});
    }
  }
};

TEST_P(BandSmoothing, KernelsMatchDirectBoxes) {
  Random random(31);
  for (int i = 0; i < 700 && !HasFatalFailure(); ++i)
    checkPlainKernels(randomBand(random, 0, 64), random);
  for (int i = 0; i < 300 && !HasFatalFailure(); ++i)
    checkSavedRowKernels(randomBand(random, 2, 40), random);
  // Every width up to two groups of 16 and a bit, short bands around R rows, with the planes at both pages.
  for (int width = 0; width <= 42; ++width) {
    for (const int rows : {1, 2, 7, 8, 9, 16, 17}) {
      for (const Guard guard : {Guard::kBehind, Guard::kBefore}) {
        checkPlainKernels({Content::kNoise, width, rows, width, random.pick({1, 8, 9, 16}), 600, guard}, random);
        ASSERT_FALSE(HasFatalFailure());
      }
    }
  }
}

// Bright boxes of side 2R - 1: from R = 72 on differences of column sums pass 2^15, from 96 on box sums of squares pass
// 2^31, from 136 on the 16-bit sums of columns wrap, and the output is that of the wrapped sums.
TEST_P(BandSmoothing, SumsAndQuotientsThatNeedTheSlowForm) {
  Random random(34);
  for (const int radius : {96, 128, 136, 140}) {
    for (const Content content : {Content::kWhite, Content::kEdges, Content::kNoise}) {
      BoxCase c{content, random.pick({8, 23, 41, 300}), random.between(1, 30), 300, radius, 600, Guard::kBehind};
      checkPlainKernels(c, random);
      c.height = 2 * c.R() + random.between(0, 1);
      c.width = random.pick({16, 27});
      checkSavedRowKernels(c, random);
      ASSERT_FALSE(HasFatalFailure()) << c;
    }
  }
  for (int i = 0; i < 8 && !HasFatalFailure(); ++i)
    checkPlainKernels({Content::kEdges, 300, 3, 300, 72, 600, Guard::kBehind}, random);
  // A negative variance constant puts quotients far below 0.
  checkPlainKernels({Content::kSparks, 60, 60, 60, 16, 123456, Guard::kBehind}, random);
}

// Each line with the sums as they are and, in the two kernels that slide them first, with a row more and a row less.
TEST_P(BandSmoothing, LineKernelsTakeAnySumsAndHalfSize) {
  Random random(35);
  for (int i = 0; i < 2000; ++i) {
    BoxCase c = randomBoxCase(0, 300, random);
    const int h = random.pick({random.between(0, 40), random.between(0, 3), random.between(0, 400),
                               random.between(0, 100000), INT_MAX, 0x7FFFFFF7});
    const auto columns = static_cast<std::size_t>(c.columns());
    const auto anySums = randomBits<std::uint16_t>(columns, random);
    Statistics box{{anySums.begin(), anySums.end()}, randomBits<std::uint32_t>(columns, random)};
    // The largest ones reach 2^31 in the horizontal box.
    if (i % 4 == 0) box = {std::vector<std::uint32_t>(columns, 0xFFFF), std::vector<std::uint32_t>(columns, ~0U)};
    const auto row = [&](Content content) {
      return Plane(c.columns() > 0 ? c.width : 0, 1, c.width, c.guard, content, random);
    };
    const Plane add = row(random.pick({Content::kNoise, Content::kWhite, Content::kEdges}));
    const Plane sub = row(random.pick({Content::kNoise, Content::kBlack, Content::kEdges}));
    const Plane source = row(Content::kNoise);
    const Elements<std::uint16_t> sums(narrow(box.sums), c.guard, c.shift);
    const Elements<std::uint32_t> squares(box.squares, c.guard, c.shift);
    const auto check = [&] {
      ASSERT_EQ(sums.values(), narrow(box.sums)) << c << "h " << h;
      ASSERT_EQ(squares.values(), box.squares) << c << "h " << h;
    };
    const Plane plain(c.columns(), 1, c.width, c.guard);
    MeanLine_Neon(sums.data(), squares.data(), c.width, source.data(), plain.data(), h, c.level);
    check();
    ASSERT_TRUE(sameBytes(plain, naive::smoothRow(box, source.data(), h, c.level))) << c << "h " << h;

    const Plane slid(c.columns(), 1, c.width, c.guard);
    MeanLineEx_Neon(sums.data(), squares.data(), add.data(), sub.data(), c.width, source.data(), slid.data(), h,
                    c.level);
    for (std::size_t x = 0; x < box.sums.size(); ++x) {
      box.sums[x] = (box.sums[x] + add.data()[x] - sub.data()[x]) & 0xFFFFU;
      box.squares[x] += static_cast<std::uint32_t>(add.data()[x] * add.data()[x] - sub.data()[x] * sub.data()[x]);
    }
    check();
    ASSERT_TRUE(sameBytes(slid, naive::smoothRow(box, source.data(), h, c.level))) << c << "slid, h " << h;
  }
}

// The pixel formula over its whole range: with h = 0 the box of column j is column j + 1 alone, so that mean, variance
// and sample can be chosen freely.
TEST_P(BandSmoothing, PixelFormulaForAllMeansVariancesAndLevels) {
  Random random(37);
  constexpr int kWidth = 512;
  const Plane noise(kWidth, 1, kWidth, Guard::kBehind, Content::kNoise, random);
  const auto check = [&](int level, std::uint32_t firstMean, auto varianceOf) {
    Statistics box;
    for (std::uint32_t i = 0; i < kWidth; ++i) {
      const std::uint32_t mean = firstMean + i / 2;
      box.sums.push_back(mean);
      box.squares.push_back(mean * mean + varianceOf(i));
    }
    const Plane destination(kWidth, 1, kWidth);
    MeanLine_Neon(narrow(box.sums).data(), box.squares.data(), kWidth, noise.data(), destination.data(), 0, level);
    ASSERT_TRUE(sameBytes(destination, naive::smoothRow(box, noise.data(), 0, level))) << "level " << level;
  };
  const auto anyVariance = [&](std::uint32_t) {
    return random.pick({0U, 1U, random.bits() % 200U, random.bits() % 17000U});
  };
  for (int level = -3000; level <= 9000 && !HasFatalFailure(); level += random.between(1, 60))
    check(level, 0, anyVariance);
  // Divisors that are exactly 0, and the nearest ones on both sides.
  const std::pair<int, std::uint32_t> kZeroVariances[] = {{0, 120}, {1667, 1000}, {5000, 2760}};
  for (const auto& zero : kZeroVariances)
    check(zero.first, 60, [&](std::uint32_t i) { return i % 5 - 2 - zero.second; });
}

VLVK_TEST_ALL_TARGETS(BandSmoothing);

}  // namespace
