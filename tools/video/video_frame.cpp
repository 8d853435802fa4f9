/// See video_frame.h.
#include "tools/video/video_frame.h"

namespace vlvk::tool {
namespace {

std::size_t half(int side) {
  return (static_cast<std::size_t>(side) + 1) / 2;
}

void interleave(const std::uint8_t* __restrict u, const std::uint8_t* __restrict v, std::uint8_t* __restrict pairs,
                std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    pairs[2 * i] = u[i];
    pairs[2 * i + 1] = v[i];
  }
}

void separate(const std::uint8_t* __restrict pairs, std::uint8_t* __restrict u, std::uint8_t* __restrict v,
              std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    u[i] = pairs[2 * i];
    v[i] = pairs[2 * i + 1];
  }
}

}  // namespace

VideoFrame::VideoFrame(FrameSize size, ChromaLayout layout)
    : size_(size),
      layout_(layout),
      luma_(std::make_unique_for_overwrite<std::uint8_t[]>(4 * half(size.width) * half(size.height))),
      pairs_(std::make_unique_for_overwrite<std::uint8_t[]>(chromaBytes())),
      planes_(layout == ChromaLayout::kPlanar ? std::make_unique_for_overwrite<std::uint8_t[]>(chromaBytes())
                                              : nullptr) {}

std::size_t VideoFrame::chromaBytes() const {
  return 2 * half(size_.width) * half(size_.height);
}

std::array<std::span<std::uint8_t>, 2> VideoFrame::streamParts() {
  const std::size_t lumaBytes = static_cast<std::size_t>(size_.width) * static_cast<std::size_t>(size_.height);
  return {{{luma_.get(), lumaBytes}, {planes_ != nullptr ? planes_.get() : pairs_.get(), chromaBytes()}}};
}

void VideoFrame::toEngine() {
  padToEven(luma_.get(), size_, 1);
  const std::size_t count = chromaBytes() / 2;
  if (planes_ != nullptr) interleave(planes_.get(), planes_.get() + count, pairs_.get(), count);
}

void VideoFrame::toStream() {
  const std::size_t count = chromaBytes() / 2;
  if (planes_ != nullptr) separate(pairs_.get(), planes_.get(), planes_.get() + count, count);
  cropFromEven(luma_.get(), size_, 1);
}

std::uint64_t frameBytes(FrameSize size) {
  return std::uint64_t{1} * size.width * size.height + 2 * half(size.width) * half(size.height);
}

}  // namespace vlvk::tool
