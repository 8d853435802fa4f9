/// Smoothing of consecutive rows with a sliding box: what the band kernels, the pipeline and the whole-plane filter
/// share.
#ifndef VLVK_KERNELS_SMOOTH_PLANE_H
#define VLVK_KERNELS_SMOOTH_PLANE_H

#include <cstddef>
#include <cstdint>

#include "kernels/box_rows.h"
#include "kernels/sliding_box.h"
#include "rows/pixel_formula.h"
#include "rows/row_loops.h"

namespace vlvk {

/// Where rows of a plane begin, and how far apart they are in bytes.
template <class Byte>
struct PlaneRows {
  Byte* first;
  std::ptrdiff_t stride;

  Byte* row(std::ptrdiff_t y) const { return first + y * stride; }
};

/// A row before and after.
struct SmoothedRow {
  const std::uint8_t* source;
  std::uint8_t* destination;
};

/// The row loop for boxes of this size and this formula.
RowLoops::SmoothRow smoothRowFor(int halfSize, const PixelFormula& formula);

/// Smooths rows 0 .. rowCount - 1; `columns` bytes of each are written.
///
/// @param columns      work rows
/// @param rows         source of the box
/// @param reach        R, a positive multiple of 8: the box of row y covers rows y - R + 1 .. y + R - 1
/// @param formula      for this reach
/// @param rowsAt       called with the number of a row: where it is, unsmoothed, and where it goes
/// @param afterRow     called with the number of each row when it is smoothed; row y + R of the box is read after that
template <class RowsAt, class AfterRow>
void smoothRows(const NarrowColumnSums& columns, const BoxRows& rows, int reach, const PixelFormula& formula,
                int rowCount, const RowsAt& rowsAt, const AfterRow& afterRow) {
  const int halfSize = reach - 1;
  const RowLoops::SmoothRow smoothRow = smoothRowFor(halfSize, formula);
  slideBox(columns, rows, halfSize, rowCount, [&](std::ptrdiff_t y) {
    const SmoothedRow row = rowsAt(y);
    smoothRow(columns.sums, columns.squares, columns.columns, row.source, row.destination, halfSize, formula);
    afterRow(y);
  });
}

/// The same for rows of two planes, with nothing after a row.
void smoothRows(const NarrowColumnSums& columns, const BoxRows& rows, int reach, const PixelFormula& formula,
                int rowCount, PlaneRows<const std::uint8_t> source, PlaneRows<std::uint8_t> destination);

/// Views the byte buffers that hold a band's column sums; they are aligned for their elements.
NarrowColumnSums columnSumsIn(unsigned char* sums, unsigned char* squares, int columns);

}  // namespace vlvk

#endif
