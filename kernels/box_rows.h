/// Which luma row stands for row i of a sliding box, i counted from the first row of a band.
#ifndef VLVK_KERNELS_BOX_ROWS_H
#define VLVK_KERNELS_BOX_ROWS_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace vlvk {

/// Maps row indices to memory. Bands at the top, in the middle, at the bottom and with saved neighbours differ in this
/// alone.
///
///     i < 0            above (saved rows) if there are any, otherwise plane
///     i >= belowFrom   below (saved rows) if there are any, otherwise plane
///     otherwise        plane; rows outside firstRow .. lastRow count as the nearest one inside
struct BoxRows {
  static constexpr std::int64_t kNoLimit = std::numeric_limits<std::int64_t>::max() / 2;

  const std::uint8_t* plane;          ///< row 0 of the band
  std::ptrdiff_t stride;              ///< bytes between rows, saved rows included
  std::int64_t firstRow = -kNoLimit;  ///< rows of the plane that may be read
  std::int64_t lastRow = kNoLimit;
  std::int64_t ringRows = 0;  ///< not 0: plane holds so many rows from row 0 on, row i at i modulo this
  const std::uint8_t* above = nullptr;
  std::int64_t aboveRows = 0;  ///< the last of them is row -1
  const std::uint8_t* below = nullptr;
  std::int64_t belowRows = 0;
  std::int64_t belowFrom = kNoLimit;  ///< row of the first one

  const std::uint8_t* row(std::int64_t i) const {
    if (above != nullptr && i < 0) return at(above, std::max<std::int64_t>(i + aboveRows, 0));
    if (below != nullptr && i >= belowFrom) return at(below, std::min(i - belowFrom, belowRows - 1));
    const std::int64_t clamped = std::clamp(i, firstRow, lastRow);
    return at(plane, ringRows != 0 ? clamped % ringRows : clamped);
  }

  /// First index past i, at most `end`, that may stand for another row than i does.
  std::int64_t nextRow(std::int64_t i, std::int64_t end) const {
    std::int64_t next = i + 1;
    if (above != nullptr && i < 0) {
      next = std::max(next, 1 - aboveRows);
    } else if (below != nullptr && i >= belowFrom) {
      if (i - belowFrom >= belowRows - 1) next = end;
    } else if (i < firstRow) {
      next = firstRow + 1;
    } else if (i >= lastRow) {
      next = below != nullptr ? belowFrom : end;
    }
    return std::min(next, end);
  }

 private:
  const std::uint8_t* at(const std::uint8_t* rows, std::int64_t index) const {
    return rows + static_cast<std::ptrdiff_t>(index) * stride;
  }
};

}  // namespace vlvk

#endif
