/// The picture mathematics once more, one pixel at a time and as slowly as it likes: what the tests compare the library
/// with. Nothing here is shared with the library, not even a constant, so that a wrong formula in one of the two shows.
///
/// Planes are raw pointers with strides in bytes, as the library takes them.
#ifndef VLVK_TESTS_NAIVE_NAIVE_H
#define VLVK_TESTS_NAIVE_NAIVE_H

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

namespace naive {

using Byte = std::uint8_t;

enum class ChromaOrder { kVU, kUV };  // NV21, NV12
enum class PixelOrder { kRGBA, kBGRA };

// --- Smoothing ---------------------------------------------------------------------------------------------------

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

/// Vertical sums of one box: 16 bits (modulo 2^16) and 32 bits (modulo 2^32) for each column.
struct ColumnSums {
  std::vector<std::uint16_t> sums;
  std::vector<std::uint32_t> squares;
};

/// Row of a box by its index, which may be negative; `columns` samples of it are read.
using RowOf = std::function<const Byte*(long long row)>;

/// Sums of rows first .. last as `rowOf` gives them.
ColumnSums sumRows(const RowOf& rowOf, long long first, long long last, int columns);

/// Sums of rows first .. last of a plane, indices outside it counting as the nearest row. The range may be as long as
/// it likes: a row that stands for many is multiplied.
ColumnSums sumClampedRows(const Byte* plane, int stride, int rows, long long first, long long last, int columns);

/// Smooths columns 0 .. width & ~7 of one row: the box of column j is columns j - h + 1 .. j + h + 1, indices outside
/// the whole groups of 8 counting as the nearest column inside. Returns those columns only.
std::vector<Byte> smoothRow(const ColumnSums& box, const Byte* source, int width, long long halfSize, int level);

/// Smooths a plane: the box of row y is rows y - h .. y + h, clamped to the plane. The last width & 7 columns are the
/// source. Returns width * height samples without padding.
std::vector<Byte> smoothPlane(const Byte* luma, int width, int height, int stride, long long halfSize, int level);

// --- Box statistics ----------------------------------------------------------------------------------------------

/// Sums of samples and of their squares modulo 2^32: one of each for every column of a row or every pixel of a plane.
struct Statistics {
  std::vector<std::uint32_t> sums;
  std::vector<std::uint32_t> squares;
};

/// For column j the sums of columns j + first .. j + last, indices outside the row counting as the nearest column.
Statistics scanColumns(const Statistics& columns, long long first, long long last);

/// What the sum of a column is taken modulo before the columns are added up.
enum class ColumnWidth { k16Bits, k32Bits };

/// The boxes of `rows` rows of `columns` pixels, centred on each pixel: rows as `rowOf` gives them, columns clamped.
Statistics boxStatistics(const RowOf& rowOf, int columns, int rows, int halfSize, ColumnWidth width);

/// The textbook smoothing: exact division, variance not below 0, rounded half up.
Byte referencePixel(std::uint32_t S, std::uint32_t Q, Byte x, int radius, int strength);

/// One pixel of Mean_var_Blend in a row of `width` pixels: the estimate with the roles of the arrays by turns in whole
/// groups of 8, exact division behind them.
Byte blendedStatistics(std::uint32_t third, std::uint32_t fourth, Byte x, int column, int width, int radius, int level);

// --- Skin weights and blend --------------------------------------------------------------------------------------

/// Length of the plateau of the skin curve, 0 .. 255.
int skinPlateau(float a, float b);

/// 64 * exp(-k^2 / 4b), truncated: the curve k steps behind its plateau.
Byte skinFallOff(int k, float b);

/// The curve at distances 0, step, 2 * step, ... with a plateau of skinPlateau / step entries.
std::vector<Byte> skinCurve(float a, float b, int entries, int step = 1);

/// Where entry i of a 48-entry table stands in memory.
int interleavedPosition48(int i);

/// Mixes `smoothed` into `unsmoothed` by the weight of the chroma and stores into `destination`, which may be either of
/// them. `curve` holds the 48 weights in plain order. All three luma planes share the stride.
void blend(const Byte* unsmoothed, const Byte* smoothed, Byte* destination, int stride, const Byte* chroma,
           int chromaStride, int width, int height, const std::vector<Byte>& curve, int centre0, int centre1);

// --- Conversions -------------------------------------------------------------------------------------------------

struct Rgb {
  Byte r, g, b;
};

/// One pixel. With `wrapBlue` the blue sum is taken modulo 2^16 as a signed value before it is rounded.
Rgb yuvToPixel(int Y, int U, int V, bool wrapBlue);

/// VKNV21ToRGBA_NeonCall and its kin: whole row pairs and column pairs; blue wraps in the columns of whole groups
/// of 16.
void yuvToPixels(const Byte* y, int yStride, const Byte* uv, int uvStride, Byte* dst, int dstStride, int width,
                 int height, ChromaOrder chroma, PixelOrder pixels);

/// The _V2 functions: blue wraps everywhere; at least 8 columns and 2 rows.
void yuvToPixelsV2(const Byte* y, int yStride, const Byte* uv, int uvStride, Byte* dst, int dstStride, int width,
                   int height, ChromaOrder chroma, PixelOrder pixels);

/// NV212RGB_V2_NEON: pixel i of 8 takes chroma pair i % 4, first byte as U; never wraps.
void yuvToPixelsFourPairs(const Byte* y, int yStride, const Byte* uv, int uvStride, Byte* dst, int dstStride, int width,
                          int height);

struct Yuv {
  Byte y, u, v;
};

/// One pixel, rounded (columns of whole groups of 16) or truncated (the columns behind them).
Yuv pixelToYuv(int R, int G, int B, bool rounded);

/// VKRGBAToNV21_NeonCall and its kin: chroma of the upper left pixel of each 2 x 2 block.
void pixelsToYuv(const Byte* src, int srcStride, Byte* y, int yStride, Byte* uv, int uvStride, int width, int height,
                 PixelOrder pixels, ChromaOrder chroma);

}  // namespace naive

#endif
