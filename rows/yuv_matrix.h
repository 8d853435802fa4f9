/// YUV of one colorimetry as YUV of another, without a detour through RGB, which would clip.
///
/// Luma of one matrix is luma of the other plus a sum of colour differences, and colour differences depend on colour
/// differences alone.
#ifndef VLVK_ROWS_YUV_MATRIX_H
#define VLVK_ROWS_YUV_MATRIX_H

#include <cstdint>

#include "rows/colorimetry.h"
#include "rows/pixel_orders.h"

namespace vlvk {

inline constexpr int kYuvMatrixBits = 14;

/// Weights in units of 1 / 2^kYuvMatrixBits. "First" and "second" are the samples of a chroma pair as they lie in
/// memory, in the source's order where they are read and in the target's where they are written.
struct YuvMatrix {
  std::int32_t luma;
  std::int32_t lumaOfFirst;
  std::int32_t lumaOfSecond;
  std::int32_t firstOfFirst;
  std::int32_t firstOfSecond;
  std::int32_t secondOfFirst;
  std::int32_t secondOfSecond;
  int lumaOffset;
  int newLumaOffset;
};

YuvMatrix makeYuvMatrix(Colorimetry from, ChromaOrder fromOrder, Colorimetry to, ChromaOrder toOrder);

}  // namespace vlvk

#endif
