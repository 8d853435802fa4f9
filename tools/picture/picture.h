/// The decoded picture that the commands work on.
#ifndef VLVK_TOOLS_PICTURE_PICTURE_H
#define VLVK_TOOLS_PICTURE_PICTURE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace vlvk::tool {

/// Largest picture that is read. Everything done to 2^28 pixels takes up to 3.3 GB of memory, side by side 5.4 GB.
inline constexpr std::uint32_t kMaxSide = 32768;
inline constexpr std::uint64_t kMaxPixels = std::uint64_t{1} << 28;

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
};

/// Throws Error where a picture of this size is not read.
void checkPictureSize(std::uint32_t width, std::uint32_t height);

/// Keeps an ICC profile with the picture if it describes RGB. A grey or CMYK profile is wrong for the converted pixels.
void keepColorProfile(Picture* picture, const std::uint8_t* profile, std::size_t size);

/// The picture as it is meant to be seen.
///
/// @param orientation  EXIF value: 1 upright, 2 to 4 mirrored or upside down, 5 to 8 with rows and columns exchanged
Picture upright(Picture picture, int orientation);

/// Two pictures of equal height side by side. Profile and alpha are those of `left`.
Picture sideBySide(const Picture& left, const Picture& right);

/// The upper left part of a picture, with its profile.
Picture cropped(const Picture& picture, int width, int height);

/// The picture with its last column and row repeated where it takes that to make width and height even.
Picture paddedToEven(const Picture& picture);

}  // namespace vlvk::tool

#endif
