/// See color_step.h.
#include "engine/color_step.h"

#include "rows/row_loops.h"

namespace vlvk {

void ColorStep::buildCurves(int whitening) {
  if (whitening_ == whitening) return;
  if (whitening > 0) {
    buildToneCurves(whitening, curves_[0], curves_[1], curves_[2]);
  } else {  // unlike the curves of no whitening, which take some green away
    for (int i = 0; i < kToneCurveSize; ++i)
      curves_[0][i] = curves_[1][i] = curves_[2][i] = static_cast<unsigned char>(i);
  }
  whitening_ = whitening;
}

bool ColorStep::prepare(int whitening, const unsigned char* picture, bool pictureChanged, PixelOrder order) {
  if (picture != nullptr && table_ == nullptr) {
    table_ = Memory(static_cast<unsigned char*>(std::malloc(kColorTableSize)));
    if (table_ == nullptr) return false;
  }
  const bool sameOrder = order_ == order;
  buildCurves(whitening);
  order_ = order;
  usesTable_ = picture != nullptr;
  if (usesTable_ && (pictureChanged || !sameOrder || tableWhitening_ != whitening)) {
    buildColorTable(picture, {curves_[0], curves_[1], curves_[2]}, order == kRgba, table_.get());
    tableWhitening_ = whitening;
  }
  return true;
}

void ColorStep::apply(std::uint8_t* pixels, int columns, AlphaRule alpha) const {
  const RowLoops& loops = rowLoops();
  if (usesTable_) {
    loops.lookUpColors[alpha][order_](pixels, pixels, columns, table_.get());
  } else {
    const std::uint8_t* first = curves_[order_ == kRgba ? 0 : 2];
    const std::uint8_t* third = curves_[order_ == kRgba ? 2 : 0];
    loops.applyCurves[alpha](pixels, pixels, columns, {first, curves_[1], third});
  }
}

}  // namespace vlvk
