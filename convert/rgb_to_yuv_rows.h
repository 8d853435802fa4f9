/// Row loop of the conversion from pixels to semi-planar YUV. Included by targets/all_rows.h.

#include <cstddef>
#include <cstdint>

#include "convert/bt601.h"
#include "convert/pixel_orders.h"
#include "simd/channel_weights.h"

namespace vlvk::VLVK_TARGET {

/// Weights for channels in memory order, with the offset of the sample and rounding.
template <PixelOrder kPixels>
constexpr ChannelWeights inOrder(const RgbWeights& k, int offset) {
  const int bias = (offset << kRgbToYuvBits) + (1 << (kRgbToYuvBits - 1));
  return kPixels == kRgba ? ChannelWeights{k.red, k.green, k.blue, bias} : ChannelWeights{k.blue, k.green, k.red, bias};
}

/// See RowLoops::pixelsToYuv. The chroma of a block is that of its upper-left pixel.
template <ChromaOrder kChroma, PixelOrder kPixels>
inline void pixelsToYuv(const std::uint8_t* pixels0, const std::uint8_t* pixels1, std::uint8_t* luma0,
                        std::uint8_t* luma1, std::uint8_t* chroma, int columns) {
  constexpr ChannelWeights kLuma = inOrder<kPixels>(kRgbToLuma, kLumaOffset);
  constexpr ChannelWeights kU = inOrder<kPixels>(kRgbToU, kChromaOffset);
  constexpr ChannelWeights kV = inOrder<kPixels>(kRgbToV, kChromaOffset);
  for (std::ptrdiff_t c = 0; c < columns; c += 16) {
    const Pixels16 upper = loadPixels16(pixels0 + 4 * c);
    const Pixels16 lower = loadPixels16(pixels1 + 4 * c);
    store(luma0 + c, weighChannels<kLuma>(upper));
    store(luma1 + c, weighChannels<kLuma>(lower));
    storeWeighedPairs<kChroma == kVThenU ? kV : kU, kChroma == kVThenU ? kU : kV>(chroma + c, evenPixels(upper));
  }
}

}  // namespace vlvk::VLVK_TARGET
