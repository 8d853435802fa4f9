/// See mask_rows.h.
#include "engine/mask_rows.h"

#include <algorithm>

#include "engine/versioned.h"

namespace vlvk {

VlvkResult checkMask(const VlvkMask* given, const FrameView& target, MaskView& view) {
  view = {};
  if (given == nullptr) return VLVK_OK;
  VlvkMask mask{};
  if (!copyVersioned<kFirstMaskSize>(*given, mask)) return VLVK_OTHER_VERSION;
  if (mask.width < 1 || mask.height < 1) return VLVK_BAD_SIZE;
  if (mask.plane == nullptr) return VLVK_NULL_POINTER;
  if (mask.stride < mask.width) return VLVK_BAD_STRIDE;
  const std::int64_t bytes = planeBytes(mask.stride, mask.width, mask.height);
  if (!fitsMemory(mask.plane, bytes)) return VLVK_BAD_SIZE;
  if (overlapsPlanes(target, extentOf(mask.plane, bytes))) return VLVK_OVERLAP;
  view = {mask.plane, mask.stride, mask.width, mask.height};
  return VLVK_OK;
}

int maskRowFor(const MaskView& mask, int y, int height) {
  return static_cast<int>((2 * std::int64_t{y} + 1) * mask.height / (2 * std::int64_t{height}));
}

void stretchMaskRow(const MaskView& mask, int maskRow, int width, std::uint8_t* row, int columns) {
  const std::uint8_t* from = mask.plane + maskRow * mask.stride;
  // Column x is nearest to (2 x + 1) * mask.width / (2 * width), which grows by mask.width / width: a division would
  // take longer than all else.
  const std::int64_t whole = mask.width / width;
  const std::int64_t part = 2 * std::int64_t{mask.width % width};
  std::int64_t column = mask.width / (2 * std::int64_t{width});
  std::int64_t rest = mask.width % (2 * std::int64_t{width});
  for (int x = 0; x < width; ++x) {
    row[x] = from[column];
    column += whole;
    rest += part;
    if (rest >= 2 * std::int64_t{width}) {
      rest -= 2 * std::int64_t{width};
      ++column;
    }
  }
  std::fill(row + width, row + columns, row[width - 1]);
}

}  // namespace vlvk
