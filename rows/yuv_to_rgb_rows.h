/// Row loop of the conversion from semi-planar YUV to pixels. Included by rows/all_rows.h.

#include <cstddef>
#include <cstdint>

#include "rows/colorimetry.h"
#include "rows/pixel_orders.h"

namespace vlvk::VLVK_TARGET {

/// How a channel's sum is kept in 16 bits.
enum ChannelSum { kWrapping, kSaturating };

/// One channel of two rows: luma term plus chroma term, in 16-bit lanes.
template <ChannelSum kSum, ChromaSpread kSpread>
inline U8x16x2 channelOfRows(I16x8x2 lumaLow, I16x8x2 lumaHigh, I16x8 chromaTerm) {
  I16x16 ofColumns;
  if constexpr (kSpread == kPairsInPlace) {
    ofColumns = duplicateEach(chromaTerm);
  } else {
    ofColumns = duplicateFours(chromaTerm);
  }
  const auto sum = [](I16x8x2 luma, I16x8x2 chroma) {
    return kSum == kSaturating ? addSat(luma, chroma) : add(luma, chroma);
  };
  return roundShiftNarrowSat<kYuvToRgbBits>(sum(lumaLow, bothRows(ofColumns.low)),
                                            sum(lumaHigh, bothRows(ofColumns.high)));
}

/// offset + kU * u + kV * v.
template <ChromaOrder kChroma, int kU, int kV>
inline I16x8 weightedChroma(const ChromaPairs& pairs, I16x8 offset) {
  return kChroma == kVThenU ? weightedPairs<kV, kU>(pairs, offset) : weightedPairs<kU, kV>(pairs, offset);
}

/// See RowLoops::yuvToPixels and RowLoops::nv12ToBgraFoursTwice.
///
/// Only blue of limited range can pass 16 bits, where chroma and luma are both out of their range. With pairs in place
/// BT.601 wraps there, which is part of its result; BT.709 and other pairs saturate, which is as good as an exact sum.
template <Colorimetry kColors, ChromaOrder kChroma, PixelOrder kPixels, ChromaSpread kSpread = kPairsInPlace>
inline void yuvToPixels(const std::uint8_t* luma0, const std::uint8_t* luma1, const std::uint8_t* chroma,
                        std::uint8_t* pixels0, std::uint8_t* pixels1, int columns) {
  constexpr YuvToRgb k = kYuvToRgb[kColors];
  constexpr int kBlack = lumaOffset(kColors);
  constexpr bool kWraps = isFullRange(kColors) || (kColors == kBt601Limited && kSpread == kPairsInPlace);
  constexpr ChannelSum kSum = kWraps ? kWrapping : kSaturating;
  // The offsets of luma and chroma are folded into one constant for each channel.
  const I16x8 redOffset = splatI16(-k.luma * kBlack - k.redV * kChromaOffset);
  const I16x8 greenOffset = splatI16(-k.luma * kBlack - (k.greenU + k.greenV) * kChromaOffset);
  const I16x8 blueOffset = splatI16(-k.luma * kBlack - k.blueU * kChromaOffset);
  const U8x16x2 opaque = splatRows(255);

  for (; columns > 0; columns -= 16) {
    const ChromaPairs pairs = loadChromaPairs(chroma);
    const U8x16x2 luma = loadRows(luma0, luma1);
    const I16x8x2 lumaLow = mulWidenLow(luma, k.luma);
    const I16x8x2 lumaHigh = mulWidenHigh(luma, k.luma);
    const U8x16x2 red =
        channelOfRows<kSum, kSpread>(lumaLow, lumaHigh, weightedChroma<kChroma, 0, k.redV>(pairs, redOffset));
    const U8x16x2 green = channelOfRows<kSum, kSpread>(lumaLow, lumaHigh,
                                                       weightedChroma<kChroma, k.greenU, k.greenV>(pairs, greenOffset));
    const U8x16x2 blue =
        channelOfRows<kSum, kSpread>(lumaLow, lumaHigh, weightedChroma<kChroma, k.blueU, 0>(pairs, blueOffset));
    storePixels(pixels0, pixels1, kPixels == kRgba ? red : blue, green, kPixels == kRgba ? blue : red, opaque);
    luma0 += 16;
    luma1 += 16;
    chroma += 16;
    pixels0 += 64;
    pixels1 += 64;
  }
}

}  // namespace vlvk::VLVK_TARGET
