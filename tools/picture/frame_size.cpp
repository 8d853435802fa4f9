/// See frame_size.h.
#include "tools/picture/frame_size.h"

#include <cstring>
#include <string>

#include "tools/io/messages.h"

namespace vlvk::tool {

void checkPictureSize(std::uint32_t width, std::uint32_t height) {
  if (isSizeTaken(width, height)) return;
  throw Error("the picture of " + std::to_string(width) + " x " + std::to_string(height) +
              " pixels is too large, at most " + std::to_string(kMaxSide) + " on a side and " +
              std::to_string(kMaxPixels / 1000000) + " megapixels are read");
}

void padToEven(std::uint8_t* pixels, FrameSize size, std::size_t pixelBytes) {
  const std::size_t row = static_cast<std::size_t>(size.width) * pixelBytes;
  const std::size_t even = static_cast<std::size_t>(evenSide(size.width)) * pixelBytes;
  for (auto y = static_cast<std::size_t>(size.height); even > row && y-- > 0;) {
    std::memmove(pixels + y * even, pixels + y * row, row);
    std::memcpy(pixels + y * even + row, pixels + y * even + row - pixelBytes, pixelBytes);
  }
  std::uint8_t* end = pixels + static_cast<std::size_t>(size.height) * even;
  if (size.height % 2 != 0) std::memcpy(end, end - even, even);
}

void cropFromEven(std::uint8_t* pixels, FrameSize size, std::size_t pixelBytes) {
  const std::size_t row = static_cast<std::size_t>(size.width) * pixelBytes;
  const std::size_t even = static_cast<std::size_t>(evenSide(size.width)) * pixelBytes;
  for (std::size_t y = 1; even > row && y < static_cast<std::size_t>(size.height); ++y)
    std::memmove(pixels + y * row, pixels + y * even, row);
}

}  // namespace vlvk::tool
