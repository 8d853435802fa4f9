/// See smooth_plane.h.
#include "kernels/smooth_plane.h"

#include "rows/pixel_formula.h"
#include "rows/row_loops.h"

namespace vlvk {

void smoothRows(const NarrowColumnSums& columns, const BoxRows& rows, int reach, int level, int rowCount,
                const std::uint8_t* source, std::uint8_t* destination, std::ptrdiff_t stride) {
  const int halfSize = reach - 1;
  const PixelFormula formula = makePixelFormula(halfSize, level);
  const auto smoothRow = sumsFitFastForm(halfSize, formula) ? rowLoops().smoothRow : rowLoops().smoothRowAnySums;
  slideBox(columns, rows, halfSize, rowCount, [&](std::ptrdiff_t y) {
    smoothRow(columns.sums, columns.squares, columns.columns, source + y * stride, destination + y * stride, halfSize,
              formula);
  });
}

NarrowColumnSums columnSumsIn(unsigned char* sums, unsigned char* squares, int columns) {
  return {static_cast<std::uint16_t*>(static_cast<void*>(sums)),
          static_cast<std::uint32_t*>(static_cast<void*>(squares)), columns};
}

}  // namespace vlvk
