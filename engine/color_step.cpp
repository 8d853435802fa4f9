/// See color_step.h.
#include "engine/color_step.h"

#include <iterator>
#include <numeric>

#include "rows/row_loops.h"

namespace vlvk {

void ColorStep::buildCurves(int whitening) {
  if (whitening_ == whitening && curvesOrder_ == order_) return;
  buildToneCurves(whitening, curves_[0], curves_[1], curves_[2]);
  preparedCurves_ = prepareCurves(curves_[order_ == kRgba ? 0 : 2], curves_[1], curves_[order_ == kRgba ? 2 : 0]);
  whitening_ = whitening;
  curvesOrder_ = order_;
}

/// Without whitening the table is the picture alone: the curves of no whitening would take some green away.
void ColorStep::buildTable(const unsigned char* picture, int whitening) {
  unsigned char unchanged[kToneCurveSize];
  std::iota(std::begin(unchanged), std::end(unchanged), static_cast<unsigned char>(0));
  const ToneCurves curves =
      whitening > 0 ? ToneCurves{curves_[0], curves_[1], curves_[2]} : ToneCurves{unchanged, unchanged, unchanged};
  buildColorTable(picture, curves, order_ == kRgba, table_.get());
}

bool ColorStep::prepare(int whitening, const unsigned char* picture, bool pictureChanged, bool byWeight,
                        PixelOrder order) {
  if (picture != nullptr && table_ == nullptr) {
    table_ = Memory(static_cast<unsigned char*>(std::malloc(kColorTableSize)));
    if (table_ == nullptr) return false;
  }
  const bool sameOrder = order_ == order;
  order_ = order;
  usesTable_ = picture != nullptr;
  usesCurves_ = whitening > 0 && (byWeight || !usesTable_);
  if (whitening > 0) buildCurves(whitening);
  const int inTable = usesCurves_ ? 0 : whitening;
  if (usesTable_ && (pictureChanged || !sameOrder || tableWhitening_ != inTable)) {
    buildTable(picture, inTable);
    tableWhitening_ = inTable;
  }
  return true;
}

void ColorStep::applyCurves(const std::uint8_t* pixels, std::uint8_t* changed, int columns, AlphaRule alpha) const {
  rowLoops().applyCurves[alpha](pixels, changed, columns, preparedCurves_);
}

void ColorStep::applyTable(std::uint8_t* pixels, int columns, AlphaRule alpha) const {
  if (usesTable_) rowLoops().lookUpColors[alpha][order_](pixels, pixels, columns, table_.get());
}

void ColorStep::apply(std::uint8_t* pixels, int columns, AlphaRule alpha) const {
  applyTable(pixels, columns, alpha);
  if (usesCurves_) applyCurves(pixels, pixels, columns, alpha);
}

void ColorStep::applyByWeight(std::uint8_t* pixels, int columns, AlphaRule alpha, const std::uint8_t* weights,
                              std::uint8_t* scratch) const {
  applyTable(pixels, columns, alpha);
  if (!usesCurves_) return;
  applyCurves(pixels, scratch, columns, alpha);
  rowLoops().blendByWeights(pixels, scratch, pixels, weights, 4 * columns);
}

}  // namespace vlvk
