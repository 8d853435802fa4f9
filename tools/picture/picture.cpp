/// Moving whole pictures about: turning, joining, cropping, padding.
#include "tools/picture/picture.h"

#include <cstring>
#include <string>
#include <utility>

#include "tools/io/error.h"

namespace vlvk::tool {
namespace {

// Pixels without their meaning; what belongs to the file they came from goes along.
Picture emptyLike(const Picture& picture, int width, int height) {
  Picture result(width, height);
  result.hasAlpha = picture.hasAlpha;
  result.colorProfile = picture.colorProfile;
  return result;
}

}  // namespace

void checkPictureSize(std::uint32_t width, std::uint32_t height) {
  if (width <= kMaxSide && height <= kMaxSide && std::uint64_t{width} * height <= kMaxPixels) return;
  throw Error("the picture of " + std::to_string(width) + " x " + std::to_string(height) +
              " pixels is too large, at most " + std::to_string(kMaxSide) + " on a side and " +
              std::to_string(kMaxPixels / 1000000) + " megapixels are read");
}

void keepColorProfile(Picture* picture, const std::uint8_t* profile, std::size_t size) {
  // The header of a profile has 128 bytes, the colour space stands at byte 16.
  if (size < 128 || std::memcmp(profile + 16, "RGB ", 4) != 0) return;
  picture->colorProfile.assign(profile, profile + size);
}

Picture upright(Picture picture, int orientation) {
  if (orientation < 2 || orientation > 8) return picture;
  const bool exchanged = orientation >= 5;
  const bool fromRight = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
  const bool fromBottom = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
  Picture result =
      emptyLike(picture, exchanged ? picture.height : picture.width, exchanged ? picture.width : picture.height);
  for (int y = 0; y < result.height; ++y) {
    for (int x = 0; x < result.width; ++x) {
      const int column = exchanged ? y : x;
      const int line = exchanged ? x : y;
      const int sourceX = fromRight ? picture.width - 1 - column : column;
      const int sourceY = fromBottom ? picture.height - 1 - line : line;
      std::memcpy(result.row(y) + x * std::size_t{4}, picture.row(sourceY) + sourceX * std::size_t{4}, 4);
    }
  }
  return result;
}

Picture sideBySide(const Picture& left, const Picture& right) {
  Picture result = emptyLike(left, left.width + right.width, left.height);
  for (int y = 0; y < result.height; ++y) {
    std::memcpy(result.row(y), left.row(y), left.rowBytes());
    std::memcpy(result.row(y) + left.rowBytes(), right.row(y), right.rowBytes());
  }
  return result;
}

Picture cropped(const Picture& picture, int width, int height) {
  Picture result = emptyLike(picture, width, height);
  for (int y = 0; y < height; ++y)
    std::memcpy(result.row(y), picture.row(y), result.rowBytes());
  return result;
}

Picture paddedToEven(const Picture& picture) {
  Picture result = emptyLike(picture, (picture.width + 1) & ~1, (picture.height + 1) & ~1);
  for (int y = 0; y < result.height; ++y) {
    const std::uint8_t* source = picture.row(y < picture.height ? y : picture.height - 1);
    std::memcpy(result.row(y), source, picture.rowBytes());
    std::memcpy(result.row(y) + result.rowBytes() - 4, source + picture.rowBytes() - 4, 4);
  }
  return result;
}

}  // namespace vlvk::tool
