/// See integral_mean.h.
#include <vlvk/integral_mean.h>

#include <bit>
#include <cstddef>
#include <cstdint>

#include "base/scratch_memory.h"
#include "kernels/box_rows.h"
#include "rows/pixel_formula.h"
#include "rows/row_loops.h"

namespace {

using vlvk::BoxRows;
using vlvk::CheckedSize;
using vlvk::IntegralRows;

/// Side of the box.
std::ptrdiff_t sideOf(int radius) {
  return 2 * std::ptrdiff_t{radius} + 1;
}

/// Column accumulators and the integral row that is being written.
struct IntegralLine {
  std::uint32_t* columnSums;
  std::uint64_t* columnSquares;
  std::uint32_t* integral;
  std::uint64_t* integralSquares;
};

/// Adds one extended row: radius + 1 copies of the first sample, the row, radius copies of the last one.
///
/// @param squareOf  square of the sample at a column of the source
template <class SquareOf>
void addExtendedRow(const IntegralLine& line, const std::uint8_t* source, std::ptrdiff_t width, std::ptrdiff_t radius,
                    SquareOf squareOf) {
  std::uint32_t sum = 0;
  std::uint64_t squareSum = 0;
  const auto addColumns = [&](std::ptrdiff_t begin, std::ptrdiff_t end, auto sourceColumn) {
    for (std::ptrdiff_t c = begin; c < end; ++c) {
      const std::ptrdiff_t x = sourceColumn(c);
      sum += line.columnSums[c] += source[x];
      squareSum += line.columnSquares[c] += squareOf(x);
      line.integral[c] = sum;
      line.integralSquares[c] = squareSum;
    }
  };
  const std::ptrdiff_t left = radius + 1;
  addColumns(0, left, [](std::ptrdiff_t) { return std::ptrdiff_t{0}; });
  addColumns(left, left + width, [&](std::ptrdiff_t c) { return c - left; });
  addColumns(left + width, left + width + radius, [&](std::ptrdiff_t) { return width - 1; });
}

void addRow(const IntegralLine& line, const std::uint8_t* source, int width, int radius) {
  addExtendedRow(line, source, width, radius, [&](std::ptrdiff_t x) { return std::uint32_t{source[x]} * source[x]; });
}

/// A ring of d + 1 integral rows over the column accumulators, in memory of one call's own.
class IntegralRing {
 public:
  IntegralRing(int width, int radius)
      : width_(width),
        radius_(radius),
        length_(static_cast<std::size_t>(width) + 2 * static_cast<std::size_t>(radius) + 1),
        rows_(2 * static_cast<std::size_t>(radius) + 2),
        memory_((CheckedSize(rows_) + CheckedSize(1)) * length_ * (sizeof(std::uint64_t) + sizeof(std::uint32_t))) {
    if (!memory_.available()) return;
    columnSquares_ = memory_.at<std::uint64_t>(0);
    columnSums_ = memory_.at<std::uint32_t>((rows_ + 1) * length_ * sizeof(std::uint64_t));
  }

  bool available() const { return memory_.available(); }

  /// Adds a source row; the d + 1 last integral rows are kept.
  void add(const std::uint8_t* row) {
    addRow({columnSums_, columnSquares_, sums(next_), squares(next_)}, row, width_, radius_);
    next_ = (next_ + 1) % rows_;
  }

  /// The newest integral row and the oldest, d rows above it.
  IntegralRows box() const {
    const std::size_t newest = (next_ + rows_ - 1) % rows_;
    return {sums(next_), squares(next_), sums(newest), squares(newest), sideOf(radius_)};
  }

 private:
  // The accumulators come first, then the ring.
  std::uint32_t* sums(std::size_t row) const { return columnSums_ + (row + 1) * length_; }
  std::uint64_t* squares(std::size_t row) const { return columnSquares_ + (row + 1) * length_; }

  int width_;
  int radius_;
  std::size_t length_;
  std::size_t rows_;
  vlvk::ScratchMemory memory_;
  std::uint32_t* columnSums_ = nullptr;
  std::uint64_t* columnSquares_ = nullptr;
  std::size_t next_ = 0;
};

/// Calls `useRow(y, box)` for every output row. The first row that is added, -(radius + 1), cancels out of every box:
/// it stands for all that lies above.
template <class UseRow>
void forEachBoxRow(const BoxRows& rows, int width, int rowCount, int radius, UseRow useRow) {
  if (width < 8 || rowCount <= 0) return;
  IntegralRing ring(width, radius);
  if (!ring.available()) return;
  for (std::int64_t i = -std::int64_t{radius} - 1; i < radius; ++i)
    ring.add(rows.row(i));
  for (std::ptrdiff_t y = 0; y < rowCount; ++y) {
    ring.add(rows.row(y + std::int64_t{radius}));
    useRow(y, ring.box());
  }
}

void smoothBand(const BoxRows& rows, unsigned char* destination, int width, int rowCount, int radius, int level) {
  const vlvk::PixelFormula formula = vlvk::makePixelFormula(radius, level);
  forEachBoxRow(rows, width, rowCount, radius, [&](std::ptrdiff_t y, const IntegralRows& box) {
    vlvk::rowLoops().integralSmooth(box, width, rows.plane + y * rows.stride, destination + y * rows.stride, formula);
  });
}

BoxRows wholePlane(const unsigned char* source, int height, int stride) {
  return {.plane = source, .stride = stride, .firstRow = 0, .lastRow = std::int64_t{height} - 1};
}

}  // namespace

