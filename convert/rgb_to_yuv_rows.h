/// Row loop of the conversion from pixels to semi-planar YUV. Included by targets/all_rows.h.

#include <cstddef>
#include <cstdint>

#include "convert/bt601.h"
#include "convert/pixel_orders.h"

namespace vlvk::VLVK_TARGET {

/// Weighted channels of each pixel, rounded, plus `kOffset`.
template <PixelOrder kPixels, RgbWeights kWeights, int kOffset, class Pixels>
inline auto weighPixels(const Pixels& pixels) {
  constexpr int kBias = (kOffset << kRgbToYuvBits) + (1 << (kRgbToYuvBits - 1));
  constexpr int kFirst = kPixels == kRgba ? kWeights.red : kWeights.blue;
  constexpr int kThird = kPixels == kRgba ? kWeights.blue : kWeights.red;
  return weighChannels<kFirst, kWeights.green, kThird, kBias>(pixels);
}

/// See RowLoops::pixelsToYuv. The chroma of a block is that of its upper-left pixel.
template <ChromaOrder kChroma, PixelOrder kPixels>
inline void pixelsToYuv(const std::uint8_t* pixels0, const std::uint8_t* pixels1, std::uint8_t* luma0,
                        std::uint8_t* luma1, std::uint8_t* chroma, int columns) {
  for (std::ptrdiff_t c = 0; c < columns; c += 16) {
    const Pixels16 upper = loadPixels16(pixels0 + 4 * c);
    const Pixels16 lower = loadPixels16(pixels1 + 4 * c);
    store(luma0 + c, weighPixels<kPixels, kRgbToLuma, kLumaOffset>(upper));
    store(luma1 + c, weighPixels<kPixels, kRgbToLuma, kLumaOffset>(lower));
    const Pixels8 corners = evenPixels(upper);
    const U8x8 u = weighPixels<kPixels, kRgbToU, kChromaOffset>(corners);
    const U8x8 v = weighPixels<kPixels, kRgbToV, kChromaOffset>(corners);
    storePairs(chroma + c, kChroma == kVThenU ? v : u, kChroma == kVThenU ? u : v);
  }
}

}  // namespace vlvk::VLVK_TARGET
