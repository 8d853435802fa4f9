/// Turning and joining whole pictures.
#include "tools/picture/picture.h"

#include <cstring>
#include <utility>

namespace vlvk::tool {

namespace {

void exchangeAxes(PictureOrigin* origin) {
  origin->turned = true;
  if (origin->density) std::swap(origin->density->x, origin->density->y);
  if (origin->jpeg) std::swap(origin->jpeg->chromaWidth, origin->jpeg->chromaHeight);
}

}  // namespace

Picture emptyLike(const Picture& picture, int width, int height) {
  Picture result(width, height);
  result.hasAlpha = picture.hasAlpha;
  result.colorProfile = picture.colorProfile;
  result.origin = picture.origin;
  return result;
}

Picture upright(Picture picture, int orientation) {
  if (orientation < 2 || orientation > 8) return picture;
  const bool exchanged = orientation >= 5;
  const bool fromRight = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
  const bool fromBottom = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
  Picture result =
      emptyLike(picture, exchanged ? picture.height : picture.width, exchanged ? picture.width : picture.height);
  if (exchanged) exchangeAxes(&result.origin);
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

}  // namespace vlvk::tool
