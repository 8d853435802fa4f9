/// Beautified frames, and what comes with them, into a video file.
#ifndef VLVK_TOOLS_MEDIA_MEDIA_WRITER_H
#define VLVK_TOOLS_MEDIA_MEDIA_WRITER_H

#include <vector>

#include "tools/media/encoder.h"
#include "tools/media/media_frame.h"
#include "tools/media/media_output.h"
#include "tools/media/stream_copy.h"

namespace vlvk::tool {

/// Throws Error, which names the file.
class MediaWriter {
 public:
  /// @param name  of the file, for messages
  MediaWriter(const std::string& name, Encoder* encoder, StreamCopy* copy, MediaOutput* output);

  void write(MediaFrame* frame);

  /// Writes what the encoder still holds.
  ///
  /// @param rest  packets after the last frame
  void finish(const std::vector<MediaPacket>& rest);

 private:
  void encode(AVFrame* frame);
  void copyAll(const std::vector<MediaPacket>& packets);

  std::string name_;
  Encoder* encoder_;
  StreamCopy* copy_;
  MediaOutput* output_;
};

}  // namespace vlvk::tool

#endif
