/// See smooth_plane.h.
#include "kernels/smooth_plane.h"

namespace vlvk {

RowLoops::SmoothRow smoothRowFor(int halfSize, const PixelFormula& formula) {
  const RowLoops& loops = rowLoops();
  return sumsFitFastForm(halfSize, formula) ? loops.smoothRow[formula.rule] : loops.smoothRowAnySums[formula.rule];
}

void smoothRows(const NarrowColumnSums& columns, const BoxRows& rows, int reach, const PixelFormula& formula,
                int rowCount, PlaneRows<const std::uint8_t> source, PlaneRows<std::uint8_t> destination) {
  const auto rowsAt = [&](std::ptrdiff_t y) { return SmoothedRow{source.row(y), destination.row(y)}; };
  smoothRows(columns, rows, reach, formula, rowCount, rowsAt, [](std::ptrdiff_t) {});
}

NarrowColumnSums columnSumsIn(unsigned char* sums, unsigned char* squares, int columns) {
  return {static_cast<std::uint16_t*>(static_cast<void*>(sums)),
          static_cast<std::uint32_t*>(static_cast<void*>(squares)), columns};
}

}  // namespace vlvk
