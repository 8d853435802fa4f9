/// One frame on its way from a stream through the engine into a stream.
#ifndef VLVK_TOOLS_VIDEO_VIDEO_FRAME_H
#define VLVK_TOOLS_VIDEO_VIDEO_FRAME_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include <vlvk/makeup.h>
#include "tools/picture/frame_size.h"

namespace vlvk::tool {

/// How 4:2:0 frames lie in a stream: the luma rows, then chroma rows of half the width and height, rounded up.
enum class ChromaLayout {
  kPlanar,  ///< a plane of U, then one of V: I420, Y4M
  kUThenV,  ///< pairs: NV12
  kVThenU,  ///< pairs: NV21
};

/// A frame as a stream has it, in one piece.
class VideoFrame {
 public:
  /// Reserves memory without writing to it: it then costs only what a stream delivers.
  VideoFrame(FrameSize size, ChromaLayout layout, VlvkRange range = VLVK_LIMITED);

  std::span<std::uint8_t> bytes() { return {bytes_.get(), size_}; }

  /// The frame for the engine, in place: BT.601.
  const VlvkFrame& source() const { return frame_; }
  const VlvkFrame& target() const { return frame_; }

  std::uint64_t number = 0;  ///< from 1
  std::string header;        ///< line before the frame in the stream

 private:
  std::size_t size_;
  std::unique_ptr<std::uint8_t[]> bytes_;
  VlvkFrame frame_{};
};

/// Bytes of a frame in a stream.
std::uint64_t frameBytes(FrameSize size);

}  // namespace vlvk::tool

#endif
