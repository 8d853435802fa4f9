/// See box_slider.h.
#include "kernels/box_slider.h"

#include <algorithm>

namespace vlvk {

BoxSlider::BoxSlider(std::uint16_t* sums, std::uint32_t* squares, int columns, int reach, int level)
    : loops_(rowLoops()),
      sums_(sums),
      squares_(squares),
      columns_(columns),
      reach_(reach),
      formula_(makePixelFormula(reach - 1, level)),
      smoothRow_(boxSumsFitInt(reach - 1) ? loops_.smoothRow : loops_.smoothRowAnySums) {}

void BoxSlider::start(const BoxRows& rows) {
  std::fill_n(sums_, columns_, std::uint16_t{0});
  std::fill_n(squares_, columns_, std::uint32_t{0});
  const std::int64_t end = std::int64_t{reach_} - 1;
  std::int64_t next = 0;
  for (std::int64_t i = -std::int64_t{reach_}; i < end; i = next) {
    next = rows.nextRow(i, end);  // a replicated edge row is taken in once, with its count
    loops_.addRow(sums_, squares_, rows.row(i), static_cast<std::uint32_t>(next - i), columns_);
  }
}

void BoxSlider::smoothRows(const BoxRows& rows, std::int64_t firstRow, int rowCount, const std::uint8_t* source,
                           std::uint8_t* destination, std::ptrdiff_t stride) {
  for (int k = 0; k < rowCount; ++k) {
    const std::int64_t y = firstRow + k;
    loops_.slideColumnSums(sums_, squares_, rows.row(y + reach_ - 1), rows.row(y - reach_), columns_);
    smoothRow_(sums_, squares_, columns_, source + k * stride, destination + k * stride, reach_ - 1, formula_);
  }
}

}  // namespace vlvk
