/// How a frame is cut into bands, and what the bands share.
#ifndef VLVK_FILTER_FRAME_PLAN_H
#define VLVK_FILTER_FRAME_PLAN_H

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace vlvk {

/// Rows that a worker takes through all steps after the smoothing before it goes on to the next ones, so that they
/// stay in the cache. Even, for chroma.
inline constexpr int kStripRows = 8;

/// Kernel scratch for each group of 8 columns: 16-bit column sums, 32-bit sums of squares.
inline constexpr std::ptrdiff_t kSumBytes = 16;
inline constexpr std::ptrdiff_t kSquareBytes = 32;

/// The cut of one frame.
///
/// Bands 0 .. bands - 2 have bandRows rows (a multiple of 8) as long as the frame lasts, the last band has the rest;
/// bands past the end of the frame are empty.
struct FramePlan {
  int width;
  int height;
  int stride;    ///< of the luma plane, bytes
  int reach;     ///< rounded radius; 0: no smoothing
  int bands;     ///< 1 or more
  bool inPlace;  ///< bands overwrite their rows, or have only these: neighbours read saved ones

  /// Groups of 8 columns, a last partial one included.
  std::int64_t groups() const { return (width + std::int64_t{7}) / 8; }

  std::int64_t bandRows() const { return roundUp8(height / bands); }

  std::int64_t bandBegin(int band) const { return std::min<std::int64_t>(band * bandRows(), height); }

  std::int64_t bandEnd(int band) const { return band == bands - 1 ? height : bandBegin(band + 1); }

  /// Rows of context worth keeping: beyond the height of the frame there are only repeats of the edge.
  std::int64_t contextRows() const { return std::min<std::int64_t>(reach, roundUp8(height)); }

  /// Whether bands are long enough for the class's smoothing stages (FastEdgePreservedTop, Mid, Bottom): their kernels
  /// read the rows around a band without asking whether the frame has them, and those with saved rows want bands of two
  /// boxes. Where bands fit, the pipeline runs the named stages; shorter ones it smooths row by row with the same box.
  /// Results are the same either way.
  bool bandsFitKernels() const {
    const std::int64_t needed = std::int64_t{reach} * (inPlace ? 2 : 1);
    return bands > 1 && bandRows() >= needed && height - bandBegin(bands - 1) >= needed;
  }

  /// First row of a band's saved neighbour rows in the edge-row buffer: the top band has contextRows() rows from below
  /// it, the bottom band as many from above it, every other band both.
  std::int64_t savedRowsBegin(int band) const {
    return (band == 0 ? 0 : band == bands - 1 ? 1 : 2 * std::int64_t{band}) * contextRows();
  }

 private:
  static std::int64_t roundUp8(std::int64_t rows) { return (rows + 7) & ~std::int64_t{7}; }
};

}  // namespace vlvk

#endif
