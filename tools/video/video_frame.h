/// One frame on its way from a stream through the engine into a stream.
#ifndef VLVK_TOOLS_VIDEO_VIDEO_FRAME_H
#define VLVK_TOOLS_VIDEO_VIDEO_FRAME_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "tools/picture/frame_size.h"

namespace vlvk::tool {

/// How 4:2:0 frames lie in a stream: the luma rows, then chroma rows of half the width and height, rounded up.
enum class ChromaLayout {
  kPlanar,  ///< a plane of U, then one of V: I420, Y4M
  kUThenV,  ///< pairs: NV12
  kVThenU,  ///< pairs: NV21
};

/// A frame as the stream has it and, in turns, as the engine wants it: with pairs of chroma and even sizes. An odd size
/// is made even by a repeated last column or row, as the engine leaves those unconverted.
class VideoFrame {
 public:
  /// Reserves memory without writing to it: it then costs only what a stream delivers.
  VideoFrame(FrameSize size, ChromaLayout layout);

  /// Luma and chroma as the stream has them.
  std::array<std::span<std::uint8_t>, 2> streamParts();

  /// From the stream's form to the engine's, and back.
  void toEngine();
  void toStream();

  /// The engine's form; rows follow each other without padding.
  std::uint8_t* luma() { return luma_.get(); }
  std::uint8_t* chromaPairs() { return pairs_.get(); }
  int width() const { return evenSide(size_.width); }
  int height() const { return evenSide(size_.height); }
  bool isVThenU() const { return layout_ == ChromaLayout::kVThenU; }

  std::uint64_t number = 0;  ///< from 1
  std::string header;        ///< line before the frame in the stream

 private:
  std::size_t chromaBytes() const;

  FrameSize size_;
  ChromaLayout layout_;
  std::unique_ptr<std::uint8_t[]> luma_;
  std::unique_ptr<std::uint8_t[]> pairs_;
  std::unique_ptr<std::uint8_t[]> planes_;  // kPlanar only
};

/// Bytes of a frame in a stream.
std::uint64_t frameBytes(FrameSize size);

}  // namespace vlvk::tool

#endif
