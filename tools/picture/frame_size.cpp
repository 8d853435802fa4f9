/// See frame_size.h.
#include "tools/picture/frame_size.h"

#include <string>

#include "tools/io/messages.h"

namespace vlvk::tool {

void checkPictureSize(std::uint32_t width, std::uint32_t height) {
  if (isSizeTaken(width, height)) return;
  throw Error("the picture of " + std::to_string(width) + " x " + std::to_string(height) +
              " pixels is too large, at most " + std::to_string(kMaxSide) + " on a side and " +
              std::to_string(kMaxPixels / 1000000) + " megapixels are read");
}

}  // namespace vlvk::tool
