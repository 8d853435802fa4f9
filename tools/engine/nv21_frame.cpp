/// See nv21_frame.h.
#include "tools/engine/nv21_frame.h"

#include <cstring>

#include <vlvk/rgb_to_yuv.h>

namespace vlvk::tool {
namespace {

Picture paddedToEven(const Picture& picture) {
  Picture result(evenSide(picture.width), evenSide(picture.height));
  std::memcpy(result.pixels.get(), picture.pixels.get(), picture.rowBytes() * static_cast<std::size_t>(picture.height));
  padToEven(result.pixels.get(), {picture.width, picture.height}, 4);
  return result;
}

}  // namespace

Nv21Frame nv21FrameOf(const Picture& picture) {
  if (picture.width % 2 != 0 || picture.height % 2 != 0) return nv21FrameOf(paddedToEven(picture));
  const int width = picture.width;
  const int height = picture.height;
  const std::size_t lumaSize = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  Nv21Frame frame{width, height, std::make_unique_for_overwrite<std::uint8_t[]>(lumaSize + lumaSize / 2)};
  VKRGBAToNV21_NeonCall(picture.row(0), width * 4, frame.luma.get(), width, frame.chroma(), width, width, height);
  return frame;
}

}  // namespace vlvk::tool
