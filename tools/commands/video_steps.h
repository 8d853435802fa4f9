/// The steps of the command `video` that are the same for all kinds of video.
#ifndef VLVK_TOOLS_COMMANDS_VIDEO_STEPS_H
#define VLVK_TOOLS_COMMANDS_VIDEO_STEPS_H

#include <chrono>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>

#include "tools/engine/engine.h"
#include "tools/io/input_stream.h"
#include "tools/io/messages.h"
#include "tools/options/options.h"
#include "tools/video/frame_pipe.h"
#include "tools/video/frame_records.h"
#include "tools/video/progress.h"

namespace vlvk::tool {

/// What was noted of each frame, as far as it was asked for.
class VideoRecords {
 public:
  /// Throws Error, which names the file, if one of them cannot be written.
  explicit VideoRecords(const VideoOptions& options);

  void addTimes(std::uint64_t number, double filtered, double waited);
  void addChecksum(std::uint64_t number, const VlvkFrame& frame);

  /// Throws Error, which names the file.
  void write() const;

 private:
  std::string timesPath_;
  std::string checksumsPath_;
  FrameTimes times_;
  FrameChecksums checksums_;
};

/// Reads, beautifies and writes all frames. Gives back the BrokenStream with which they end, if they do.
template <typename Reader, typename Writer>
std::exception_ptr beautifyAll(Engine* engine, Reader* reader, Writer* writer, Progress* progress,
                               VideoRecords* records) {
  using Clock = std::chrono::steady_clock;
  const auto work = [&](auto* frame, double waited) {
    const Clock::time_point begin = Clock::now();
    named(reader->name(), [&] { engine->beautify(frame->source(), frame->target(), frame->number); });
    records->addTimes(frame->number, std::chrono::duration<double, std::milli>(Clock::now() - begin).count(), waited);
  };
  const auto write = [&](auto* frame) {
    records->addChecksum(frame->number, frame->target());
    writer->write(frame);
    progress->frameDone();
  };
  return FramePipe<Reader>(reader, work, write).run();
}

/// Beautifies a video that FFmpeg reads and writes. Throws Error, which names the file or the option.
///
/// @param stream  what is at IN; null: FFmpeg opens it by itself
void runMedia(const VideoOptions& options, std::unique_ptr<InputStream> stream);

/// Throws UsageError where the options ask for a kind of file or an encoder that OUT cannot have. A name that tells no
/// kind is left to runMedia.
void checkMedia(const VideoOptions& options);

/// Whether IN is a URL or a device that FFmpeg opens by itself.
bool isMediaSource(const VideoOptions& options);

}  // namespace vlvk::tool

#endif
