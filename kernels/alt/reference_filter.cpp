/// See reference_filter.h.
#include <vlvk/reference_filter.h>

#include <cstddef>
#include <cstdint>

#include "base/scratch_memory.h"
#include "kernels/box_rows.h"
#include "kernels/sliding_box.h"
#include "rows/row_loops.h"

namespace {

/// Box sums of a band whose box rows are `rows`.
void writeBoxSums(const vlvk::BoxRows& rows, int width, int rowCount, unsigned int* sums, unsigned int* squares,
                  int radius) {
  if (width <= 0) return;
  const vlvk::ScratchMemory memory(vlvk::CheckedSize(width) * (2 * sizeof(std::uint32_t)));
  if (!memory.available()) return;
  auto* columnSums = memory.at<std::uint32_t>(0);
  const vlvk::WideColumnSums columns{columnSums, columnSums + width, width};
  vlvk::slideBox(columns, rows, radius, rowCount, [&](std::ptrdiff_t y) {
    MeanLine(columns.sums, columns.squares, width, sums + y * rows.stride, squares + y * rows.stride, radius);
  });
}

}  // namespace

void Mean(const unsigned char* source, int width, int height, int stride, unsigned int* sums, unsigned int* squares,
          int radius) {
  writeBoxSums({.plane = source, .stride = stride, .firstRow = 0, .lastRow = std::int64_t{height} - 1}, width, height,
               sums, squares, radius);
}

void MeanTop(const unsigned char* source, int width, int rows, int stride, unsigned int* sums, unsigned int* squares,
             int radius) {
  writeBoxSums({.plane = source, .stride = stride, .firstRow = 0}, width, rows, sums, squares, radius);
}

void MeanMid(const unsigned char* source, int width, int rows, int stride, unsigned int* sums, unsigned int* squares,
             int radius) {
  writeBoxSums({.plane = source, .stride = stride}, width, rows, sums, squares, radius);
}

void MeanBottom(const unsigned char* source, int width, int rows, int stride, unsigned int* sums, unsigned int* squares,
                int radius) {
  writeBoxSums({.plane = source, .stride = stride, .lastRow = std::int64_t{rows} - 1}, width, rows, sums, squares,
               radius);
}

void MeanLine(const unsigned int* columnSums, const unsigned int* columnSquares, int width, unsigned int* sums,
              unsigned int* squares, int radius) {
  vlvk::rowLoops().boxSumsRowWide(columnSums, columnSquares, width, sums, squares, radius);
}

void MeanBlendImage(unsigned char* image, const unsigned int* sums, const unsigned int* squares, int width, int height,
                    int stride, int strength, int radius) {
  const double side = 2.0 * radius + 1.0;
  const auto area = static_cast<float>(side * side);
  for (std::ptrdiff_t y = 0; y < height; ++y) {
    const std::ptrdiff_t row = y * stride;
    vlvk::rowLoops().divideStatistics(image + row, sums + row, squares + row, width, area,
                                      static_cast<float>(strength));
  }
}
