/// The values of options: words of the command line into numbers, sizes, settings. All readers throw Error, a bare
/// reason, for a text that is no such value.
#ifndef VLVK_TOOLS_OPTIONS_VALUES_H
#define VLVK_TOOLS_OPTIONS_VALUES_H

#include <string>
#include <string_view>
#include <vector>

#include "tools/engine/engine.h"
#include "tools/picture/frame_size.h"
#include "tools/table/lut_picture.h"
#include "tools/video/video_frame.h"

namespace vlvk::tool {

/// A setting that is a number.
struct LookSetting {
  const char* option;
  const char* title;  ///< what a picture calls it
  int Look::*value;
  int low;
  int high;
  const char* help;
};

inline constexpr LookSetting kLookSettings[] = {
    {"--whiten", "whitening (percent)", &Look::whiten, 0, 100, "Whitening in percent"},
    {"--soften", "softening", &Look::soften, 0, 1000, "Strength of skin smoothing"},
    {"--radius", "radius (pixels)", &Look::radius, 0, 128,
     "Reach of the smoothing in pixels, rounded up to a multiple of 8; 0: none"},
};

/// One direction of a sheet: a setting and the values that it takes in turn.
struct SheetAxis {
  const LookSetting* setting;
  std::vector<int> values;
};

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

/// A decimal number from `low` to `high`, `int` or `double`.
template <typename Number>
Number readNumber(std::string_view text, Number low, Number high);

/// "1280x720", no larger than a picture may be.
FrameSize readSize(const std::string& text);

/// "whiten=0,25,50".
SheetAxis readAxis(const std::string& text);

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
