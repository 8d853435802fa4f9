/// See band_rows.h.
#include "filter/band_rows.h"

#include <cstring>

namespace vlvk {

void saveNeighbourRows(const FramePlan& plan, const std::uint8_t* luma, int band, std::uint8_t* savedRows) {
  saveNeighbourRows(plan, band, savedRows, [&](int y, std::uint8_t* to) {
    std::memcpy(to, luma + static_cast<std::ptrdiff_t>(y) * plan.stride, static_cast<std::size_t>(plan.width));
  });
}

BoxRows rowsAround(const FramePlan& plan, int band, const std::uint8_t* luma, const std::uint8_t* savedRows) {
  const std::int64_t begin = plan.bandBegin(band);
  BoxRows rows{.plane = luma, .stride = plan.stride, .firstRow = -begin, .lastRow = plan.height - 1 - begin};
  if (!plan.inPlace) return rows;
  if (band != 0) {
    rows.above = savedRows;
    rows.aboveRows = plan.contextRows();
    savedRows += static_cast<std::ptrdiff_t>(rows.aboveRows) * plan.stride;
  }
  if (band != plan.bands - 1) {
    rows.below = savedRows;
    rows.belowRows = plan.contextRows();
    rows.belowFrom = plan.bandEnd(band) - begin - 1;
  }
  return rows;
}

}  // namespace vlvk
