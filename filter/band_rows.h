/// The rows around a band that its box sums need, at any height of band and frame.
#ifndef VLVK_FILTER_BAND_ROWS_H
#define VLVK_FILTER_BAND_ROWS_H

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "filter/frame_plan.h"
#include "kernels/box_rows.h"

namespace vlvk {

/// Copies the unsmoothed luma rows around a band into its saved rows. All bands need this before the first of them
/// starts, where each overwrites its own rows.
///
/// Rows outside the frame repeat its first or last row. The rows below start with the band's own last row, which the
/// sliding box takes from there.
///
/// @param savedRows  of this band, plan.stride bytes a row; not touched where there is one band
/// @param copyRow    called with the number of a row and where its plan.width samples go
template <class CopyRow>
void saveNeighbourRows(const FramePlan& plan, int band, std::uint8_t* savedRows, const CopyRow& copyRow) {
  const std::int64_t count = plan.contextRows();
  const auto copyRows = [&](std::int64_t first) {
    for (std::int64_t y = first; y < first + count; ++y, savedRows += plan.stride)
      copyRow(static_cast<int>(std::clamp<std::int64_t>(y, 0, plan.height - 1)), savedRows);
  };
  if (band != 0) copyRows(plan.bandBegin(band) - count);
  if (band != plan.bands - 1) copyRows(plan.bandEnd(band) - 1);
}

/// The same out of a plane of luma, plan.stride bytes a row.
void saveNeighbourRows(const FramePlan& plan, const std::uint8_t* luma, int band, std::uint8_t* savedRows);

/// The rows that the sliding box meets around a band: those outside the frame repeat its edge; in place those of other
/// bands are saved ones.
///
/// @param luma       the band's first row
/// @param savedRows  of this band; not read unless the frame is in place
BoxRows rowsAround(const FramePlan& plan, int band, const std::uint8_t* luma, const std::uint8_t* savedRows);

}  // namespace vlvk

#endif
