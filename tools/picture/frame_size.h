/// Sizes of pictures and of frames of a video.
#ifndef VLVK_TOOLS_PICTURE_FRAME_SIZE_H
#define VLVK_TOOLS_PICTURE_FRAME_SIZE_H

#include <cstdint>

namespace vlvk::tool {

/// Pixels on a side, 1 or more.
struct FrameSize {
  int width;
  int height;
};

/// Largest picture or frame that is read. Everything done to 2^28 pixels takes up to 3.3 GB of memory, side by side
/// 5.4 GB.
inline constexpr std::uint32_t kMaxSide = 32768;
inline constexpr std::uint64_t kMaxPixels = std::uint64_t{1} << 28;

constexpr bool isSizeTaken(std::uint32_t width, std::uint32_t height) {
  return width <= kMaxSide && height <= kMaxSide && std::uint64_t{width} * height <= kMaxPixels;
}

/// Throws Error where a picture of this size is not read.
void checkPictureSize(std::uint32_t width, std::uint32_t height);

}  // namespace vlvk::tool

#endif
