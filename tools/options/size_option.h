/// Sizes of frames on the command line.
#ifndef VLVK_TOOLS_OPTIONS_SIZE_OPTION_H
#define VLVK_TOOLS_OPTIONS_SIZE_OPTION_H

#include <string>

namespace vlvk::tool {

/// Pixels of a frame, 1 or more on a side, and no more than a picture may have.
struct FrameSize {
  int width;
  int height;
};

/// The size that `text`, the value of `--size`, states as 1280x720. Throws CLI::ValidationError.
FrameSize parseFrameSize(const std::string& text);

}  // namespace vlvk::tool

#endif
