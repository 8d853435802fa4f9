/// See skin_weights.h.
#include "engine/skin_weights.h"

#include <algorithm>

#include <vlvk/skin_tables.h>
#include "kernels/skin_model.h"

namespace vlvk {

namespace {

/// The centre in limited range, moved to the scale of full range: 255 / 224 of the colour difference, rounded.
std::uint8_t centreIn(Colorimetry colors, int limited) {
  const int difference = limited - kChromaOffset;
  const double scale = static_cast<double>(chromaLevels(colors)) / chromaLevels(kBt601Limited);
  return static_cast<std::uint8_t>(kChromaOffset + difference * scale + 0.5);
}

}  // namespace

SkinWeights makeSkinWeights(Colorimetry colors, ChromaOrder order) {
  SkinWeights skin{};
  skin.colors = colors;
  skin.order = order;
  const Colorimetry measured = isFullRange(colors) ? kBt601Full : kBt601Limited;
  // The spread is a square of chroma units.
  const float scale = static_cast<float>(chromaLevels(colors)) / static_cast<float>(chromaLevels(kBt601Limited));
  unsigned char byDifference[512];  // distance d at 256 + d
  calcSkinProbility256(byDifference, kLivePlateauFactor, kLiveSpread * (scale * scale));
  std::copy_n(byDifference + 256, 64, skin.weights);
  const std::uint8_t u = centreIn(measured, kSkinU);
  const std::uint8_t v = centreIn(measured, kSkinV);
  skin.centre[0] = order == kUThenV ? u : v;
  skin.centre[1] = order == kUThenV ? v : u;
  skin.isTurned = measured != colors;
  skin.turn = makeYuvMatrix(colors, order, measured, order);
  return skin;
}

}  // namespace vlvk
