/// The band and line kernels against the naive smoother: geometry, edges, saved rows, wrapping sums, odd strengths.
#include <vlvk/band_smoothing.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstring>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/naive/naive.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/plane.h"
#include "tests/support/random_content.h"
#include "tests/support/target_test.h"

namespace {

using testing_support::Content;
using testing_support::Guard;
using testing_support::GuardedBuffer;
using testing_support::Plane;
using testing_support::Random;
using testing_support::sameBytes;

// 1667: the variance constant is exactly 0. -228: flat areas have a divisor near 0. From 5967 on, and far below 0, the
// constants are negative, very large or wrapped.
constexpr std::initializer_list<int> kLevels = {0,      1,       100,     333,     600,     999,       1000,  1652,
                                                1654,   1667,    5000,    5967,    -1,      -228,      -5000, -227,
                                                123456, 7158279, INT_MAX, INT_MIN, 1 << 30, -(1 << 30)};

/// Column sums in guarded memory. With a shift they are aligned for their element type and no better.
template <typename T>
class Sums {
 public:
  Sums(std::size_t count, int shift, Guard guard)
      : buffer_((count + static_cast<std::size_t>(shift)) * sizeof(T), guard, 0xAB),
        data_(buffer_.as<T>() + (guard == Guard::kBefore ? shift : 0)) {}
  Sums(const std::vector<T>& values, int shift, Guard guard) : Sums(values.size(), shift, guard) {
    std::copy(values.begin(), values.end(), data_);
  }

  T* data() const { return data_; }
  std::uint8_t* bytes() const { return reinterpret_cast<std::uint8_t*>(data_); }
  void makeReadOnly() { buffer_.makeReadOnly(); }

 private:
  GuardedBuffer buffer_;
  T* data_;
};

struct BandCase {
  Content content;
  int width;
  int rows;
  int stride;
  int radius;
  int level;
  Guard guard;
  int shift = 0;  // of the column sums in memory, elements

  int columns() const { return width & ~7; }
  int readableWidth() const { return width < 8 ? 0 : width; }
  int R() const { return (radius + 7) / 8 * 8; }
  int h() const { return R() - 1; }

  std::string text() const {
    std::ostringstream out;
    out << "content " << static_cast<int>(content) << ", width " << width << ", rows " << rows << ", stride " << stride
        << ", radius " << radius << ", level " << level;
    return out.str();
  }
};

BandCase randomCase(Random& random, int smallestRowsPerR, int largestRadius) {
  BandCase c{};
  c.content = random.pick(testing_support::kLumaContents);
  c.width = random.between(0, 9) == 0 ? random.between(100, 700) : random.between(0, 70);
  c.stride = c.width + random.pick({0, 0, 1, 3, 8, 37});
  c.radius = random.between(1, random.pick({8, 24, largestRadius}));
  c.rows = smallestRowsPerR * c.R() + (smallestRowsPerR > 0 ? random.between(0, 20) : random.between(1, 50));
  c.level = random.pick(kLevels);
  c.guard = random.pick({Guard::kBehind, Guard::kBefore});
  c.shift = random.pick({0, 0, 1, 3});
  return c;
}

using BandKernel = decltype(&MeanTop_Window_Neon);

/// Runs a kernel on a band that starts at row `bandRow` of `source` and compares what it wrote with the boxes of the
/// rows that `rowOf` gives (0: first row of the band). The scratch is exactly as large as it must be, and nothing but
/// the columns and rows that the kernel may touch exists.
void checkBand(BandKernel kernel, const BandCase& c, const Plane& source, int bandRow, const Plane* saved,
               const naive::RowOf& rowOf) {
  Plane destination(c.columns(), c.rows, c.stride, c.guard);
  const auto columns = static_cast<std::size_t>(c.columns());
  const Sums<std::uint16_t> sums(columns, c.shift, c.guard);
  const Sums<std::uint32_t> squares(columns, c.shift, c.guard);
  const GuardedBuffer unused(0, Guard::kBehind, 0);
  const VKBandScratch scratch{unused.data(), sums.bytes(), squares.bytes(), unused.data(),
                              saved != nullptr ? saved->data() : unused.data()};
  // Without saved rows the record ends after its third pointer.
  GuardedBuffer record(saved != nullptr ? sizeof scratch : offsetof(VKBandScratch, lineSums), Guard::kBehind, 0);
  std::memcpy(record.data(), &scratch, record.size());
  record.makeReadOnly();
  std::vector<std::uint8_t> expected = destination.bytes();
  kernel(source.row(bandRow), destination.data(), c.width, c.rows, c.stride, c.radius, c.level,
         record.as<VKBandScratch>());

  for (int y = 0; c.columns() > 0 && y < c.rows; ++y) {
    const naive::ColumnSums box = naive::sumRows(rowOf, y - c.h(), y + c.h(), c.columns());
    const auto row = naive::smoothRow(box, source.row(bandRow + y), c.width, c.h(), c.level);
    std::copy(row.begin(), row.end(), expected.begin() + static_cast<std::ptrdiff_t>(y) * c.stride);
  }
  ASSERT_TRUE(sameBytes(destination, expected)) << c.text();
}

class BandSmoothing : public testing_support::TargetTest {
 protected:
  /// The three kernels that read their neighbours from the plane; rows that they may not read do not exist.
  static void checkPlainKernels(const BandCase& c, Random& random) {
    const int R = c.R();
    const auto plane = [&](int rows) {
      Plane p(c.readableWidth(), rows, c.stride, c.guard, c.content, random);
      p.makeReadOnly();
      return p;
    };
    {
      const Plane source = plane(c.rows + R - 1);
      checkBand(MeanTop_Window_Neon, c, source, 0, nullptr,
                [&](long long row) { return source.row(static_cast<int>(std::max(row, 0LL))); });
    }
    {
      const Plane source = plane(R + c.rows + R - 1);
      checkBand(MeanMid_Window_Neon, c, source, R, nullptr,
                [&](long long row) { return source.row(R + static_cast<int>(row)); });
    }
    {
      // A band that is too short to reach its last row by sliding ends at row R - 1.
      const int end = std::max(c.rows, R) - 1;
      const Plane source = plane(R + end + 1);
      checkBand(MeanBottom_Window_Neon, c, source, R, nullptr,
                [&](long long row) { return source.row(R + std::min(static_cast<int>(row), end)); });
    }
  }

