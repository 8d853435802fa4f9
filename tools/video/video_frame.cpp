/// See video_frame.h.
#include "tools/video/video_frame.h"

namespace vlvk::tool {
namespace {

std::size_t half(int side) {
  return (static_cast<std::size_t>(side) + 1) / 2;
}

VlvkFormat formatOf(ChromaLayout layout) {
  if (layout == ChromaLayout::kPlanar) return VLVK_I420;
  return layout == ChromaLayout::kUThenV ? VLVK_NV12 : VLVK_NV21;
}

}  // namespace

VideoFrame::VideoFrame(FrameSize size, ChromaLayout layout, VlvkRange range)
    : size_(static_cast<std::size_t>(frameBytes(size))), bytes_(std::make_unique_for_overwrite<std::uint8_t[]>(size_)) {
  const std::size_t lumaBytes = static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
  const auto columns = static_cast<int>(half(size.width));
  std::uint8_t* chroma = bytes_.get() + lumaBytes;
  frame_ = {sizeof frame_,          formatOf(layout),         VLVK_BT601, range, size.width, size.height,
            {bytes_.get(), chroma}, {size.width, 2 * columns}};
  if (layout == ChromaLayout::kPlanar) {
    frame_.plane[2] = chroma + half(size.width) * half(size.height);
    frame_.stride[1] = frame_.stride[2] = columns;
  }
}

std::uint64_t frameBytes(FrameSize size) {
  return std::uint64_t{1} * size.width * size.height + 2 * half(size.width) * half(size.height);
}

}  // namespace vlvk::tool
