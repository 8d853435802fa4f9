/// One frame of a video file on its way from the decoder through the engine to the encoder.
#ifndef VLVK_TOOLS_MEDIA_MEDIA_FRAME_H
#define VLVK_TOOLS_MEDIA_MEDIA_FRAME_H

#include <cstdint>
#include <vector>

#include <vlvk/makeup.h>
#include "tools/media/color_tags.h"
#include "tools/media/ffmpeg.h"

namespace vlvk::tool {

struct MediaFrame {
  std::uint64_t number = 0;         ///< from 1
  MediaPicture decoded;             ///< what the engine reads
  MediaPicture other;               ///< what it writes; null: `decoded`, in place
  std::vector<MediaPacket> before;  ///< packets of other streams that come before it
  VlvkFrame read{};                 ///< `decoded`, for the engine
  VlvkFrame written{};              ///< result(), for the engine

  const VlvkFrame& source() const { return read; }
  const VlvkFrame& target() const { return written; }
  AVFrame* result() { return other != nullptr ? other.get() : decoded.get(); }
};

/// A picture for the engine. It has a format that the engine takes.
VlvkFrame engineFrame(const AVFrame& picture, const ColorTags& colors);

/// Pictures of one size and format, whose memory is used again.
class PicturePool {
 public:
  PicturePool(int width, int height, AVPixelFormat format);

  MediaPicture get();

 private:
  int width_;
  int height_;
  AVPixelFormat format_;
  MediaOwner<AVBufferPool> buffers_;
};

}  // namespace vlvk::tool

#endif
