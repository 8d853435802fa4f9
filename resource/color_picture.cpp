/// See color_picture.h.
#include "resource/color_picture.h"

namespace vlvk {
namespace {

/// A 6-bit channel as 8 bits.
unsigned char fullScale(int level) {
  return static_cast<unsigned char>((level * 255 + (kColorLevels - 1) / 2) / (kColorLevels - 1));
}

}  // namespace

void fillNeutralPicture(unsigned char* picture) {
  for (int y = 0; y < kColorPictureSide; ++y) {
    for (int x = 0; x < kColorPictureSide; ++x) {
      *picture++ = fullScale(y / kColorLevels * kColorTilesPerRow + x / kColorLevels);
      *picture++ = fullScale(y % kColorLevels);
      *picture++ = fullScale(x % kColorLevels);
      *picture++ = 255;
    }
  }
}

}  // namespace vlvk
