/// See skin_blend.h.
#include <vlvk/skin_blend.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "base/arm_math.h"
#include "kernels/skin_model.h"
#include "rows/row_loops.h"

namespace {

/// The weights by distance that one call blends with.
struct SkinWeights {
  std::uint8_t vector[64];  ///< columns of whole groups: the table, 0 from 48 on
  std::uint8_t tail[64];    ///< the rest: the table's first 32 entries, then the distance itself
  std::uint8_t centre[2];

  SkinWeights(const unsigned char* table, const int* centres)
      : vector{}, tail{}, centre{static_cast<std::uint8_t>(centres[0]), static_cast<std::uint8_t>(centres[1])} {
    for (int d = 0; d < vlvk::kLiveSkinEntries; ++d)
      vector[d] = table[vlvk::liveSkinTablePosition(d)];
    for (int d = 0; d < 64; ++d)
      tail[d] = d < 32 ? vector[d] : static_cast<std::uint8_t>(d);
  }

  int tailWeight(int component, std::uint8_t sample) const {
    const int distance = std::abs(sample - centre[component]);
    return distance < 64 ? tail[distance] : 0;
  }
};

/// Blends the even columns from `column` up to `end`: the odd ones keep what stands in `out`.
void blendTail(const std::uint8_t* unsmoothed, const std::uint8_t* smoothed, std::uint8_t* out,
               const std::uint8_t* chroma, int column, int end, const SkinWeights& weights) {
  for (int c = column; c < end; c += 2) {
    const int weight = (weights.tailWeight(0, chroma[c]) * weights.tailWeight(1, chroma[c + 1])) >> 6;
    out[c] = static_cast<std::uint8_t>((unsmoothed[c] * (64 - weight) + smoothed[c] * weight) >> 6);
  }
}

/// `out` is one of the two luma planes.
void blendPlane(const std::uint8_t* unsmoothed, const std::uint8_t* smoothed, std::uint8_t* out, std::ptrdiff_t stride,
                const std::uint8_t* chroma, std::ptrdiff_t chromaStride, int width, int height,
                const SkinWeights& weights) {
  const vlvk::RowLoops& loops = vlvk::rowLoops();
  const int grouped = vlvk::wholeGroups(width);
  const int paired = std::max(width, 0) & ~1;
  if (paired == 0) return;
  for (int pair = 0; pair < height >> 1; ++pair) {
    loops.blendRowPair(unsmoothed, unsmoothed + stride, smoothed, smoothed + stride, out, out + stride, chroma, grouped,
                       weights.vector, weights.centre);
    blendTail(unsmoothed, smoothed, out, chroma, grouped, paired, weights);
    blendTail(unsmoothed + stride, smoothed + stride, out + stride, chroma, grouped, paired, weights);
    unsmoothed += 2 * stride;
    smoothed += 2 * stride;
    out += 2 * stride;
    chroma += chromaStride;
  }
}

}  // namespace

void MeanBlendImageWithSkin(const unsigned char* unsmoothed, int stride, unsigned char* smoothed,
                            const unsigned char* chroma, int chromaStride, int width, int height, int /*reserved*/,
                            const unsigned char* table, const int* centre) {
  blendPlane(unsmoothed, smoothed, smoothed, stride, chroma, chromaStride, width, height, SkinWeights(table, centre));
}

void MeanBlendImageWithSkin_V3(unsigned char* unsmoothed, int stride, const unsigned char* smoothed,
                               const unsigned char* chroma, int chromaStride, int width, int height,
                               const unsigned char* table, const int* centre) {
  blendPlane(unsmoothed, smoothed, unsmoothed, stride, chroma, chromaStride, width, height, SkinWeights(table, centre));
}
