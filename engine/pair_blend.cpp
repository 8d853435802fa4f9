/// See pair_blend.h.
#include "engine/pair_blend.h"

#include "rows/row_loops.h"

namespace vlvk {

void PairBlend::findSkin(const std::uint8_t* pairs) {
  const RowLoops& loops = rowLoops();
  const SkinWeights& skin = *job_.skin;
  skinPairs_ = pairs;
  if (skin.isTurned) {
    loops.convertChroma(pairs, scratch_.skinPairs, job_.columns(), skin.turn);
    skinPairs_ = scratch_.skinPairs;
  }
  if (!job_.hasWeightRows()) return;
  loops.skinWeights(skinPairs_, scratch_.skinWeights, job_.columns(), skin.weights, skin.centre);
  weights_ = {scratch_.skinWeights, scratch_.skinWeights};
  if (job_.mask.plane != nullptr) applyMask();
}

void PairBlend::applyMask() {
  int stretched = -1;
  for (int i = 0; i < (y_[0] == y_[1] ? 1 : 2); ++i) {
    const int row = maskRowFor(job_.mask, y_[i], job_.source.height);
    if (row != stretched) stretchMaskRow(job_.mask, row, job_.source.width, scratch_.maskRow, job_.columns());
    stretched = row;
    rowLoops().maskWeights(scratch_.skinWeights, scratch_.maskRow, scratch_.weights[i], job_.columns());
  }
  weights_ = {scratch_.weights[0], scratch_.weights[y_[0] == y_[1] ? 0 : 1]};
}

void PairBlend::luma(ConstRows rows, MutableRows mean, MutableRows out) const {
  const RowLoops& loops = rowLoops();
  const int columns = job_.columns();
  if (weights_.first == nullptr) {
    loops.blendRowPair(rows.first, rows.second, mean.first, mean.second, out.first, out.second, skinPairs_, columns,
                       job_.skin->weights, job_.skin->centre);
    return;
  }
  loops.blendByWeights(rows.first, mean.first, out.first, weights_.first, columns);
  if (y_[0] != y_[1]) loops.blendByWeights(rows.second, mean.second, out.second, weights_.second, columns);
}

const std::uint8_t* PairBlend::chroma(const std::uint8_t* pairs) const {
  if (!job_.evens) return pairs;
  rowLoops().mixPairs(pairs, job_.evenedRow(y_[0] / 2), weights_.first, weights_.second, scratch_.evenedPairs,
                      job_.columns());
  return scratch_.evenedPairs;
}

}  // namespace vlvk
