/// Packets into frames.
#ifndef VLVK_TOOLS_MEDIA_DECODER_H
#define VLVK_TOOLS_MEDIA_DECODER_H

#include <cstdint>

#include "tools/media/ffmpeg.h"

namespace vlvk::tool {

/// Decodes the packets of a stream. Throws Error, a bare reason.
class Decoder {
 public:
  explicit Decoder(const AVStream& stream);

  /// @param packet  null: there are no more
  void send(const AVPacket* packet);

  /// Gives the next frame in the order of display. False: another packet is needed, or it was the last.
  bool receive(AVFrame* frame);

  /// Whether packets or frames were damaged, since the first frame.
  bool isDamaged() const { return damaged_; }

 private:
  void begin();

  MediaOwner<AVCodecContext> context_;
  std::uint64_t errorsBefore_ = 0;  // those that are no damage
  bool damaged_ = false;
  bool begun_ = false;  // at a packet that needs no other
};

}  // namespace vlvk::tool

#endif
