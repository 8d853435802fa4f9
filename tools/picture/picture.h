/// The decoded picture that the commands work on.
#ifndef VLVK_TOOLS_PICTURE_PICTURE_H
#define VLVK_TOOLS_PICTURE_PICTURE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "tools/picture/frame_size.h"
#include "tools/picture/picture_origin.h"

namespace vlvk::tool {

/// 8-bit RGBA pixels, rows from top to bottom without padding.
struct Picture {
  Picture() = default;

  /// Reserves pixels without writing them: a damaged file that claims to be huge then costs only what it delivers.
  Picture(int columns, int rows)
      : width(columns),
        height(rows),
        pixels(std::make_unique_for_overwrite<std::uint8_t[]>(rowBytes() * static_cast<std::size_t>(rows))) {}

  std::size_t rowBytes() const { return static_cast<std::size_t>(width) * 4; }
  std::uint8_t* row(int y) { return pixels.get() + rowBytes() * static_cast<std::size_t>(y); }
  const std::uint8_t* row(int y) const { return pixels.get() + rowBytes() * static_cast<std::size_t>(y); }

  int width = 0;
  int height = 0;
  bool hasAlpha = false;  ///< false: every fourth byte is 255 and need not be stored
  std::unique_ptr<std::uint8_t[]> pixels;
  std::vector<std::uint8_t> colorProfile;  ///< ICC profile of the RGB values; empty: none
  PictureOrigin origin;
};

/// A picture of this size with alpha, profile and origin of `picture`, its pixels not yet written.
Picture emptyLike(const Picture& picture, int width, int height);

/// The picture as it is meant to be seen.
///
/// @param orientation  EXIF value: 1 upright, 2 to 4 mirrored or upside down, 5 to 8 with rows and columns exchanged
Picture upright(Picture picture, int orientation);

/// Two pictures of equal height side by side. All but the pixels is that of `left`.
Picture sideBySide(const Picture& left, const Picture& right);

}  // namespace vlvk::tool

#endif
