/// What is noted of each frame of a video: a line of text.
#ifndef VLVK_TOOLS_VIDEO_FRAME_RECORDS_H
#define VLVK_TOOLS_VIDEO_FRAME_RECORDS_H

#include <cstdint>
#include <string>

#include <vlvk/makeup.h>

namespace vlvk::tool {

/// CRC-32 of each frame's samples, plane after plane and row after row, and of all of them together.
class FrameChecksums {
 public:
  /// @param frame  I420, NV12 or NV21
  void add(std::uint64_t number, const VlvkFrame& frame);

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
