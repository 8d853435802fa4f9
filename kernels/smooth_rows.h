/// Row loops of the smoothing filter: column sums, box sums, pixel formula. Included by targets/all_rows.h.

#include <cstddef>
#include <cstdint>

#include "kernels/pixel_formula.h"

namespace vlvk::VLVK_TARGET {

/// See RowLoops::addRow. Runs a few times for a band, so the multiplication costs nothing.
inline void addRow(std::uint16_t* __restrict sums, std::uint32_t* __restrict squares,
                   const std::uint8_t* __restrict row, std::uint32_t times, int columns) {
  for (int c = 0; c < columns; ++c) {
    const std::uint32_t sample = row[c];
    sums[c] = static_cast<std::uint16_t>(sums[c] + times * sample);
    squares[c] += times * (sample * sample);
  }
}

/// See RowLoops::slideColumnSums.
inline void slideColumnSums(std::uint16_t* sums, std::uint32_t* squares, const std::uint8_t* entering,
                            const std::uint8_t* leaving, int columns) {
  for (int c = 0; c < columns; c += 8) {
    const U8x8 in = loadU8x8(entering + c);
    const U8x8 out = loadU8x8(leaving + c);
    store(sums + c, subWiden(addWiden(load8(sums + c), in), out));
    store(squares + c, subWiden(addWiden(load8(squares + c), squareWiden(in)), squareWiden(out)));
  }
}

/// Constants of the pixel formula, one vector each.
struct FormulaLanes {
  F32x8 inverseArea;
  F32x8 bias;
  F32x8 strength;
};

inline FormulaLanes formulaLanes(const PixelFormula& formula) {
  return {splat8(formula.inverseArea), splat8(formula.bias), splat8(formula.strength)};
}

/// What may be known of a denominator.
enum Denominator {
  kModest,  ///< 0 or far from the ends of the float range: samples, sums and strengths are integers
  kAny      ///< made of a caller's own constants
};

/// Moves samples towards the mean, the more the smaller their biased variance is against the strength.
template <Denominator kDenominator>
inline U8x8 pulledToMean(U8x8 samples, F32x8 mean, F32x8 biasedVariance, F32x8 strength) {
  const F32x8 numerator = add(mul(toFloat(samples), biasedVariance), mul(mean, strength));
  const F32x8 denominator = add(biasedVariance, strength);
  if constexpr (kDenominator == kModest) {
    return truncToLowBytes(mul(numerator, reciprocalEstimateOfModest(denominator)));
  } else {
    return truncToLowBytes(mul(numerator, reciprocalEstimate(denominator)));
  }
}

/// The pixel formula, see PixelFormula.
template <Denominator kDenominator = kModest>
inline U8x8 smoothedPixels(U8x8 samples, F32x8 sums, F32x8 squares, const FormulaLanes& k) {
  const F32x8 mean = mul(sums, k.inverseArea);
  const F32x8 variance = sub(mul(squares, k.inverseArea), mul(mean, mean));
  return pulledToMean<kDenominator>(samples, mean, add(variance, k.bias), k.strength);
}

/// 8 elements from `index` on, each index clamped to 0 .. last.
template <class T>
inline auto loadClamped(const T* row, std::ptrdiff_t index, std::ptrdiff_t last) {
  if (index >= 0 && index + 7 <= last) return load8(row + index);
  if (index + 7 <= 0) return splat8(row[0]);
  if (index >= last) return splat8(row[last]);
  T elements[8];
  for (int i = 0; i < 8; ++i) {
    const std::ptrdiff_t at = index + i;
    elements[i] = row[at < 0 ? 0 : at > last ? last : at];
  }
  return load8(elements);
}

/// Where the box of a column lies.
enum BoxShift { kCentred = 0, kOneToTheRight = 1 };

/// The sum of the 2h + 1 elements around element -1, shifted, each index clamped to 0 .. last, modulo 2^32.
template <BoxShift kShift, class T>
inline std::uint32_t boxSumBeforeRow(const T* row, int halfSize, std::ptrdiff_t last) {
  const std::uint32_t negative = static_cast<std::uint32_t>(halfSize) + 1U - kShift;
  const std::ptrdiff_t highest = static_cast<std::ptrdiff_t>(halfSize) - 1 + kShift;
  const std::ptrdiff_t reached = highest < last ? highest : last;
  std::uint32_t sum = negative * row[0] + static_cast<std::uint32_t>(highest - reached) * row[last];
  for (std::ptrdiff_t i = 0; i <= reached; ++i)
    sum += row[i];
  return sum;
}

/// What 8 box sums gain on their predecessors.
inline U32x8 boxSteps(U16x8 entering, U16x8 leaving) {
  return differenceWiden(entering, leaving);
}
inline U32x8 boxSteps(U32x8 entering, U32x8 leaving) {
  return sub(entering, leaving);
}

/// Scans column sums into box sums and calls `use8(j, sums, squares)` for columns j .. j + 7, j = 0, 8 ... below
/// `columns`.
///
/// The box of column j is the one of column j - 1 plus column j + h, less column j - h - 1 (or both one further to the
/// right), indices clamped to 0 .. last. Runs of 8 columns at both ends clamp, those between do not need to.
template <BoxShift kShift, class Sum, class Use8>
inline void scanBoxSums(const Sum* sums, const std::uint32_t* squares, std::ptrdiff_t columns, std::ptrdiff_t last,
                        int halfSize, Use8 use8) {
  if (columns <= 0) return;
  const std::ptrdiff_t reach = halfSize <= last ? halfSize : last + 1;  // farther indices clamp alike
  const std::ptrdiff_t toEntering = reach + kShift;
  const std::ptrdiff_t toLeaving = toEntering - 2 * reach - 1;
  U32x8 carriedSum = splat8(boxSumBeforeRow<kShift>(sums, halfSize, last));
  U32x8 carriedSquare = splat8(boxSumBeforeRow<kShift>(squares, halfSize, last));

  const auto scan8 = [&](std::ptrdiff_t j, U32x8 sumSteps, U32x8 squareSteps) __attribute__((always_inline)) {
    const U32x8 boxSums = add(carriedSum, prefixSum(sumSteps));
    const U32x8 boxSquares = add(carriedSquare, prefixSum(squareSteps));
    carriedSum = splatLast(boxSums);
    carriedSquare = splatLast(boxSquares);
    use8(j, boxSums, boxSquares);
  };
  const auto scanClamped8 = [&](std::ptrdiff_t j) {
    scan8(j, boxSteps(loadClamped(sums, j + toEntering, last), loadClamped(sums, j + toLeaving, last)),
          boxSteps(loadClamped(squares, j + toEntering, last), loadClamped(squares, j + toLeaving, last)));
  };

  std::ptrdiff_t j = 0;
  for (; j + toLeaving < 0 && j < columns; j += 8)
    scanClamped8(j);
  for (; j + toEntering + 7 <= last; j += 8) {
    scan8(j, boxSteps(load8(sums + j + toEntering), load8(sums + j + toLeaving)),
          boxSteps(load8(squares + j + toEntering), load8(squares + j + toLeaving)));
  }
  for (; j < columns; j += 8)
    scanClamped8(j);
}

/// See RowLoops::smoothRow, smoothRowAnySums.
template <bool kAnySums>
inline void smoothRow(const std::uint16_t* sums, const std::uint32_t* squares, int columns, const std::uint8_t* source,
                      std::uint8_t* destination, int halfSize, const PixelFormula& formula) {
  const FormulaLanes k = formulaLanes(formula);
  scanBoxSums<kOneToTheRight>(
      sums, squares, columns, columns - 1,
      halfSize, [&](std::ptrdiff_t j, U32x8 boxSums, U32x8 boxSquares) __attribute__((always_inline)) {
        const U8x8 samples = loadU8x8(source + j);
        if constexpr (kAnySums) {
          store(destination + j, smoothedPixels(samples, toFloat(boxSums), toFloat(boxSquares), k));
        } else {
          store(destination + j, smoothedPixels(samples, toFloatBelow2To31(boxSums), toFloatBelow2To31(boxSquares), k));
        }
      });
}

}  // namespace vlvk::VLVK_TARGET
