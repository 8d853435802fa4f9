/// Opening and taking apart whatever FFmpeg reads.
#ifndef VLVK_TOOLS_MEDIA_MEDIA_INPUT_H
#define VLVK_TOOLS_MEDIA_MEDIA_INPUT_H

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

#include "tools/io/input_stream.h"
#include "tools/media/ffmpeg.h"

namespace vlvk::tool {

/// Whether the name is that of a camera or of another device for video, /dev/videoN.
bool isVideoDevice(const std::string& path);

/// Whether FFmpeg has to open `path` by itself: a URL, a device, or what the format `kind` (empty: not stated) finds.
/// Throws UsageError, a bare reason, if there is no such format.
bool isOpenedByFfmpeg(const std::string& path, const std::string& kind);

/// A file, pipe, device or URL as streams of packets. Everything throws Error, a bare reason.
class MediaInput {
 public:
  /// @param path    its name; opened by FFmpeg unless there is a stream
  /// @param stream  what is at `path`; may be null
  /// @param kind    FFmpeg's name of the format or device; empty: as the contents have it
  MediaInput(const std::string& path, std::unique_ptr<InputStream> stream, const std::string& kind);
  MediaInput(const MediaInput&) = delete;
  MediaInput& operator=(const MediaInput&) = delete;

  const AVFormatContext& format() const { return *format_; }

  /// The stream whose frames are wanted: no cover picture.
  const AVStream& video() const { return *format_->streams[video_]; }

  bool isKind(const char* kind) const;

  /// How many frames there will be, as far as that is known.
  std::optional<std::uint64_t> expectedFrames() const;

  /// What is taken off all times: where a stream has no begin of its own, that it was joined at.
  std::int64_t startTime() const;

  /// Reads the next packet, or returns false at the end. Throws BrokenStream where the stream is cut off or damaged.
  bool read(AVPacket* packet, const std::stop_token& stop);

 private:
  struct Close {
    void operator()(AVFormatContext* format) const { avformat_close_input(&format); }
  };

  static int onRead(void* self, std::uint8_t* bytes, int count);
  static std::int64_t onSeek(void* self, std::int64_t offset, int whence);
  static int isStopped(void* self);

  void open(const std::string& path, const std::string& kind);
  bool readNext(AVPacket* packet);
  void readPast();
  int checked(int code);
  void checkEnd() const;

  std::unique_ptr<InputStream> stream_;
  std::stop_token stop_;
  std::exception_ptr failure_;  // of a callback, which must not throw
  MediaOwner<AVIOContext> io_;
  std::unique_ptr<AVFormatContext, Close> format_;
  MediaPacket next_;  // read ahead; null: nothing
  unsigned video_ = 0;
  std::uint64_t packets_ = 0;  // of video_
};

}  // namespace vlvk::tool

#endif
