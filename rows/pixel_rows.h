/// Row loops on pixels: their luma and chroma, a change of luma, and other layouts. Builds on rgb_to_yuv_rows.h.
/// Included by rows/all_rows.h.

#include <cstdint>

#include "rows/colorimetry.h"
#include "rows/pixel_orders.h"

namespace vlvk::VLVK_TARGET {

/// See RowLoops::pixelsToLuma.
template <Colorimetry kColors, PixelOrder kPixels>
inline void pixelsToLuma(const std::uint8_t* pixels, std::uint8_t* luma, int columns) {
  constexpr ChannelWeights kLuma = inOrder<kPixels>(kRgbToYuv[kColors].luma, lumaOffset(kColors));
  for (; columns > 0; columns -= 16) {
    store(luma, weightedChannels<kLuma>(loadPixels16(pixels)));
    pixels += 64;
    luma += 16;
  }
}

/// See RowLoops::pixelsToChroma.
template <Colorimetry kColors, ChromaOrder kChroma, PixelOrder kPixels>
inline void pixelsToChroma(const std::uint8_t* pixels0, const std::uint8_t* pixels1, std::uint8_t* chroma,
                           int columns) {
  constexpr ChannelWeights kU = inOrder<kPixels>(kRgbToYuv[kColors].u, kChromaOffset);
  constexpr ChannelWeights kV = inOrder<kPixels>(kRgbToYuv[kColors].v, kChromaOffset);
  for (; columns > 0; columns -= 16) {
    const Pixels8 blocks = averagedBlocks(loadPixels16(pixels0), loadPixels16(pixels1));
    storeWeightedPairs<kChroma == kVThenU ? kV : kU, kChroma == kVThenU ? kU : kV>(chroma, blocks);
    pixels0 += 64;
    pixels1 += 64;
    chroma += 16;
  }
}

/// See RowLoops::shiftPixels.
template <AlphaRule kAlpha>
inline void shiftPixels(const std::uint8_t* source, const std::uint8_t* luma, const std::uint8_t* newLuma,
                        std::uint8_t* destination, int columns) {
  for (; columns > 0; columns -= 16) {
    const U8x16 before = loadU8x16(luma);
    const U8x16 after = loadU8x16(newLuma);
    const Pixels16 shifted = shiftedChannels(loadPixels16(source), subSat(after, before), subSat(before, after));
    store(destination, kAlpha == kOpaque ? withOpaqueAlpha(shifted) : shifted);
    source += 64;
    luma += 16;
    newLuma += 16;
    destination += 64;
  }
}

/// See RowLoops::unpackPixels. Plain loops, which compilers turn into vectors well enough for a copy.
template <int kBytes, bool kSwapped>
inline void unpackPixels(const std::uint8_t* __restrict source, std::uint8_t* __restrict destination, int columns) {
  for (int i = 0; i < columns; ++i) {
    destination[4 * i] = source[kBytes * i + (kSwapped ? 2 : 0)];
    destination[4 * i + 1] = source[kBytes * i + 1];
    destination[4 * i + 2] = source[kBytes * i + (kSwapped ? 0 : 2)];
    destination[4 * i + 3] = kBytes == 4 ? source[kBytes * i + 3] : 255;
  }
}

/// See RowLoops::packPixels.
inline void packPixels(const std::uint8_t* __restrict source, std::uint8_t* __restrict destination, int columns) {
  for (int i = 0; i < columns; ++i) {
    destination[3 * i] = source[4 * i];
    destination[3 * i + 1] = source[4 * i + 1];
    destination[3 * i + 2] = source[4 * i + 2];
  }
}

}  // namespace vlvk::VLVK_TARGET
