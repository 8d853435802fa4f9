/// Where the engine works and where it leaves a frame alone.
#ifndef VLVK_TOOLS_ENGINE_MASK_H
#define VLVK_TOOLS_ENGINE_MASK_H

#include <cstdint>
#include <vector>

#include <vlvk/makeup.h>
#include "tools/picture/picture.h"

namespace vlvk::tool {

/// A VlvkMask with bytes of its own. Of any size: it is stretched over the frame.
struct Mask {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> values;  ///< rows from top to bottom, 0: leave alone, 255: as without a mask

  /// Without any values there is no mask, and everything is worked on.
  bool empty() const { return values.empty(); }

  /// As the engine takes it. Valid as long as this object.
  VlvkMask view() const { return {sizeof(VlvkMask), width, height, width, values.data()}; }

  /// The value for a pixel of a frame: the nearest, as the engine has it.
  std::uint8_t at(int x, int y, int frameWidth, int frameHeight) const;
};

/// A mask for frames that will be turned when they are shown: by quarters, clockwise, after an optional mirroring of
/// left and right. `mask` lies on what is shown then.
Mask turnedBack(const Mask& mask, int quarters, bool mirrored);

/// The luma of a picture, 0 to 255. What is transparent counts as black.
Mask maskOf(const Picture& picture);

}  // namespace vlvk::tool

#endif
