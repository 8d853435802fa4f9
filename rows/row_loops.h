/// The row loops: the hot arithmetic on one luma row or row pair, once for each vector target, and the choice among
/// them.
///
/// The loops are written once in the vocabulary of simd/ (the *_rows.h files) and compiled for each target by
/// row_loops_TARGET.cpp; everything else calls them through this table.
#ifndef VLVK_ROWS_ROW_LOOPS_H
#define VLVK_ROWS_ROW_LOOPS_H

#include <cstddef>
#include <cstdint>

#include "rows/colorimetry.h"
#include "rows/pixel_formula.h"
#include "rows/pixel_orders.h"
#include "rows/tone_formula.h"
#include "rows/yuv_matrix.h"
#include "simd/channel_curves.h"

namespace vlvk {

/// Two integral rows around a row of boxes, positioned at its first pixel: the sum over the box of pixel x is
/// (bottom[x + side] + top[x]) - (bottom[x] + top[x + side]).
struct IntegralRows {
  const std::uint32_t* top;
  const std::uint64_t* topSquares;
  const std::uint32_t* bottom;
  const std::uint64_t* bottomSquares;
  std::ptrdiff_t side;
};

/// A row of luma and both chroma planes at the resolution of chroma, one after the other, with the sums of the boxes
/// around their samples.
struct ToneRow {
  const std::uint8_t* samples;
  const std::uint32_t* sums;
  const std::uint32_t* squares;
  int count;  ///< samples of each of the three, a multiple of 8
};

/// One compiled set of row loops. Rows need no alignment beyond that of their element type, and nothing outside the
/// stated columns is read or written.
struct RowLoops {
  using SmoothRow = void (*)(const std::uint16_t* sums, const std::uint32_t* squares, int columns,
                             const std::uint8_t* source, std::uint8_t* destination, int halfSize,
                             const PixelFormula& formula);
  using LookUpColors = void (*)(const std::uint8_t* source, std::uint8_t* destination, int columns,
                                const std::uint8_t* table);
  using YuvToPixels = void (*)(const std::uint8_t* luma0, const std::uint8_t* luma1, const std::uint8_t* chroma,
                               std::uint8_t* pixels0, std::uint8_t* pixels1, int columns);
  using PixelsToYuv = void (*)(const std::uint8_t* pixels0, const std::uint8_t* pixels1, std::uint8_t* luma0,
                               std::uint8_t* luma1, std::uint8_t* chroma, int columns);

  const char* name;

  /// Adds `times` copies of a luma row to the column sums. `columns` is a multiple of 8.
  void (*addRow)(std::uint16_t* sums, std::uint32_t* squares, const std::uint8_t* row, std::uint32_t times,
                 int columns);

  /// Slides the column sums of a box down by one row.
  ///
  /// sums: one 16-bit sum per column, wrapping modulo 2^16 (differences of wrapped sums stay exact); squares: one
  /// 32-bit sum of squared samples per column, wrapping modulo 2^32; columns: a multiple of 8.
  void (*slideColumnSums)(std::uint16_t* sums, std::uint32_t* squares, const std::uint8_t* entering,
                          const std::uint8_t* leaving, int columns);

  /// Scans the column sums into box sums and smooths one row with them. `columns` is a multiple of 8.
  /// The first is the fast form: it needs column sums of samples, and sizes and strengths for which sumsFitFastForm
  /// holds. The second takes any.
  SmoothRow smoothRow[kContrastRules];
  SmoothRow smoothRowAnySums[kContrastRules];

  /// Scan column sums into box sums centred on their column, modulo 2^32. `columns` is a multiple of 8 in the first
  /// form, 1 or more in the second.
  void (*boxSumsRow)(const std::uint16_t* columnSums, const std::uint32_t* columnSquares, int columns,
                     std::uint32_t* sums, std::uint32_t* squares, int halfSize);
  void (*boxSumsRowWide)(const std::uint32_t* columnSums, const std::uint32_t* columnSquares, int columns,
                         std::uint32_t* sums, std::uint32_t* squares, int halfSize);

  /// Box sums, or smoothed pixels, from integral rows; `columns` is 8 or more.
  void (*integralBoxSums)(const IntegralRows& rows, int columns, std::uint32_t* sums, std::uint32_t* squares);
  void (*integralSmooth)(const IntegralRows& rows, int columns, const std::uint8_t* source, std::uint8_t* destination,
                         const PixelFormula& formula);
  /// Eight pixels with constants of their own; `biases` and `strengths` have 8 elements.
  void (*integralSmooth8)(const IntegralRows& rows, const std::uint8_t* source, std::uint8_t* destination,
                          float inverseArea, const float* biases, const float* strengths);

  /// Smooths one row from ready box statistics, as Mean_var_Blend does in whole groups. `columns` is a multiple of 8.
  void (*blendStatistics)(const std::uint8_t* source, std::uint8_t* destination, const std::uint32_t* sums,
                          const std::uint32_t* squares, int columns, const PixelFormula& formula);

  /// Smooths one row in place from ready box statistics, with divisions and rounding half up, as MeanBlendImage does;
  /// any number of columns. `area` is that of the box.
  void (*divideStatistics)(std::uint8_t* image, const std::uint32_t* sums, const std::uint32_t* squares, int columns,
                           float area, float strength);

  /// Mixes two luma rows by the skin weight of the chroma row between them. out0, out1 may be the smoothed or the
  /// unsmoothed rows. `columns` is a multiple of 8; weights has 64 entries of 0 .. 64, indexed by distance.
  void (*blendRowPair)(const std::uint8_t* unsmoothed0, const std::uint8_t* unsmoothed1, const std::uint8_t* smoothed0,
                       const std::uint8_t* smoothed1, std::uint8_t* out0, std::uint8_t* out1,
                       const std::uint8_t* chroma, int columns, const std::uint8_t* weights,
                       const std::uint8_t* centre);

