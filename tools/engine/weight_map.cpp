/// Chroma pairs -> weights, by the engine's own table -> weights within the mask -> colours.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/skin_blend.h>
#include <vlvk/skin_tables.h>
#include "tools/engine/beautify.h"

namespace vlvk::tool {
namespace {

constexpr int kFullWeight = 64;

using Color = std::array<std::uint8_t, 3>;

// Weight of every chroma pair, first byte by row. The engine's blend gives them: black mixed with a luma of 64 is the
// weight itself. Its rows are whole groups of columns, so that none is weighted by the rule for the last few.
std::vector<std::uint8_t> pairWeights() {
  const CFastEdgePreserved filter(1, nullptr);
  constexpr int kSide = 2 * 256;
  std::vector<std::uint8_t> chroma;
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second)
      chroma.insert(chroma.end(), {static_cast<std::uint8_t>(first), static_cast<std::uint8_t>(second)});
  }
  const std::vector<std::uint8_t> black(std::size_t{kSide} * kSide);
  std::vector<std::uint8_t> blend(black.size(), kFullWeight);
  MeanBlendImageWithSkin(black.data(), kSide, blend.data(), chroma.data(), kSide, kSide, kSide, 0, filter.skinTable,
                         filter.skinCentre + 1);  // V first, as in NV21
  std::vector<std::uint8_t> weights;
  for (std::size_t y = 0; y < kSide; y += 2) {
    for (std::size_t x = 0; x < kSide; x += 2)
      weights.push_back(blend[y * kSide + x]);
  }
  return weights;
}

// Equal steps of weight are about equal steps to the eye, and lightness alone gives the order, in print as well. The
// colours are every eighth of the weights 0 .. 64 in the public-domain map "inferno".
std::array<Color, kFullWeight + 1> weightColors() {
  static constexpr int kStep = 8;
  static constexpr Color kEighths[] = {{0, 0, 4},     {33, 12, 74},  {87, 16, 110},  {138, 34, 106}, {188, 55, 84},
                                       {228, 90, 49}, {249, 142, 9}, {249, 203, 53}, {252, 255, 164}};
  std::array<Color, kFullWeight + 1> colors{};
  for (int weight = 0; weight <= kFullWeight; ++weight) {
    const int after = weight % kStep;
    const Color& low = kEighths[weight / kStep];
    const Color& high = kEighths[(weight + kStep - 1) / kStep];
    for (std::size_t c = 0; c < low.size(); ++c)
      colors[weight][c] = static_cast<std::uint8_t>((low[c] * (kStep - after) + high[c] * after + kStep / 2) / kStep);
  }
  return colors;
}

}  // namespace

Picture weightMap(const Picture& source, const Mask& mask) {
  std::vector<std::uint8_t> frame = nv21Of(source, VLVK_LIMITED);
  std::vector<std::uint8_t> weights(static_cast<std::size_t>(source.width) * static_cast<std::size_t>(source.height));
  MeanGetSkinWeight(frame.data(), pairWeights().data(), weights.data(), source.width, source.height);
  const auto colors = weightColors();
  Picture map(source.width, source.height);
  for (int y = 0; y < map.height; ++y) {
    const std::uint8_t* weight = weights.data() + static_cast<std::size_t>(source.width) * static_cast<std::size_t>(y);
    std::uint8_t* pixel = map.row(y);
    for (int x = 0; x < map.width; ++x, pixel += 4) {
      const int masked = mask.empty() ? weight[x] : (weight[x] * mask.at(x, y, map.width, map.height) + 127) / 255;
      const Color& color = colors[masked];
      std::copy(color.begin(), color.end(), pixel);
      pixel[3] = 255;
    }
  }
  return map;
}

}  // namespace vlvk::tool
