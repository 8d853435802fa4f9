/// How a frame is cut into bands, and what the bands share.
#ifndef VLVK_FILTER_FRAME_PLAN_H
#define VLVK_FILTER_FRAME_PLAN_H

#include <algorithm>
#include <cstdint>

#include "base/arm_math.h"

namespace vlvk {

/// Rows that a worker takes through all steps before it goes on to the next ones, so that they stay in the cache. Even,
/// for chroma; a divisor of the rows of a band.
inline constexpr int kStripRows = 8;

/// The cut of one frame.
///
/// Bands 0 .. bands - 2 have bandRows rows (a multiple of 8) as long as the frame lasts, the last band has the rest;
/// bands behind the end of the frame are empty.
struct FramePlan {
  int width;
  int height;
  int stride;    ///< of the luma plane, bytes
  int reach;     ///< rounded radius; 0: no smoothing
  int bands;     ///< 1 or more
  bool inPlace;  ///< the result goes back into the frame

  std::int64_t bandRows() const { return (height / bands + 7) & ~std::int64_t{7}; }

  std::int64_t bandBegin(int band) const { return std::min<std::int64_t>(band * bandRows(), height); }

  std::int64_t bandEnd(int band) const { return band == bands - 1 ? height : bandBegin(band + 1); }

  /// Rows of context worth keeping: beyond the height of the frame there are only repeats of the edge.
  std::int64_t contextRows() const { return std::min(reach, roundUpTo8(height)); }

  /// Unsmoothed rows that a band keeps while it overwrites its own: what the sliding box still has to leave behind,
  /// plus the strip in work.
  std::int64_t ringRows() const { return contextRows() + kStripRows; }

  /// First row of a band's saved neighbour rows in the edge-row buffer: the top band has contextRows() rows from below
  /// it, the bottom band as many from above it, every other band both.
  std::int64_t savedRowsBegin(int band) const {
    return (band == 0 ? 0 : band == bands - 1 ? 1 : 2 * std::int64_t{band}) * contextRows();
  }
};

}  // namespace vlvk

#endif
