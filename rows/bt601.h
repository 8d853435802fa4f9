/// ITU-R BT.601 limited range ("studio swing") in fixed point: the numbers of both directions, and nothing else.
#ifndef VLVK_ROWS_BT601_H
#define VLVK_ROWS_BT601_H

namespace vlvk {

/// Black and zero colour difference.
inline constexpr int kLumaOffset = 16;
inline constexpr int kChromaOffset = 128;

/// YUV to RGB, weights of the offset-free samples in units of 1/64.
struct YuvToRgb {
  int luma;
  int redV;
  int greenU;
  int greenV;
  int blueU;
};

// 75 = 64 * 255/219; 102 = 64 * 255/224 * 1.402 and so on, rounded.
inline constexpr YuvToRgb kYuvToRgb{.luma = 75, .redV = 102, .greenU = -25, .greenV = -52, .blueU = 129};
inline constexpr int kYuvToRgbBits = 6;

/// Weights of one output sample, in units of 1/256.
struct RgbWeights {
  int red;
  int green;
  int blue;
};

// 66 = 256 * 219/255 * 0.299 and so on, rounded so that every chroma row sums to 0.
inline constexpr RgbWeights kRgbToLuma{.red = 66, .green = 129, .blue = 25};
inline constexpr RgbWeights kRgbToU{.red = -38, .green = -74, .blue = 112};
inline constexpr RgbWeights kRgbToV{.red = 112, .green = -94, .blue = -18};
inline constexpr int kRgbToYuvBits = 8;

}  // namespace vlvk

#endif
