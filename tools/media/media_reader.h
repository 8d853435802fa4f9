/// The frames of a video file, for FramePipe.
#ifndef VLVK_TOOLS_MEDIA_MEDIA_READER_H
#define VLVK_TOOLS_MEDIA_MEDIA_READER_H

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

#include "tools/media/decoder.h"
#include "tools/media/media_frame.h"
#include "tools/media/media_input.h"
#include "tools/media/video_plan.h"

namespace vlvk::tool {

/// Decodes and converts frames, and hands on the packets between them. Throws Error, which names the file.
class MediaReader {
 public:
  using Frame = MediaFrame;

  MediaReader(const std::string& name, MediaInput* input, const VideoPlan& plan);

  const std::string& name() const { return name_; }
  static std::unique_ptr<MediaFrame> makeFrame() { return std::make_unique<MediaFrame>(); }

  /// Reads the next frame, or returns false at the end. Throws BrokenStream after the last frame of a damaged file.
  bool read(MediaFrame* frame, const std::stop_token& stop);

  /// After the last frame: the packets that follow it.
  std::vector<MediaPacket> takeRest() { return std::move(waiting_); }

 private:
  bool decodeNext(AVFrame* picture, const std::stop_token& stop);
  void readPacket(const std::stop_token& stop);
  void checkPicture(const AVFrame& picture) const;
  void setTime(AVFrame* picture);
  void fill(MediaFrame* frame, MediaPicture picture);
  void reportDamage() const;

  std::string name_;
  MediaInput* input_;
  VideoPlan plan_;
  Decoder decoder_;
  std::optional<FrameConverter> converter_;
  PicturePool pool_;
  MediaPacket packet_;
  std::vector<MediaPacket> waiting_;  // of other streams, for the next frame
  std::exception_ptr broken_;         // thrown after the frames that were read before
  std::uint64_t count_ = 0;
  std::uint64_t damagedFrame_ = 0;  // the first; 0: none
  std::optional<std::int64_t> lastTime_;
  bool ended_ = false;
};

}  // namespace vlvk::tool

#endif
