/// Frames in the memory of a video processor, for encoders that take no others.
#ifndef VLVK_TOOLS_MEDIA_HARDWARE_FRAMES_H
#define VLVK_TOOLS_MEDIA_HARDWARE_FRAMES_H

#include "tools/media/ffmpeg.h"

namespace vlvk::tool {

/// Uploads frames. Throws Error, a bare reason: mostly that the machine has no such processor.
class HardwareFrames {
 public:
  /// @param encoder  gets its device and its frames from here; its size, and the format of hardware frames, are set
  /// @param format   of the frames that are uploaded
  HardwareFrames(AVCodecContext* encoder, AVPixelFormat format);

  MediaPicture upload(const AVFrame& frame);

 private:
  MediaOwner<AVBufferRef> device_;
  MediaOwner<AVBufferRef> frames_;
};

}  // namespace vlvk::tool

#endif
