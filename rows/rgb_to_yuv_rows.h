/// Row loop of the conversion from pixels to semi-planar YUV. Included by rows/all_rows.h.

#include <cstddef>
#include <cstdint>

#include "rows/colorimetry.h"
#include "rows/pixel_orders.h"
#include "simd/channel_weights.h"

namespace vlvk::VLVK_TARGET {

/// Weights for channels in memory order, with the offset of the sample and rounding.
template <PixelOrder kPixels>
constexpr ChannelWeights inOrder(const RgbWeights& k, int offset) {
  const int bias = (offset << kRgbToYuvBits) + (1 << (kRgbToYuvBits - 1));
  return kPixels == kRgba ? ChannelWeights{k.red, k.green, k.blue, bias} : ChannelWeights{k.blue, k.green, k.red, bias};
}

/// See RowLoops::pixelsToYuv. The chroma of a block is that of its upper-left pixel.
template <Colorimetry kColors, ChromaOrder kChroma, PixelOrder kPixels>
inline void pixelsToYuv(const std::uint8_t* pixels0, const std::uint8_t* pixels1, std::uint8_t* luma0,
                        std::uint8_t* luma1, std::uint8_t* chroma, int columns) {
  constexpr RgbToYuv k = kRgbToYuv[kColors];
  constexpr ChannelWeights kLuma = inOrder<kPixels>(k.luma, lumaOffset(kColors));
  constexpr ChannelWeights kU = inOrder<kPixels>(k.u, kChromaOffset);
  constexpr ChannelWeights kV = inOrder<kPixels>(k.v, kChromaOffset);
  for (; columns > 0; columns -= 16) {
    const Pixels16 upper = loadPixels16(pixels0);
    pixels0 += 64;
    store(luma0, weightedChannels<kLuma>(upper));
    luma0 += 16;
    storeWeightedPairs<kChroma == kVThenU ? kV : kU, kChroma == kVThenU ? kU : kV>(chroma, evenPixels(upper));
    chroma += 16;
    // The second row only now: there are not registers enough for both.
    const Pixels16 lower = loadPixels16(pixels1);
    pixels1 += 64;
    store(luma1, weightedChannels<kLuma>(lower));
    luma1 += 16;
  }
}

}  // namespace vlvk::VLVK_TARGET