  /// The skin weight of each pixel of a row, 0 .. 64, of the chroma that it shares; `columns` is a multiple of 16.
  void (*skinWeights)(const std::uint8_t* chroma, std::uint8_t* pixelWeights, int columns, const std::uint8_t* weights,
                      const std::uint8_t* centre);
  /// Weights times a mask of 0 .. 255, 255 being 1. Rows do not overlap.
  void (*maskWeights)(const std::uint8_t* weights, const std::uint8_t* mask, std::uint8_t* masked, int columns);
  /// blendRowPair for `count` samples with a weight of 0 .. 64 for each. `out` may be one of the others.
  void (*blendByWeights)(const std::uint8_t* unsmoothed, const std::uint8_t* smoothed, std::uint8_t* out,
                         const std::uint8_t* weights, int count);
  /// Each weight four times, for the channels of pixels.
  void (*repeatForChannels)(const std::uint8_t* weights, std::uint8_t* repeated, int columns);

  /// Replaces colours by the table's entries for them; `columns` is a multiple of 16. Source and destination may be the
  /// same row. The table has 4 bytes for each colour of 6 bits a channel, at red + 64 * (green + 64 * blue), the fourth
  /// being 255.
  LookUpColors lookUpColors[kAlphaRules][kPixelOrders];

  /// Passes the channels of pixels through curves; any number of columns. Source and destination may be the same row.
  void (*applyCurves[kAlphaRules])(const std::uint8_t* source, std::uint8_t* destination, int columns,
                                   const ChannelCurves& curves);

  /// Converts a row pair; `columns` is a multiple of 16. The rows of a pair may be the same. Indexed by byte order.
  YuvToPixels yuvToPixels[kColorimetries][kChromaOrders][kPixelOrders];
  /// The same of BT.601 from U, V to B, G, R, A with pairs spread as kFoursTwice says, and blue sums that do not wrap.
  YuvToPixels nv12ToBgraFoursTwice;
  /// Chroma is that of the upper left pixel of each block of 2 x 2.
  PixelsToYuv pixelsToYuv[kColorimetries][kChromaOrders][kPixelOrders];

  /// Luma of a row of pixels, and chroma of the mean of each block of 2 x 2; `columns` is a multiple of 16.
  void (*pixelsToLuma[kColorimetries][kPixelOrders])(const std::uint8_t* pixels, std::uint8_t* luma, int columns);
  void (*pixelsToChroma[kColorimetries][kChromaOrders][kPixelOrders])(const std::uint8_t* pixels0,
                                                                      const std::uint8_t* pixels1, std::uint8_t* chroma,
                                                                      int columns);

  /// Adds newLuma - luma to every channel, clamped to 0 .. 255; `columns` is a multiple of 16. Source and destination
  /// may be the same row.
  void (*shiftPixels[kAlphaRules])(const std::uint8_t* source, const std::uint8_t* luma, const std::uint8_t* newLuma,
                                   std::uint8_t* destination, int columns);

  /// Copies pixels of 3 (index 0) or 4 bytes to pixels of 4, red and blue exchanged (index 1) or not, and pixels of 4
  /// bytes to pixels of 3. A fourth byte that the source does not have is 255. Any number of columns.
  void (*unpackPixels[2][2])(const std::uint8_t* source, std::uint8_t* destination, int columns);
  void (*packPixels)(const std::uint8_t* source, std::uint8_t* destination, int columns);

  /// `count` pairs of the bytes of two rows, and the reverse; a multiple of 8.
  void (*interleave)(const std::uint8_t* first, const std::uint8_t* second, std::uint8_t* pairs, int count);
  void (*separate)(const std::uint8_t* pairs, std::uint8_t* first, std::uint8_t* second, int count);

  /// Luma and chroma pairs of one colorimetry as those of another; an even number of columns. Rows do not overlap.
  void (*convertLuma)(const std::uint8_t* luma, const std::uint8_t* pairs, std::uint8_t* destination, int columns,
                      const YuvMatrix& matrix);
  void (*convertChroma)(const std::uint8_t* pairs, std::uint8_t* destination, int columns, const YuvMatrix& matrix);

  /// Means of `count` blocks of 2 x 2 luma samples, rounded.
  void (*averageBlocks)(const std::uint8_t* luma0, const std::uint8_t* luma1, std::uint8_t* means, int count);
  /// Evens a row of chroma as tone_formula.h says.
  void (*evenChroma[kContrastRules])(const ToneRow& row, std::uint8_t* pairs, const ToneFormula& formula);
  /// Mixes changed pairs with what they were, by the mean weight of the 4 pixels of each, rounded; an even number of
  /// columns. `mixed` may be `pairs`.
  void (*mixPairs)(const std::uint8_t* pairs, const std::uint8_t* changed, const std::uint8_t* weights0,
                   const std::uint8_t* weights1, std::uint8_t* mixed, int columns);
  /// Changes pixels as much as their chroma of BT.601, limited range, U then V, has changed; an even number of columns.
  void (*shiftChroma[kPixelOrders])(const std::uint8_t* pairs, const std::uint8_t* newPairs, std::uint8_t* pixels,
                                    int columns);
};

/// The row loops in use: the fastest set that this processor runs, chosen once.
const RowLoops& rowLoops();

/// The sets that this processor can run, fastest first. `count` receives their number, 1 or more.
const RowLoops* const* availableRowLoops(int& count);

/// Puts the set of that name in use for all kernels that start from now on, null for the automatic choice. For tests,
/// benchmarks and diagnosis. Returns false, and changes nothing, when there is no such set.
bool forceRowLoops(const char* name);

}  // namespace vlvk

#endif
