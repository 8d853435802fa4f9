/// Frames into packets.
#ifndef VLVK_TOOLS_MEDIA_ENCODER_H
#define VLVK_TOOLS_MEDIA_ENCODER_H

#include <cstdint>
#include <functional>
#include <map>
#include <optional>

#include "tools/media/encoder_choice.h"
#include "tools/media/ffmpeg.h"
#include "tools/media/frame_converter.h"
#include "tools/media/hardware_frames.h"
#include "tools/media/video_plan.h"

namespace vlvk::tool {

/// Encodes the frames of a video. Throws Error, a bare reason that names the encoder.
class Encoder {
 public:
  using Sink = std::function<void(AVPacket* packet)>;

  /// @param headers  the file wants them apart from the packets
  Encoder(const EncoderChoice& choice, const VideoPlan& plan, bool headers);

  const AVCodecContext& context() const { return *context_; }

  /// Encodes a frame, whose time counts in VideoPlan::timeBase; null: the last has come. Packets that are ready go to
  /// `sink`.
  void encode(AVFrame* frame, const Sink& sink);

 private:
  void configure(const VideoPlan& plan, bool headers);
  MediaPicture prepared(AVFrame* frame);
  void drain(const Sink& sink);

  MediaOwner<AVCodecContext> context_;
  std::optional<FrameConverter> converter_;
  std::optional<HardwareFrames> hardware_;
  std::map<std::int64_t, std::int64_t> durations_;  // by time; encoders forget them
  MediaPacket packet_;
};

}  // namespace vlvk::tool

#endif
