/// The sliding box: column sums of a few luma rows, moved down row by row. Every box filter of the library runs on it.
#ifndef VLVK_KERNELS_SLIDING_BOX_H
#define VLVK_KERNELS_SLIDING_BOX_H

#include <algorithm>
#include <cstdint>

#include "kernels/box_rows.h"
#include "rows/row_loops.h"

namespace vlvk {

/// Column sums that wrap modulo 2^16, and of squares modulo 2^32; `columns` is a multiple of 8.
struct NarrowColumnSums {
  std::uint16_t* sums;
  std::uint32_t* squares;
  int columns;

  void add(const std::uint8_t* row, std::uint32_t times) const {
    rowLoops().addRow(sums, squares, row, times, columns);
  }
  void slide(const std::uint8_t* entering, const std::uint8_t* leaving) const {
    rowLoops().slideColumnSums(sums, squares, entering, leaving, columns);
  }
};

/// Column sums of both kinds modulo 2^32; any number of columns.
struct WideColumnSums {
  std::uint32_t* sums;
  std::uint32_t* squares;
  int columns;

  void add(const std::uint8_t* row, std::uint32_t times) const {
    for (int c = 0; c < columns; ++c) {
      const std::uint32_t sample = row[c];
      sums[c] += times * sample;
      squares[c] += times * (sample * sample);
    }
  }
  void slide(const std::uint8_t* entering, const std::uint8_t* leaving) const {
    for (int c = 0; c < columns; ++c) {
      const int in = entering[c];
      const int out = leaving[c];
      sums[c] += static_cast<std::uint32_t>(in - out);
      squares[c] += static_cast<std::uint32_t>(in * in - out * out);
    }
  }
};

/// Calls `useRow(y)` for y = 0 .. rowCount - 1 while the sums hold rows y - halfSize .. y + halfSize.
///
/// @param columns  content does not matter
/// @param rows     read from -halfSize to rowCount - 1 + halfSize, as it maps them
template <class ColumnSums, class UseRow>
void slideBox(const ColumnSums& columns, const BoxRows& rows, int halfSize, int rowCount, UseRow useRow) {
  if (rowCount <= 0) return;
  std::fill_n(columns.sums, columns.columns, 0);
  std::fill_n(columns.squares, columns.columns, 0);
  const std::int64_t end = std::int64_t{halfSize} + 1;
  std::int64_t next = 0;
  for (std::int64_t i = -std::int64_t{halfSize}; i < end; i = next) {
    next = rows.nextRow(i, end);  // a repeated edge row is taken in once, with its count
    columns.add(rows.row(i), static_cast<std::uint32_t>(next - i));
  }
  useRow(0);
  for (int y = 1; y < rowCount; ++y) {
    columns.slide(rows.row(std::int64_t{y} + halfSize), rows.row(std::int64_t{y} - halfSize - 1));
    useRow(y);
  }
}

}  // namespace vlvk

#endif
