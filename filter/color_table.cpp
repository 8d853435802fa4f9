/// See color_table.h.
#include "filter/color_table.h"

#include <cstddef>

#include <vlvk/CFastEdgePreserved.h>
#include "base/shared_field.h"
#include "filter/tone_curves.h"

namespace vlvk {

namespace {

/// Byte of the table for the picture's pixel at column x, row y.
std::size_t tableOffset(int x, int y) {
  const int tile = y / kColorLevels * kColorTilesPerRow + x / kColorLevels;
  return (static_cast<std::size_t>(tile) * kColorLevels * kColorLevels +
          static_cast<std::size_t>(y % kColorLevels) * kColorLevels + static_cast<std::size_t>(x % kColorLevels)) *
         4;
}

Memory allocate(std::size_t bytes) {
  return Memory(static_cast<unsigned char*>(std::malloc(bytes)));
}

bool allocateCurve(unsigned char*& curve) {
  if (curve == nullptr) curve = allocate(kToneCurveSize).release();
  return curve != nullptr;
}

}  // namespace

void buildColorTable(const unsigned char* picture, const ToneCurves& curves, bool rgbOrder, unsigned char* table) {
  for (int y = 0; y < kColorPictureSide; ++y) {
    for (int x = 0; x < kColorPictureSide; ++x) {
      unsigned char* entry = table + tableOffset(x, y);
      const unsigned char blue = curves.curve2[picture[0]];
      const unsigned char red = curves.curve0[picture[2]];
      entry[0] = rgbOrder ? red : blue;
      entry[1] = curves.curve1[picture[1]];
      entry[2] = rgbOrder ? blue : red;
      entry[3] = 255;
      picture += 4;
    }
  }
}

bool TableUpdate::allocate() {
  if (!allocateCurve(filter_.toneCurve0) || !allocateCurve(filter_.toneCurve1) || !allocateCurve(filter_.toneCurve2)) {
    return false;
  }
  if (filter_.colorTable == nullptr) {
    table_ = vlvk::allocate(kColorTableSize);
    if (table_ == nullptr) return false;
  }
  if (reload_ || table_ != nullptr) {
    picture_ = vlvk::allocate(kColorPictureSize);
    if (picture_ == nullptr) return false;
  }
  return true;
}

bool TableUpdate::loadPicture() {
  fillNeutralPicture(picture_.get());  // what the loader does not fill stays neutral
  if (!reload_) return true;
  if (filter_.loader == nullptr) return false;
  try {
    return filter_.loader->getResFromName("adjust.vlk", picture_.get()) >= 0;
  } catch (...) {  // nothing is thrown out of a frame
    return false;
  }
}

void TableUpdate::apply(int whitenIntensity) {
  if (picture_ == nullptr) return;
  if (table_ != nullptr) filter_.colorTable = table_.release();
  if (!loadPicture()) {
    std::free(filter_.colorTable);
    filter_.colorTable = nullptr;
    return;
  }
  buildToneCurves(whitenIntensity, filter_.toneCurve0, filter_.toneCurve1, filter_.toneCurve2);
  buildColorTable(picture_.get(), {filter_.toneCurve0, filter_.toneCurve1, filter_.toneCurve2}, filter_.rgbOrder,
                  filter_.colorTable);
}

}  // namespace vlvk

void CFastEdgePreserved::buildLookup(const unsigned char* src) {
  vlvk::buildToneCurves(vlvk::loadShared(whitenIntensity), toneCurve0, toneCurve1, toneCurve2);
  vlvk::buildColorTable(src, {toneCurve0, toneCurve1, toneCurve2}, rgbOrder, colorTable);
}
