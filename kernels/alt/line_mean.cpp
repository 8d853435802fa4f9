/// See line_mean.h.
#include <vlvk/line_mean.h>

#include <cstddef>
#include <cstdint>

#include <vlvk/band_smoothing.h>
#include "base/arm_math.h"
#include "base/scratch_memory.h"
#include "kernels/box_rows.h"
#include "kernels/sliding_box.h"
#include "kernels/smooth_plane.h"
#include "rows/pixel_formula.h"
#include "rows/row_loops.h"

namespace {

using vlvk::BoxRows;
using vlvk::NarrowColumnSums;

/// Column sums of a call's own, for the whole groups of a row.
class ColumnRows {
 public:
  explicit ColumnRows(int width)
      : columns_(vlvk::wholeGroups(width)),
        memory_(vlvk::CheckedSize(columns_) * (sizeof(std::uint32_t) + sizeof(std::uint16_t))) {}

  /// There are columns, and memory for them.
  bool usable() const { return columns_ > 0 && memory_.available(); }

  NarrowColumnSums view() const {
    auto* squares = memory_.at<std::uint32_t>(0);
    return {static_cast<std::uint16_t*>(static_cast<void*>(squares + columns_)), squares, columns_};
  }

 private:
  int columns_;
  vlvk::ScratchMemory memory_;
};

/// Box statistics of a band whose box rows are `rows`; output rows are `outputStride` elements apart.
void writeStatistics(const BoxRows& rows, int width, int rowCount, int radius, unsigned int* sums,
                     unsigned int* squares, std::ptrdiff_t outputStride) {
  const ColumnRows memory(width);
  if (!memory.usable()) return;
  const NarrowColumnSums columns = memory.view();
  const int halfSize = vlvk::roundUpTo8(radius) - 1;
  vlvk::slideBox(columns, rows, halfSize, rowCount, [&](std::ptrdiff_t y) {
    vlvk::rowLoops().boxSumsRow(columns.sums, columns.squares, columns.columns, sums + y * outputStride,
                                squares + y * outputStride, halfSize);
  });
}

}  // namespace

void Mean_Window_Neon(const unsigned char* source, unsigned char* destination, int width, int height, int stride,
                      int radius, int level) {
  const ColumnRows memory(width);
  if (!memory.usable()) return;
  const BoxRows rows{.plane = source, .stride = stride, .firstRow = 0, .lastRow = std::int64_t{height} - 1};
  const int reach = vlvk::roundUpTo8(radius);
  vlvk::smoothRows(memory.view(), rows, reach, vlvk::makePixelFormula(reach - 1, level), height, {source, stride},
                   {destination, stride});
}

void MeanTop_Window_V2_Neon(const unsigned char* source, unsigned int* sums, unsigned int* squares, int width, int rows,
                            int stride, int radius) {
  writeStatistics({.plane = source, .stride = stride, .firstRow = 0}, width, rows, radius, sums, squares, width);
}

void MeanMid_Window_V2_Neon(const unsigned char* source, unsigned int* sums, unsigned int* squares, int width, int rows,
                            int stride, int radius) {
  writeStatistics({.plane = source, .stride = stride}, width, rows, radius, sums, squares, width);
}

void MeanBottom_Window_V2_Neon(const unsigned char* source, unsigned int* sums, unsigned int* squares, int width,
                               int rows, int stride, int radius) {
  writeStatistics({.plane = source, .stride = stride, .lastRow = std::int64_t{rows} - 1}, width, rows, radius, sums,
                  squares, width);
}

void MeanMid_Window_Neon2(const unsigned char* source, unsigned int* sums, unsigned int* squares, int width, int rows,
                          int stride, int radius, int /*level*/) {
  writeStatistics({.plane = source, .stride = stride}, width, rows, radius, sums, squares, stride);
}

void MeanLine_V2_Neon(const unsigned short* columnSums, const unsigned int* columnSquares, int width,
                      unsigned int* sums, unsigned int* squares, int halfSize) {
  vlvk::rowLoops().boxSumsRow(columnSums, columnSquares, vlvk::wholeGroups(width), sums, squares, halfSize);
}

void MeanLine_Neon2(const unsigned short* columnSums, const unsigned int* columnSquares, int width,
                    const unsigned char* /*source*/, unsigned int* sums, unsigned int* squares, int halfSize,
                    int /*level*/) {
  MeanLine_V2_Neon(columnSums, columnSquares, width, sums, squares, halfSize);
}

void MeanLine_V4_Neon(unsigned short* columnSums, unsigned int* columnSquares, const unsigned char* addRow,
                      const unsigned char* subRow, int width, const unsigned char* source, unsigned char* destination,
                      int halfSize, int level) {
  MeanLineEx_Neon(columnSums, columnSquares, addRow, subRow, width, source, destination, halfSize, level);
}
