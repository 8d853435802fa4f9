/// A caller's mask, stretched over a frame.
#ifndef VLVK_ENGINE_MASK_ROWS_H
#define VLVK_ENGINE_MASK_ROWS_H

#include <cstddef>
#include <cstdint>

#include <vlvk/makeup.h>
#include "engine/frame_view.h"

namespace vlvk {

/// A mask after its checks.
struct MaskView {
  const std::uint8_t* plane;  ///< the caller's, only read; null: no mask, which is 255 everywhere
  std::ptrdiff_t stride;
  int width;
  int height;
};

/// Checks a mask, and that no plane of the target shares memory with it.
///
/// @param given  not trusted; null: none
/// @param view   receives it where the result is VLVK_OK
VlvkResult checkMask(const VlvkMask* given, const FrameView& target, MaskView& view);

/// Row of the mask for a row of a frame: the nearest.
int maskRowFor(const MaskView& mask, int y, int height);

/// Stretches a row of the mask over `width` columns, nearest values, and repeats the last up to `columns`.
void stretchMaskRow(const MaskView& mask, int maskRow, int width, std::uint8_t* row, int columns);

}  // namespace vlvk

#endif
