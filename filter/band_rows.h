/// The rows around a band that its box sums need, at any height of band and frame.
#ifndef VLVK_FILTER_BAND_ROWS_H
#define VLVK_FILTER_BAND_ROWS_H

#include <cstddef>
#include <cstdint>

#include "filter/frame_plan.h"
#include "kernels/box_rows.h"

namespace vlvk {

/// Copies the unsmoothed luma rows around a band into its saved rows. All bands of an in-place frame need this before
/// the first of them starts, because each overwrites its own rows.
///
/// Rows outside the frame repeat its first or last row. The rows below start with the band's own last row, which the
/// sliding box takes from there.
///
/// @param luma       the frame's, plan.stride bytes a row
/// @param savedRows  of this band, with the same stride; not touched where there is one band
void saveNeighbourRows(const FramePlan& plan, const std::uint8_t* luma, int band, std::uint8_t* savedRows);

/// The rows that the sliding box meets around a band: those outside the frame repeat its edge; in place those of other
/// bands are saved ones.
///
/// @param luma       the band's first row
/// @param savedRows  of this band; not read unless the frame is in place
BoxRows rowsAround(const FramePlan& plan, int band, const std::uint8_t* luma, const std::uint8_t* savedRows);

}  // namespace vlvk

#endif
