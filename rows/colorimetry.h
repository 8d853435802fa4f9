/// What YUV samples mean: ITU-R BT.601 and BT.709, limited and full range, in fixed point. The numbers of all
/// conversions, and nothing else.
///
/// With the luma weights Kr and Kb (0.299 and 0.114 in BT.601, 0.2126 and 0.0722 in BT.709), Kg = 1 - Kr - Kb, and the
/// scales of ITU-T H.273, 219 and 224 of 255 in limited range, 255 of 255 in full range:
///
///     Y = offset + scaleY * (Kr R + Kg G + Kb B)
///     U = 128 + scaleC * (B - luma) / (2 (1 - Kb))        V = 128 + scaleC * (R - luma) / (2 (1 - Kr))
#ifndef VLVK_ROWS_COLORIMETRY_H
#define VLVK_ROWS_COLORIMETRY_H

namespace vlvk {

/// Matrix and range of a frame.
enum Colorimetry { kBt601Limited, kBt601Full, kBt709Limited, kBt709Full };

inline constexpr int kColorimetries = 4;

constexpr bool isFullRange(Colorimetry colors) {
  return colors == kBt601Full || colors == kBt709Full;
}

constexpr bool isBt709(Colorimetry colors) {
  return colors == kBt709Limited || colors == kBt709Full;
}

/// Levels between black and white, and between the ends of a colour difference.
constexpr int lumaLevels(Colorimetry colors) {
  return isFullRange(colors) ? 255 : 219;
}
constexpr int chromaLevels(Colorimetry colors) {
  return isFullRange(colors) ? 255 : 224;
}

/// Zero colour difference.
inline constexpr int kChromaOffset = 128;

/// Black.
constexpr int lumaOffset(Colorimetry colors) {
  return isFullRange(colors) ? 0 : 16;
}

/// YUV to RGB, weights of the offset-free samples in units of 1/64, so that sums of a channel fit 16 bits.
struct YuvToRgb {
  int luma;
  int redV;
  int greenU;
  int greenV;
  int blueU;
};
inline constexpr int kYuvToRgbBits = 6;

/// luma = 64 * 255 / scaleY, redV = 64 * 2 (1 - Kr) * 255 / scaleC and so on, rounded: 75 = 64 * 255/219;
/// 102 = 64 * 255/224 * 1.402.
inline constexpr YuvToRgb kYuvToRgb[kColorimetries] = {
    {.luma = 75, .redV = 102, .greenU = -25, .greenV = -52, .blueU = 129},
    {.luma = 64, .redV = 90, .greenU = -22, .greenV = -46, .blueU = 113},
    {.luma = 75, .redV = 115, .greenU = -14, .greenV = -34, .blueU = 135},
    {.luma = 64, .redV = 101, .greenU = -12, .greenV = -30, .blueU = 119},
};

/// Weights of one output sample, in units of 1/256.
struct RgbWeights {
  int red;
  int green;
  int blue;
};
inline constexpr int kRgbToYuvBits = 8;

struct RgbToYuv {
  RgbWeights luma;
  RgbWeights u;
  RgbWeights v;
};

/// 66 = 256 * 219/255 * 0.299 and so on, rounded so that every chroma row sums to 0 and, in full range, every luma row
/// to 256: grey keeps its level. The largest chroma weight of full range, 128, is 127 so that all weights fit a signed
/// byte.
inline constexpr RgbToYuv kRgbToYuv[kColorimetries] = {
    {.luma = {66, 129, 25}, .u = {-38, -74, 112}, .v = {112, -94, -18}},
    {.luma = {77, 150, 29}, .u = {-43, -84, 127}, .v = {127, -106, -21}},
    {.luma = {47, 157, 16}, .u = {-26, -86, 112}, .v = {112, -102, -10}},
    {.luma = {54, 183, 19}, .u = {-29, -98, 127}, .v = {127, -115, -12}},
};

}  // namespace vlvk

#endif
