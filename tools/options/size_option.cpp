/// See size_option.h.
#include "tools/options/size_option.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdint>
#include <system_error>

#include "tools/picture/picture.h"

namespace vlvk::tool {

FrameSize parseFrameSize(const std::string& text) {
  FrameSize size{};
  const char* end = text.data() + text.size();
  const auto width = std::from_chars(text.data(), end, size.width);
  const bool separated = width.ec == std::errc() && width.ptr != end && *width.ptr == 'x';
  const auto height = std::from_chars(separated ? width.ptr + 1 : end, end, size.height);
  const auto isSide = [](int side) { return side >= 1 && side <= static_cast<int>(kMaxSide); };
  if (height.ec == std::errc() && height.ptr == end && isSide(size.width) && isSide(size.height) &&
      std::uint64_t{1} * size.width * size.height <= kMaxPixels) {
    return size;
  }
  throw CLI::ValidationError("--size", "'" + text + "' is no size such as 1280x720, with at most " +
                                           std::to_string(kMaxSide) + " pixels on a side and 268 million in all");
}

}  // namespace vlvk::tool