  /// The three kernels with saved rows. What they saved differs from every row of the band, the band's own last row
  /// included, so that it shows which of the two was read.
  static void checkSavedRowKernels(const BandCase& c, Random& random) {
    const int R = c.R();
    Plane source(c.readableWidth(), c.rows, c.stride, c.guard, c.content, random);
    Plane saved(c.readableWidth(), 2 * R, c.stride, c.guard, Content::kNoise, random);
    // Only the first half exists for the top and bottom kernels.
    Plane half(c.readableWidth(), R, c.stride, c.guard, Content::kNoise, random);
    source.makeReadOnly();
    saved.makeReadOnly();
    half.makeReadOnly();
    const auto last = c.rows - 1;
    checkBand(MeanTop_Window_V3_Neon, c, source, 0, &half, [&](long long row) {
      const int y = static_cast<int>(row);
      return y >= last ? half.row(y - last) : source.row(std::max(y, 0));
    });
    checkBand(MeanMid_Window_V3_Neon, c, source, 0, &saved, [&](long long row) {
      const int y = static_cast<int>(row);
      if (y < 0) return saved.row(R + y);
      return y >= last ? saved.row(R + y - last) : source.row(y);
    });
    checkBand(MeanBottom_Window_V3_Neon, c, source, 0, &half, [&](long long row) {
      const int y = static_cast<int>(row);
      return y < 0 ? half.row(R + y) : source.row(std::min(y, last));
    });
  }
};

TEST_P(BandSmoothing, PlainKernelsMatchDirectBoxes) {
  Random random(31);
  for (int i = 0; i < 700 && !HasFatalFailure(); ++i)
    checkPlainKernels(randomCase(random, 0, 64), random);
}

TEST_P(BandSmoothing, SavedRowKernelsMatchDirectBoxes) {
  Random random(32);
  for (int i = 0; i < 300 && !HasFatalFailure(); ++i)
    checkSavedRowKernels(randomCase(random, 2, 40), random);
}

// Every width up to two groups of 16 and a bit, short bands around R rows, with the planes at both pages.
TEST_P(BandSmoothing, SmallSizesWithoutGaps) {
  Random random(33);
  for (int width = 0; width <= 42; ++width) {
    for (const int rows : {1, 2, 7, 8, 9, 16, 17}) {
      for (const Guard guard : {Guard::kBehind, Guard::kBefore}) {
        const int radius = random.pick({1, 8, 9, 16});
        checkPlainKernels({Content::kNoise, width, rows, width, radius, 600, guard}, random);
        ASSERT_FALSE(HasFatalFailure());
      }
    }
  }
}

// Bright boxes of side 2R - 1: from R = 96 on their sum of squares passes 2^31, from 136 on the 16-bit sums of their
// columns wrap, and the output is that of the wrapped sums.
TEST_P(BandSmoothing, WrappingColumnSums) {
  Random random(34);
  for (const int radius : {88, 96, 128, 136, 140}) {
    for (const Content content : {Content::kWhite, Content::kEdges, Content::kNoise}) {
      BandCase c{content, random.pick({8, 23, 41, 300}), random.between(1, 30), 300, radius, 600, Guard::kBehind};
      checkPlainKernels(c, random);
      c.rows = 2 * c.R() + random.between(0, 1);
      c.width = random.pick({16, 27});
      checkSavedRowKernels(c, random);
      ASSERT_FALSE(HasFatalFailure()) << c.text();
    }
  }
}

// --- One row -----------------------------------------------------------------------------------------------------

struct LineCase {
  int width;
  int h;
  int level;
  Guard guard;
  int shift;
  naive::ColumnSums box;  // one entry for each column of the whole groups

