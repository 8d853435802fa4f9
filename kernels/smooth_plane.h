/// Smoothing of consecutive rows with a sliding box: what the band kernels, the pipeline and the whole-plane filter
/// share.
#ifndef VLVK_KERNELS_SMOOTH_PLANE_H
#define VLVK_KERNELS_SMOOTH_PLANE_H

#include <cstddef>
#include <cstdint>

#include "kernels/box_rows.h"
#include "kernels/sliding_box.h"

namespace vlvk {

/// Smooths rows 0 .. rowCount - 1; `columns` bytes of each are written.
///
/// @param columns      work rows
/// @param rows         source of the box
/// @param reach        R, a positive multiple of 8: the box of row y covers rows y - R + 1 .. y + R - 1
/// @param level        strength setting
/// @param source       unsmoothed row 0
/// @param destination  smoothed row 0
/// @param stride       bytes between rows of source and destination
void smoothRows(const NarrowColumnSums& columns, const BoxRows& rows, int reach, int level, int rowCount,
                const std::uint8_t* source, std::uint8_t* destination, std::ptrdiff_t stride);

/// Views the byte buffers that hold a band's column sums; they are aligned for their elements.
NarrowColumnSums columnSumsIn(unsigned char* sums, unsigned char* squares, int columns);

}  // namespace vlvk

#endif
