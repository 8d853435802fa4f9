/// The values of options: words of the command line into numbers, sizes, layouts. All readers throw Error, a bare
/// reason, for a text that is no such value.
#ifndef VLVK_TOOLS_OPTIONS_VALUES_H
#define VLVK_TOOLS_OPTIONS_VALUES_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/engine/engine.h"
#include "tools/picture/frame_size.h"
#include "tools/table/lut_picture.h"
#include "tools/video/video_frame.h"

namespace vlvk::tool {

/// A part of a picture.
struct Region {
  int x;
  int y;
  int width;
  int height;
};

/// A number as options and help write it.
std::string spelled(int number);
std::string spelled(double number);

/// "0..100".
template <typename Number>
std::string spelledRange(Number low, Number high) {
  return spelled(low) + ".." + spelled(high);
}

/// A decimal number from `low` to `high`, `int` or `double`; nothing where the text is none.
template <typename Number>
std::optional<Number> numberIn(std::string_view text, Number low, Number high);

/// The same for a text that must be one.
template <typename Number>
Number readNumber(std::string_view text, Number low, Number high);

/// "1280x720", no larger than a picture may be.
FrameSize readSize(const std::string& text);

/// "WxH+X+Y".
Region readRegion(const std::string& text);

/// "lookup" or "hald".
TableLayout readLayout(const std::string& text);

/// "i420", "nv12" or "nv21".
ChromaLayout readFormat(const std::string& text);

/// One of targetNames(), which it returns.
std::string readTarget(const std::string& text);

/// Names with `separator` between them.
std::string joined(const std::vector<std::string>& names, const char* separator);

}  // namespace vlvk::tool

#endif
