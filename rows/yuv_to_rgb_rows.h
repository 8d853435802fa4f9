/// Row loop of the conversion from semi-planar YUV to pixels. Included by rows/all_rows.h.

#include <cstddef>
#include <cstdint>

#include "rows/bt601.h"
#include "rows/pixel_orders.h"

namespace vlvk::VLVK_TARGET {

/// One channel of two rows: luma term plus chroma term, in 16-bit lanes. They wrap where pairs stand in place, and
/// saturate otherwise, which is as good as an exact sum.
template <ChromaSpread kSpread>
inline U8x16x2 channelOfRows(I16x8x2 lumaLow, I16x8x2 lumaHigh, I16x8 chromaTerm) {
  if constexpr (kSpread == kPairsInPlace) {
    const I16x16 ofColumns = duplicateEach(chromaTerm);
    return roundShiftNarrowSat<kYuvToRgbBits>(add(lumaLow, bothRows(ofColumns.low)),
                                              add(lumaHigh, bothRows(ofColumns.high)));
  } else {
    const I16x16 ofColumns = duplicateFours(chromaTerm);
    return roundShiftNarrowSat<kYuvToRgbBits>(addSat(lumaLow, bothRows(ofColumns.low)),
                                              addSat(lumaHigh, bothRows(ofColumns.high)));
  }
}

/// offset + kU * u + kV * v.
template <ChromaOrder kChroma, int kU, int kV>
inline I16x8 weightedChroma(const ChromaPairs& pairs, I16x8 offset) {
  return kChroma == kVThenU ? weightedPairs<kV, kU>(pairs, offset) : weightedPairs<kU, kV>(pairs, offset);
}

/// See RowLoops::yuvToPixels and RowLoops::nv12ToBgraFoursTwice.
template <ChromaOrder kChroma, PixelOrder kPixels, ChromaSpread kSpread = kPairsInPlace>
inline void yuvToPixels(const std::uint8_t* luma0, const std::uint8_t* luma1, const std::uint8_t* chroma,
                        std::uint8_t* pixels0, std::uint8_t* pixels1, int columns) {
  constexpr YuvToRgb k = kYuvToRgb;
  // The offsets of luma and chroma are folded into one constant for each channel.
  const I16x8 redOffset = splatI16(-k.luma * kLumaOffset - k.redV * kChromaOffset);
  const I16x8 greenOffset = splatI16(-k.luma * kLumaOffset - (k.greenU + k.greenV) * kChromaOffset);
  const I16x8 blueOffset = splatI16(-k.luma * kLumaOffset - k.blueU * kChromaOffset);
  const U8x16x2 opaque = splatRows(255);

  for (; columns > 0; columns -= 16) {
    const ChromaPairs pairs = loadChromaPairs(chroma);
    const U8x16x2 luma = loadRows(luma0, luma1);
    const I16x8x2 lumaLow = mulWidenLow(luma, k.luma);
    const I16x8x2 lumaHigh = mulWidenHigh(luma, k.luma);
    const U8x16x2 red = channelOfRows<kSpread>(lumaLow, lumaHigh, weightedChroma<kChroma, 0, k.redV>(pairs, redOffset));
    const U8x16x2 green =
        channelOfRows<kSpread>(lumaLow, lumaHigh, weightedChroma<kChroma, k.greenU, k.greenV>(pairs, greenOffset));
    const U8x16x2 blue =
        channelOfRows<kSpread>(lumaLow, lumaHigh, weightedChroma<kChroma, k.blueU, 0>(pairs, blueOffset));
    storePixels(pixels0, pixels1, kPixels == kRgba ? red : blue, green, kPixels == kRgba ? blue : red, opaque);
    luma0 += 16;
    luma1 += 16;
    chroma += 16;
    pixels0 += 64;
    pixels1 += 64;
  }
}

}  // namespace vlvk::VLVK_TARGET
