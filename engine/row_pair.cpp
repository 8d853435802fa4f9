/// See row_pair.h.
#include "engine/row_pair.h"

namespace vlvk {

void RowPair::changeColors(MutableRows pixels) const {
  if (job_.colors == nullptr) return;
  const auto change = [&](std::uint8_t* row, const std::uint8_t* weights) {
    if (job_.whitensSkin) {
      loops_.repeatForChannels(weights, scratch_.channelWeights, columns());
      job_.colors->applyByWeight(row, columns(), job_.alpha, scratch_.channelWeights, scratch_.whitenedPixels);
    } else {
      job_.colors->apply(row, columns(), job_.alpha);
    }
  };
  change(pixels.first, blend_.weights().first);
  if (count() == 2) change(pixels.second, blend_.weights().second);
}

void RowPair::writeLumaRows(ConstRows luma) const {
  writeLuma(job_.target, y_[0], luma.first);
  if (count() == 2) writeLuma(job_.target, y_[1], luma.second);
}

void RowPair::writePixelRows(ConstRows pixels) const {
  writePixels(job_.target, y_[0], pixels.first);
  if (count() == 2) writePixels(job_.target, y_[1], pixels.second);
}

}  // namespace vlvk
