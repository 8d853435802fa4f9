/// Row loops of box statistics and of the filters that work from them. Included by rows/all_rows.h, after
/// rows/smooth_rows.h.

#include <cstddef>
#include <cstdint>

#include "rows/row_loops.h"

namespace vlvk::VLVK_TARGET {

/// See RowLoops::boxSumsRow.
inline void boxSumsRow(const std::uint16_t* columnSums, const std::uint32_t* columnSquares, int columns,
                       std::uint32_t* sums, std::uint32_t* squares, int halfSize) {
  scanBoxSums<kCentred>(columnSums, columnSquares, columns, columns - 1, halfSize,
                        [&](std::ptrdiff_t j, U32x8 boxSums, U32x8 boxSquares) {
                          store(sums + j, boxSums);
                          store(squares + j, boxSquares);
                        });
}

/// Stores the first `count` of 8 lanes.
inline void storeSome(std::uint32_t* to, U32x8 v, std::ptrdiff_t count) {
  std::uint32_t lanes[8];
  store(lanes, v);
  for (std::ptrdiff_t i = 0; i < count; ++i)
    to[i] = lanes[i];
}

/// See RowLoops::boxSumsRowWide.
inline void boxSumsRowWide(const std::uint32_t* columnSums, const std::uint32_t* columnSquares, int columns,
                           std::uint32_t* sums, std::uint32_t* squares, int halfSize) {
  const std::ptrdiff_t end = columns;
  scanBoxSums<kCentred>(columnSums, columnSquares, end, end - 1, halfSize,
                        [&](std::ptrdiff_t j, U32x8 boxSums, U32x8 boxSquares) {
                          const std::ptrdiff_t count = end - j < 8 ? end - j : 8;
                          if (count == 8) {
                            store(sums + j, boxSums);
                            store(squares + j, boxSquares);
                          } else {
                            storeSome(sums + j, boxSums, count);
                            storeSome(squares + j, boxSquares, count);
                          }
                        });
}

/// Box sums of 8 pixels from the four corners of their boxes; `x` is the first pixel.
inline U32x8 cornerSums(const IntegralRows& rows, std::ptrdiff_t x) {
  return sub(add(load8(rows.bottom + x + rows.side), load8(rows.top + x)),
             add(load8(rows.bottom + x), load8(rows.top + x + rows.side)));
}
/// Only the low halves count, and those do not depend on the high ones.
inline U32x8 cornerSquares(const IntegralRows& rows, std::ptrdiff_t x) {
  return sub(add(loadLow8(rows.bottomSquares + x + rows.side), loadLow8(rows.topSquares + x)),
             add(loadLow8(rows.bottomSquares + x), loadLow8(rows.topSquares + x + rows.side)));
}

/// Calls `use8(x)` for blocks of 8 columns; the last one overlaps its predecessor where the width is no multiple of 8.
template <class Use8>
inline void forBlocksOf8(int columns, Use8 use8) {
  std::ptrdiff_t x = 0;
  for (; x + 8 <= columns; x += 8)
    use8(x);
  if (x < columns) use8(static_cast<std::ptrdiff_t>(columns) - 8);
}

/// See RowLoops::integralBoxSums.
inline void integralBoxSums(const IntegralRows& rows, int columns, std::uint32_t* sums, std::uint32_t* squares) {
  forBlocksOf8(columns, [&](std::ptrdiff_t x) {
    store(sums + x, cornerSums(rows, x));
    store(squares + x, cornerSquares(rows, x));
  });
}

template <Denominator kDenominator>
inline void smoothFromCorners(const IntegralRows& rows, std::ptrdiff_t x, const std::uint8_t* source,
                              std::uint8_t* destination, const FormulaLanes& k) {
  store(destination + x, smoothedPixels<kAbsoluteContrast, kDenominator>(
                             loadU8x8(source + x), toFloat(cornerSums(rows, x)), toFloat(cornerSquares(rows, x)), k));
}

/// See RowLoops::integralSmooth.
inline void integralSmooth(const IntegralRows& rows, int columns, const std::uint8_t* source, std::uint8_t* destination,
                           const PixelFormula& formula) {
  const FormulaLanes k = formulaLanes(formula);
  forBlocksOf8(columns, [&](std::ptrdiff_t x) { smoothFromCorners<kNormalRange>(rows, x, source, destination, k); });
}

/// See RowLoops::integralSmooth8.
inline void integralSmooth8(const IntegralRows& rows, const std::uint8_t* source, std::uint8_t* destination,
                            float inverseArea, const float* biases, const float* strengths) {
  FormulaLanes k{};
  k.inverseArea = splat8(inverseArea);
  k.bias = load8(biases);
  k.strength = load8(strengths);
  smoothFromCorners<kAny>(rows, 0, source, destination, k);
}

/// See RowLoops::blendStatistics. The first four of 8 columns take the arrays in exchanged roles, and the bias is added
/// before the squared mean is taken away. `third` and `fourth` are those arguments of Mean_var_Blend.
inline void blendStatistics(const std::uint8_t* source, std::uint8_t* destination, const std::uint32_t* sums,
                            const std::uint32_t* squares, int columns, const PixelFormula& formula) {
  const FormulaLanes k = formulaLanes(formula);
  for (std::ptrdiff_t x = 0; x < columns; x += 8) {
    const U32x8 third = load8(sums + x);
    const U32x8 fourth = load8(squares + x);
    const F32x8 mean = mul(toFloat(joinHalves(fourth, third)), k.inverseArea);
    const F32x8 meanSquare = mul(toFloat(joinHalves(third, fourth)), k.inverseArea);
    const F32x8 biased = sub(add(meanSquare, k.bias), mul(mean, mean));
    store(destination + x,
          truncToLowBytes(divided(pulledToMean(toFloat(loadU8x8(source + x)), mean, biased, k.strength))));
  }
}

/// 8 pixels of RowLoops::divideStatistics.
inline U8x8 dividedPixels(U8x8 samples, U32x8 sums, U32x8 squares, F32x8 area, F32x8 strength) {
  const F32x8 mean = div(toFloat(sums), area);
  const F32x8 variance = max(sub(div(toFloat(squares), area), mul(mean, mean)), splat8(0.0F));
  const Quotient quotient = pulledToMean(toFloat(samples), mean, variance, strength);
  return roundHalfUpToLowBytes(div(quotient.numerator, quotient.denominator));
}

/// See RowLoops::divideStatistics.
inline void divideStatistics(std::uint8_t* image, const std::uint32_t* sums, const std::uint32_t* squares, int columns,
                             float area, float strength) {
  const F32x8 areas = splat8(area);
  const F32x8 strengths = splat8(strength);
  int x = 0;
  for (; x + 8 <= columns; x += 8) {
    store(image + x, dividedPixels(loadU8x8(image + x), load8(sums + x), load8(squares + x), areas, strengths));
  }
  if (x == columns) return;
  std::uint8_t samples[8] = {};
  std::uint32_t lastSums[8] = {};
  std::uint32_t lastSquares[8] = {};
  for (int i = 0; x + i < columns; ++i) {
    samples[i] = image[x + i];
    lastSums[i] = sums[x + i];
    lastSquares[i] = squares[x + i];
  }
  store(samples, dividedPixels(loadU8x8(samples), load8(lastSums), load8(lastSquares), areas, strengths));
  for (int i = 0; x + i < columns; ++i)
    image[x + i] = samples[i];
}

}  // namespace vlvk::VLVK_TARGET
