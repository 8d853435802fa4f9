/// Putting packets together in a file, or on a device.
#ifndef VLVK_TOOLS_MEDIA_MEDIA_OUTPUT_H
#define VLVK_TOOLS_MEDIA_MEDIA_OUTPUT_H

#include <cstdint>
#include <exception>
#include <memory>
#include <string>

#include "tools/io/output_file.h"
#include "tools/media/ffmpeg.h"

namespace vlvk::tool {

/// The kind of file that `path` is to be, by `kind`, FFmpeg's name of it, or else by the name's ending. Throws
/// UsageError, a bare reason, if there is none that is written in one piece.
const AVOutputFormat& outputKind(const std::string& path, const std::string& kind);

/// Whether it is MP4, MOV, or one of their kind, which hold a mark that tells players to turn the picture.
bool isMovKind(const AVOutputFormat& kind);

/// Whether there are tags such as com.apple.quicktime.make, which phones write into MOV.
bool hasPhoneTags(const AVFormatContext& format);

/// Whether files of a kind keep such tags.
bool holdsPhoneTags(const AVOutputFormat& kind);

/// Whether FFmpeg opens what it writes to by itself.
bool isOutputDevice(const AVOutputFormat& kind);

/// Everything throws Error, which names the file.
class MediaOutput {
 public:
  /// @param name  for messages; of the device, where `file` is null
  MediaOutput(const std::string& name, const AVOutputFormat& kind, OutputFile* file);
  MediaOutput(const MediaOutput&) = delete;
  MediaOutput& operator=(const MediaOutput&) = delete;

  /// To add streams, chapters and tags.
  AVFormatContext* format() { return format_.get(); }

  void writeHeader();

  /// Writes a packet of a stream, its times in units of `timeBase`, in the order of time; takes what is in it.
  void write(AVPacket* packet, int stream, AVRational timeBase);

  /// The same for a packet that may be damaged. Returns false where it, or its time, is refused.
  bool writeCopy(AVPacket* packet, int stream, AVRational timeBase);

  /// Ends the file. Nothing can follow.
  void finish();

 private:
  struct Free {
    void operator()(AVFormatContext* format) const { avformat_free_context(format); }
  };

  static int onWrite(void* self, std::uint8_t* bytes, int count);
  static std::int64_t onSeek(void* self, std::int64_t offset, int whence);

  int interleave(AVPacket* packet, int stream, AVRational timeBase);
  void checked(int code);

  std::string name_;
  OutputFile* file_;
  std::exception_ptr failure_;  // of a callback, which must not throw
  MediaOwner<AVIOContext> io_;
  std::unique_ptr<AVFormatContext, Free> format_;
};

}  // namespace vlvk::tool

#endif
