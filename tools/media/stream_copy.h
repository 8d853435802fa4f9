/// What is taken over as it is: sound, subtitles, attachments, chapters, tags.
#ifndef VLVK_TOOLS_MEDIA_STREAM_COPY_H
#define VLVK_TOOLS_MEDIA_STREAM_COPY_H

#include <cstdint>
#include <string>
#include <vector>

#include "tools/media/ffmpeg.h"
#include "tools/media/media_input.h"
#include "tools/media/media_output.h"

namespace vlvk::tool {

/// The streams of a file beside its video. Throws Error, which names the file written.
class StreamCopy {
 public:
  /// Adds to `output` what it can hold, the stream of the encoder among it, in the order of the input.
  ///
  /// @param notes  gets a line for each stream that is left out
  StreamCopy(const MediaInput& input, const AVCodecContext& encoder, bool keepsRotation, MediaOutput* output,
             std::vector<std::string>* notes);

  /// Number of the video's stream in the output.
  int video() const { return video_; }

  /// Writes a packet of another stream of the input, unless that is left out.
  void write(AVPacket* packet);

  /// Throws BrokenStream, a bare reason, if packets were refused.
  void reportDamage() const;

 private:
  struct Stream {
    int number;  // in the output; below 0: none
    AVRational timeBase;
    std::string words;  // for messages
  };

  MediaOutput* output_;
  std::int64_t start_;
  std::vector<Stream> streams_;  // of the input
  int video_ = 0;
  std::string damaged_;  // the first stream of which a packet was refused
  std::uint64_t refused_ = 0;
};

}  // namespace vlvk::tool

#endif