  std::string text() const {
    std::ostringstream out;
    out << "width " << width << ", h " << h << ", level " << level;
    return out.str();
  }
};

LineCase randomLine(Random& random) {
  LineCase c;
  c.width =
      random.pick({random.between(0, 100), random.between(0, 100), random.between(0, 24), random.between(0, 300)});
  c.h = random.pick({random.between(0, 40), random.between(0, 40), random.between(0, 3), random.between(0, 400),
                     random.between(0, 100000), INT_MAX, 0x7FFFFFF7});
  c.level = random.pick(kLevels);
  c.guard = random.pick({Guard::kBehind, Guard::kBefore});
  c.shift = random.pick({0, 0, 1, 3});
  // Sums of real boxes, any sums at all, and the largest ones: those reach 2^31 in the horizontal box.
  const int kind = random.between(0, 3);
  for (int i = 0; i < (c.width & ~7); ++i) {
    const std::uint32_t side = 2U * (static_cast<std::uint32_t>(c.h) & 0xFF) + 1U;
    const std::uint32_t mean = random.byte();
    const std::uint32_t variance = kind == 0 ? 0 : random.bits() % 4000U;
    const bool real = kind <= 1;
    c.box.sums.push_back(static_cast<std::uint16_t>(real ? side * mean : (kind == 2 ? random.bits() : 0xFFFFU)));
    c.box.squares.push_back(real ? side * (mean * mean + variance) : (kind == 2 ? random.bits() : 0xFFFFFFFFU));
  }
  return c;
}

TEST_P(BandSmoothing, LineKernelTakesAnySumsAndHalfSize) {
  Random random(35);
  for (int i = 0; i < 3000; ++i) {
    const LineCase c = randomLine(random);
    const int columns = c.width & ~7;
    Sums<std::uint16_t> sums(c.box.sums, c.shift, c.guard);
    Sums<std::uint32_t> squares(c.box.squares, c.shift, c.guard);
    sums.makeReadOnly();
    squares.makeReadOnly();
    Plane source(columns > 0 ? c.width : 0, 1, c.width, c.guard, Content::kNoise, random);
    source.makeReadOnly();
    const Plane destination(columns, 1, c.width, c.guard);
    MeanLine_Neon(sums.data(), squares.data(), c.width, source.data(), destination.data(), c.h, c.level);
    ASSERT_TRUE(sameBytes(destination, naive::smoothRow(c.box, source.data(), c.width, c.h, c.level))) << c.text();
  }
}

TEST_P(BandSmoothing, SlidingLineKernelUpdatesTheSumsFirst) {
  Random random(36);
  for (int i = 0; i < 1500; ++i) {
    const LineCase c = randomLine(random);
    const int columns = c.width & ~7;
    const Sums<std::uint16_t> sums(c.box.sums, c.shift, c.guard);
    const Sums<std::uint32_t> squares(c.box.squares, c.shift, c.guard);
    const auto row = [&](Content content) {
      return Plane(columns > 0 ? c.width : 0, 1, c.width, c.guard, content, random);
    };
    const Plane add = row(random.pick({Content::kNoise, Content::kWhite, Content::kEdges}));
    const Plane sub = row(random.pick({Content::kNoise, Content::kBlack, Content::kEdges}));
    const Plane source = row(Content::kNoise);
    const Plane destination(columns, 1, c.width, c.guard);
    MeanLineEx_Neon(sums.data(), squares.data(), add.data(), sub.data(), c.width, source.data(), destination.data(),
                    c.h, c.level);

    naive::ColumnSums box = c.box;
    for (int x = 0; x < columns; ++x) {
      const auto at = static_cast<std::size_t>(x);
      const int entering = add.data()[x];
      const int leaving = sub.data()[x];
      box.sums[at] = static_cast<std::uint16_t>(box.sums[at] + entering - leaving);
      box.squares[at] += static_cast<std::uint32_t>(entering * entering - leaving * leaving);
    }
    const auto* newSums = reinterpret_cast<const std::uint8_t*>(box.sums.data());
    const auto* newSquares = reinterpret_cast<const std::uint8_t*>(box.squares.data());
    ASSERT_TRUE(sameBytes(sums.bytes(), newSums, 2 * box.sums.size(), 2)) << "column sums, " << c.text();
    ASSERT_TRUE(sameBytes(squares.bytes(), newSquares, 4 * box.squares.size(), 4)) << "column squares, " << c.text();
    ASSERT_TRUE(sameBytes(destination, naive::smoothRow(box, source.data(), c.width, c.h, c.level))) << c.text();
  }
}

// The pixel formula over its whole range: with h = 0 the box of column j is column j + 1 alone, so that mean, variance
// and sample can be chosen freely.
TEST_P(BandSmoothing, PixelFormulaForAllMeansVariancesAndLevels) {
  Random random(37);
  constexpr int kWidth = 512;
  const Plane source(kWidth, 1, kWidth, Guard::kBehind, Content::kNoise, random);
  const auto check = [&](int level, const naive::ColumnSums& box, const Plane& samples) {
    const Plane destination(kWidth, 1, kWidth);
    MeanLine_Neon(box.sums.data(), box.squares.data(), kWidth, samples.data(), destination.data(), 0, level);
    ASSERT_TRUE(sameBytes(destination, naive::smoothRow(box, samples.data(), kWidth, 0, level))) << "level " << level;
  };
  for (int level = -3000; level <= 9000 && !HasFatalFailure(); level += random.between(1, 60)) {
    naive::ColumnSums box;
    for (std::uint32_t i = 0; i < kWidth; ++i) {
      const std::uint32_t mean = i / 2;
      box.sums.push_back(static_cast<std::uint16_t>(mean));
      box.squares.push_back(mean * mean + random.pick({0U, 1U, random.bits() % 200U, random.bits() % 17000U}));
    }
    check(level, box, source);
  }

  // A black sample and a mean far out of range: the output is the low byte of a large multiple of the estimate and
  // shows all its bits. 512 divisors for each of the levels, which set the power of two.
  const Plane black(kWidth, 1, kWidth, Guard::kBehind, Content::kBlack, random);
  for (const int level : {10, 100, 1000, 1667, 9000, 30000, 100000, 400000}) {
    for (int run = 0; run < 8 && !HasFatalFailure(); ++run) {
      const auto k = static_cast<std::uint32_t>(level * 0.6);
      naive::ColumnSums box;
      for (int i = 0; i < kWidth; ++i) {
        const auto mean = static_cast<std::uint32_t>(random.between(2000, 4095));
        box.sums.push_back(static_cast<std::uint16_t>(mean));
        box.squares.push_back(mean * mean + random.bits() % (2 * k));
      }
      check(level, box, black);
    }
  }

  // Divisors that are exactly 0, and the nearest ones on both sides.
  const std::pair<int, std::uint32_t> kZeroVariances[] = {{0, 120}, {1667, 1000}, {5000, 2760}};
  for (const auto& [level, distance] : kZeroVariances) {
    naive::ColumnSums box;
    for (std::uint32_t i = 0; i < kWidth; ++i) {
      const std::uint32_t mean = 60 + i / 2;
      box.sums.push_back(static_cast<std::uint16_t>(mean));
      box.squares.push_back(mean * mean - distance + i % 5 - 2);
    }
    check(level, box, source);
  }
}

VLVK_TEST_ALL_TARGETS(BandSmoothing);

}  // namespace
