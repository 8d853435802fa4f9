/// See smooth_plane.h.
#include "kernels/smooth_plane.h"

#include "rows/row_loops.h"

namespace vlvk {

void smoothRows(const NarrowColumnSums& columns, const BoxRows& rows, int reach, const PixelFormula& formula,
                int rowCount, PlaneRows<const std::uint8_t> source, PlaneRows<std::uint8_t> destination) {
  const int halfSize = reach - 1;
  const auto smoothRow = sumsFitFastForm(halfSize, formula) ? rowLoops().smoothRow : rowLoops().smoothRowAnySums;
  slideBox(columns, rows, halfSize, rowCount, [&](std::ptrdiff_t y) {
    smoothRow(columns.sums, columns.squares, columns.columns, source.row(y), destination.row(y), halfSize, formula);
  });
}

NarrowColumnSums columnSumsIn(unsigned char* sums, unsigned char* squares, int columns) {
  return {static_cast<std::uint16_t*>(static_cast<void*>(sums)),
          static_cast<std::uint32_t*>(static_cast<void*>(squares)), columns};
}

}  // namespace vlvk
