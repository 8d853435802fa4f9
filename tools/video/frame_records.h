/// What is noted of each frame of a video: a line of text.
#ifndef VLVK_TOOLS_VIDEO_FRAME_RECORDS_H
#define VLVK_TOOLS_VIDEO_FRAME_RECORDS_H

#include <cstdint>
#include <string>

#include "tools/video/video_frame.h"

namespace vlvk::tool {

/// CRC-32 of each frame's bytes in the stream, headers left out, and of all of them together.
class FrameChecksums {
 public:
  void add(VideoFrame* frame);

  /// "NUMBER CRC" for each frame and "all CRC", 8 hexadecimal digits each.
  std::string text() const;

 private:
  std::string lines_;
  unsigned long all_ = 0;
};

/// Where the time of each frame went.
class FrameTimes {
 public:
  /// Milliseconds.
  void add(std::uint64_t number, double filtered, double waited);

  /// "NUMBER FILTERED WAITED" for each frame, under a line with the names of the columns.
  const std::string& text() const { return lines_; }

 private:
  std::string lines_ = "# frame filter_ms wait_ms\n";
};

}  // namespace vlvk::tool

#endif