void Integral_Mean_Neon(const unsigned char* source, unsigned char* destination, int width, int height, int stride,
                        int radius, int level) {
  smoothBand(wholePlane(source, height, stride), destination, width, height, radius, level);
}

void Integral_MeanTop_Neon(const unsigned char* source, unsigned char* destination, int width, int rows, int stride,
                           int radius, int level) {
  smoothBand({.plane = source, .stride = stride, .firstRow = 0}, destination, width, rows, radius, level);
}

void Integral_MeanMid_Neon(const unsigned char* source, unsigned char* destination, int width, int rows, int stride,
                           int radius, int level) {
  smoothBand({.plane = source, .stride = stride}, destination, width, rows, radius, level);
}

void Integral_MeanBottom_Neon(const unsigned char* source, unsigned char* destination, int width, int rows, int stride,
                              int radius, int level) {
  smoothBand({.plane = source, .stride = stride, .lastRow = std::int64_t{rows} - 1}, destination, width, rows, radius,
             level);
}

void Integral_Mean_Neon2(const unsigned char* source, uint32_t* sums, uint32_t* squares, int width, int height,
                         int stride, int radius) {
  const BoxRows rows = wholePlane(source, height, stride);
  forEachBoxRow(rows, width, height, radius, [&](std::ptrdiff_t y, const IntegralRows& box) {
    vlvk::rowLoops().integralBoxSums(box, width, sums + y * rows.stride, squares + y * rows.stride);
  });
}

void Integral_Mean_Integral_Line_Neon(uint32_t* columnSums, uint64_t* columnSquares, const unsigned char* source,
                                      uint32_t* integral, uint64_t* integralSquares, int width, int radius) {
  addRow({columnSums, columnSquares, integral, integralSquares}, source, width, radius);
}

void Integral_Mean_Integral_Line_with_V_Neon(uint32_t* columnSums, uint64_t* columnSquares, const unsigned char* source,
                                             const unsigned short* squares, uint32_t* integral,
                                             uint64_t* integralSquares, int width, int radius) {
  addExtendedRow({columnSums, columnSquares, integral, integralSquares}, source, width, radius,
                 [&](std::ptrdiff_t x) { return squares[x]; });
}

void Integral_Mean_Line_Neon(const uint32_t* top, const uint64_t* topSquares, const uint32_t* bottom,
                             const uint64_t* bottomSquares, const unsigned char* source, unsigned char* destination,
                             int width, int radius, int level) {
  vlvk::rowLoops().integralSmooth({top, topSquares, bottom, bottomSquares, sideOf(radius)}, width, source, destination,
                                  vlvk::makePixelFormula(radius, level));
}

void Integral_Mean_Line_Neon2(const uint32_t* top, const uint64_t* topSquares, const uint32_t* bottom,
                              const uint64_t* bottomSquares, const unsigned char* /*source*/, uint32_t* sums,
                              uint32_t* squares, int width, int radius) {
  vlvk::rowLoops().integralBoxSums({top, topSquares, bottom, bottomSquares, sideOf(radius)}, width, sums, squares);
}

void Integral_Mean_Block_Neon(const uint32_t* top, const uint64_t* topSquares, const uint32_t* bottom,
                              const uint64_t* bottomSquares, int side, unsigned int inverse,
                              const unsigned char* source, unsigned char* destination, int /*radius*/, int /*strength*/,
                              VKFloat4 strengths, VKFloat4 biases) {
  float strengthLanes[8];
  float biasLanes[8];
  for (int i = 0; i < 8; ++i) {
    strengthLanes[i] = strengths[i % 4];
    biasLanes[i] = biases[i % 4];
  }
  vlvk::rowLoops().integralSmooth8({top, topSquares, bottom, bottomSquares, side}, source, destination,
                                   std::bit_cast<float>(inverse), biasLanes, strengthLanes);
}

void Integral_Mean_Block_Neon2(const uint32_t* top, const uint64_t* topSquares, const uint32_t* bottom,
                               const uint64_t* bottomSquares, int side, const unsigned char* /*source*/, uint32_t* sums,
                               uint32_t* squares) {
  vlvk::rowLoops().integralBoxSums({top, topSquares, bottom, bottomSquares, side}, 8, sums, squares);
}
