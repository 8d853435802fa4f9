/// The header of a Y4M stream (YUV4MPEG2), the format in which video programs hand raw frames to each other.
#ifndef VLVK_TOOLS_VIDEO_Y4M_H
#define VLVK_TOOLS_VIDEO_Y4M_H

#include <cstddef>
#include <string_view>

#include <vlvk/makeup.h>
#include "tools/picture/frame_size.h"

namespace vlvk::tool {

inline constexpr std::string_view kY4mStart = "YUV4MPEG2";
inline constexpr std::string_view kY4mFrame = "FRAME";
inline constexpr std::size_t kMaxY4mLine = 4096;  ///< of a header, line end included

struct Y4mHeader {
  FrameSize size;
  VlvkRange range;  ///< limited, unless a tag says full
};

/// Reads the header of a stream, `line` with its line end. Throws Error, a bare reason, unless the frames are 8-bit
/// 4:2:0: what the engine works with.
Y4mHeader parseY4mHeader(std::string_view line);

/// Whether `line` is the header of a frame: "FRAME" and perhaps parameters.
bool isY4mFrameHeader(std::string_view line);

}  // namespace vlvk::tool

#endif
