/// The picture mathematics once more, one pixel at a time and as slowly as it likes: what the tests compare the library
/// with. Nothing here is shared with the library, not even a constant, so that a wrong formula in one of the two shows.
///
/// Planes are raw pointers with strides in bytes, as the library takes them.
#ifndef VLVK_TESTS_NAIVE_NAIVE_H
#define VLVK_TESTS_NAIVE_NAIVE_H

#include <cstdint>
#include <functional>
#include <vector>

namespace naive {

using Byte = std::uint8_t;

enum class ChromaOrder { kVU, kUV };  // NV21, NV12
enum class PixelOrder { kRGBA, kBGRA };

/// Sums of samples and of their squares modulo 2^32: one of each for every column of a row or every pixel of a plane.
struct Statistics {
  std::vector<std::uint32_t> sums;
  std::vector<std::uint32_t> squares;
};

/// The rows that a box sees: `at` gives those from `first` to `last`, indices outside count as the nearest one inside.
struct Rows {
  std::function<const Byte*(long long index)> at;
  long long first, last;
};

/// What the sum of a column is taken modulo before the columns are added up.
enum class ColumnWidth { k16Bits, k32Bits };

/// The sums of each column over rows first .. last. The range may be as long as it likes: an edge row that stands for
/// many is multiplied.
Statistics sumColumns(const Rows& rows, long long first, long long last, int columns, ColumnWidth width);

/// For column j the sums of columns j + first .. j + last, indices outside the row counting as the nearest column.
Statistics scanColumns(const Statistics& columns, long long first, long long last);

/// The boxes of pixels centred on columns 0 .. columns - 1 of rows 0 .. count - 1.
Statistics boxStatistics(const Rows& rows, int columns, int count, int halfSize, ColumnWidth width);

/// The estimate of 1 / x that the ARM processors' VRECPE gives, about 8 bits of it.
float reciprocalEstimate(float x);

/// Float to integer as ARM does it: toward zero, saturating, NaN gives 0.
std::uint32_t toUnsigned(float x);

/// Constants of the smoothing formula.
struct FormulaConstants {
  float inverseArea;  // of the box
  float bias;         // added to the variance
  float strength;     // weight of the mean
};
FormulaConstants formulaConstants(long long halfSize, int level);

/// The smoothed value of sample `x` in a box with the sum `S` and the sum of squares `Q`.
Byte smoothedPixel(std::uint32_t S, std::uint32_t Q, Byte x, const FormulaConstants& constants);

/// The same in a box of side 2 * halfSize + 1.
Byte smoothedPixel(std::uint32_t S, std::uint32_t Q, Byte x, long long halfSize, int level);

/// Smooths as many samples of one row as there are column sums: the box of column j is columns j - h + 1 .. j + h + 1,
/// indices outside counting as the nearest column inside.
std::vector<Byte> smoothRow(const Statistics& columns, const Byte* source, long long halfSize, int level);

/// Smooths a plane: the box of row y is rows y - h .. y + h, clamped to the plane. The last width & 7 columns are the
/// source. Returns width * height samples without padding.
std::vector<Byte> smoothPlane(const Byte* luma, int width, int height, int stride, long long halfSize, int level);

/// The textbook smoothing: exact division, variance not below 0, rounded half up.
Byte referencePixel(std::uint32_t S, std::uint32_t Q, Byte x, int radius, int strength);

/// One pixel of Mean_var_Blend in a row of `width` pixels: the estimate with the roles of the arrays by turns in whole
/// groups of 8, exact division after them.
Byte blendedStatistics(std::uint32_t third, std::uint32_t fourth, Byte x, int column, int width, int radius, int level);

/// Length of the plateau of the skin curve, 0 .. 255.
int skinPlateau(float a, float b);

/// The curve at distances 0, step, 2 * step, ... with a plateau of skinPlateau / step entries; k steps past it
/// 64 * exp(-k^2 / 4b), truncated.
std::vector<Byte> skinCurve(float a, float b, int entries, int step = 1);

/// Where entry i of a 48-entry table stands in memory.
int interleavedPosition48(int i);

/// Mixes `smoothed` into `unsmoothed` by the weight of the chroma and stores into `destination`, which may be either of
/// them. `curve` holds the 48 weights in plain order. All three luma planes share the stride.
void blend(const Byte* unsmoothed, const Byte* smoothed, Byte* destination, int stride, const Byte* chroma,
           int chromaStride, int width, int height, const std::vector<Byte>& curve, int centre0, int centre1);

struct Rgb {
  Byte r, g, b;
};

/// One pixel. With `wrapBlue` the blue sum is taken modulo 2^16 as a signed value before it is rounded.
Rgb yuvToPixel(int Y, int U, int V, bool wrapBlue);

/// The families of functions that make pixels.
enum class ToPixels {
  kPlain,     // whole row pairs and column pairs; blue wraps in the columns of whole groups of 16
  kV2,        // blue wraps everywhere; at least 8 columns and 2 rows
  kFourPairs  // whole blocks of 8 columns, at least one and 2 rows; pixel i takes chroma pair i % 4; blue never wraps
};

void yuvToPixels(const Byte* y, int yStride, const Byte* uv, int uvStride, Byte* dst, int dstStride, int width,
                 int height, ChromaOrder chroma, PixelOrder pixels, ToPixels family = ToPixels::kPlain);

struct Yuv {
  Byte y, u, v;
};

/// One pixel, rounded (columns of whole groups of 16) or truncated (the columns after them).
Yuv pixelToYuv(int R, int G, int B, bool rounded);

/// VKRGBAToNV21_NeonCall and its kin: chroma of the upper left pixel of each 2 x 2 block.
void pixelsToYuv(const Byte* src, int srcStride, Byte* y, int yStride, Byte* uv, int uvStride, int width, int height,
                 PixelOrder pixels, ChromaOrder chroma);

}  // namespace naive

#endif
