/// What the blend takes for skin, for the chroma of any colorimetry.
#ifndef VLVK_ENGINE_SKIN_WEIGHTS_H
#define VLVK_ENGINE_SKIN_WEIGHTS_H

#include <cstdint>

#include "rows/colorimetry.h"
#include "rows/pixel_orders.h"
#include "rows/yuv_matrix.h"

namespace vlvk {

/// Weights by distance from the centre of skin, for chroma pairs of one order.
///
/// Centre and distances are those of BT.601 in the frame's range. Chroma of BT.709 lies at an angle to it and is turned
/// first.
struct SkinWeights {
  Colorimetry colors;
  ChromaOrder order;
  std::uint8_t weights[64];
  std::uint8_t centre[2];
  bool isTurned;  ///< chroma goes through `turn` first
  YuvMatrix turn;
};

SkinWeights makeSkinWeights(Colorimetry colors, ChromaOrder order);

/// The weights of the frame before, made anew where this one has other chroma: they take as long as some rows do.
class KeptSkinWeights {
 public:
  const SkinWeights& of(Colorimetry colors, ChromaOrder order) {
    if (weights_.colors != colors || weights_.order != order) weights_ = makeSkinWeights(colors, order);
    return weights_;
  }

 private:
  SkinWeights weights_ = makeSkinWeights(kBt601Limited, kUThenV);
};

}  // namespace vlvk

#endif
