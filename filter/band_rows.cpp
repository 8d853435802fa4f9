/// See band_rows.h.
#include "filter/band_rows.h"

#include <algorithm>
#include <cstring>

namespace vlvk {

void saveNeighbourRows(const FramePlan& plan, const std::uint8_t* luma, int band, std::uint8_t* savedRows) {
  const std::int64_t count = plan.contextRows();
  const auto copyRows = [&](std::int64_t first) {
    for (std::int64_t y = first; y < first + count; ++y, savedRows += plan.stride) {
      const std::int64_t row = std::clamp<std::int64_t>(y, 0, plan.height - 1);
      std::memcpy(savedRows, luma + static_cast<std::ptrdiff_t>(row) * plan.stride,
                  static_cast<std::size_t>(plan.width));
    }
  };
  if (band != 0) copyRows(plan.bandBegin(band) - count);
  if (band != plan.bands - 1) copyRows(plan.bandEnd(band) - 1);
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
