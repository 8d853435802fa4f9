/// Row loops of the smoothing filter: column sums, box sums, pixel formula. Included by targets/all_rows.h.

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "kernels/pixel_formula.h"
#include "simd/inline.h"

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
  for (; columns > 0; columns -= 8) {
    const U8x8 in = loadU8x8(entering);
    entering += 8;
    const U8x8 out = loadU8x8(leaving);
    leaving += 8;
    store(sums, addDifference(load8(sums), in, out));
    sums += 8;
    store(squares, addSquareDifference(load8(squares), in, out));
    squares += 8;
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

/// The quotient that becomes a smoothed pixel.
struct Quotient {
  F32x8 numerator;
  F32x8 denominator;
};

/// Samples moved towards the mean, the more the smaller their biased variance is against the strength.
inline Quotient pulledToMean(F32x8 samples, F32x8 mean, F32x8 biasedVariance, F32x8 strength) {
  return {addProduct(mul(samples, biasedVariance), mean, strength), add(biasedVariance, strength)};
}

/// The pixel formula as far as its quotient, see PixelFormula.
inline Quotient smoothed(F32x8 samples, F32x8 sums, F32x8 squares, const FormulaLanes& k) {
  const F32x8 mean = mul(sums, k.inverseArea);
  const F32x8 variance = subProduct(mul(squares, k.inverseArea), mean, mean);
  return pulledToMean(samples, mean, add(variance, k.bias), k.strength);
}

template <Denominator kDenominator = kModest>
inline F32x8 divided(const Quotient& quotient) {
  if constexpr (kDenominator == kModest) {
    return mul(quotient.numerator, reciprocalEstimateOfModest(quotient.denominator));
  } else {
    return mul(quotient.numerator, reciprocalEstimate(quotient.denominator));
  }
}

template <Denominator kDenominator = kModest>
inline U8x8 smoothedPixels(U8x8 samples, F32x8 sums, F32x8 squares, const FormulaLanes& k) {
  return truncToLowBytes(divided<kDenominator>(smoothed(toFloat(samples), sums, squares, k)));
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

/// Sums for 16 columns, even and odd ones apart.
struct PairedSums {
  U32x8 even;
  U32x8 odd;
};

inline PairedSums sumsOfPairs(U32x8 carried, const PairSteps& steps) {
  const U32x8 odd = add(carried, prefixSum(steps.pair));
  return {sub(odd, steps.odd), odd};
}

/// Box sums of a run of columns, even and odd ones apart: 8 even columns, the 8 odd ones among them, 8 even ones ...
struct BoxRun {
  static constexpr int kColumns = 256;
  std::uint32_t sums[kColumns];
  std::uint32_t squares[kColumns];
};

/// Quotients of a run, in the same order.
struct QuotientRun {
  float numerators[BoxRun::kColumns];
  float denominators[BoxRun::kColumns];
};

inline void storePaired(std::uint32_t* to, const PairedSums& sums) {
  store(to, sums.even);
  store(to + 8, sums.odd);
}

/// What scanBoxSums takes for a user of runs where there is none.
struct NoRuns {};

/// Scans column sums into box sums and calls `use8(j, sums, squares)` for columns j .. j + 7, j = 0, 8 ... below
/// `columns`.
///
/// The box of column j is the one of column j - 1 plus column j + h, less column j - h - 1 (or both one further to the
/// right), indices clamped to 0 .. last. Columns at both ends clamp, those between do not need to; where
/// `useRun(j, columns, run)` is given, it gets those, a multiple of 16 at a time (differences of column sums must fit
/// 16 bits then). Sums and what is made of them are long chains of dependent operations: in loops of their own, more of
/// them run side by side.
template <BoxShift kShift, class Sum, class Use8, class UseRun = NoRuns>
VLVK_INLINE void scanBoxSums(const Sum* sums, const std::uint32_t* squares, std::ptrdiff_t columns, std::ptrdiff_t last,
                             int halfSize, Use8 use8, UseRun useRun = {}) {
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
  const auto scanClamped8 = [&](std::ptrdiff_t j) __attribute__((always_inline)) {
    scan8(j, boxSteps(loadClamped(sums, j + toEntering, last), loadClamped(sums, j + toLeaving, last)),
          boxSteps(loadClamped(squares, j + toEntering, last), loadClamped(squares, j + toLeaving, last)));
  };

  std::ptrdiff_t j = 0;
  for (; j + toLeaving < 0 && j < columns; j += 8)
    scanClamped8(j);
  if constexpr (kRunsPay && !std::is_same_v<UseRun, NoRuns>) {
    BoxRun run;
    while (j + toEntering + 15 <= last) {
      int count = 0;
      for (; j + toEntering + 15 <= last && count < BoxRun::kColumns; j += 16, count += 16) {
        const PairedSums boxSums = sumsOfPairs(carriedSum, pairSteps(sums + j + toEntering, sums + j + toLeaving));
        const PairedSums boxSquares =
            sumsOfPairs(carriedSquare, pairSteps(squares + j + toEntering, squares + j + toLeaving));
        carriedSum = splatLast(boxSums.odd);
        carriedSquare = splatLast(boxSquares.odd);
        storePaired(run.sums + count, boxSums);
        storePaired(run.squares + count, boxSquares);
      }
      useRun(j - count, count, run);
    }
  }
  const Sum* enteringSums = sums + j + toEntering;
  const Sum* leavingSums = sums + j + toLeaving;
  const std::uint32_t* enteringSquares = squares + j + toEntering;
  const std::uint32_t* leavingSquares = squares + j + toLeaving;
  for (; j + toEntering + 7 <= last; j += 8) {
    scan8(j, boxSteps(load8(enteringSums), load8(leavingSums)),
          boxSteps(load8(enteringSquares), load8(leavingSquares)));
    enteringSums += 8;
    leavingSums += 8;
    enteringSquares += 8;
    leavingSquares += 8;
  }
  for (; j < columns; j += 8)
    scanClamped8(j);
}

/// See RowLoops::smoothRowAnySums.
inline void smoothRowAnySums(const std::uint16_t* sums, const std::uint32_t* squares, int columns,
                             const std::uint8_t* source, std::uint8_t* destination, int halfSize,
                             const PixelFormula& formula) {
  const FormulaLanes k = formulaLanes(formula);
  scanBoxSums<kOneToTheRight>(
      sums, squares, columns, columns - 1,
      halfSize, [&](std::ptrdiff_t j, U32x8 boxSums, U32x8 boxSquares) __attribute__((always_inline)) {
        store(destination + j, smoothedPixels(loadU8x8(source + j), toFloat(boxSums), toFloat(boxSquares), k));
      });
}

/// Smooths a run of columns, a multiple of 16.
inline void smoothRun(const BoxRun& run, const std::uint8_t* source, std::uint8_t* destination, int columns,
                      const FormulaLanes& k) {
  QuotientRun quotients;
  const auto quotientOf = [&](F32x8 samples, int i) __attribute__((always_inline)) {
    const Quotient quotient =
        smoothed(samples, toFloatBelow2To31(load8(run.sums + i)), toFloatBelow2To31(load8(run.squares + i)), k);
    store(quotients.numerators + i, quotient.numerator);
    store(quotients.denominators + i, quotient.denominator);
  };
  const auto pixelsAt = [&](int i) __attribute__((always_inline)) {
    return divided({load8(quotients.numerators + i), load8(quotients.denominators + i)});
  };
  for (int i = 0; i < columns; i += 16) {
    const U8x16 samples = loadU8x16(source + i);
    quotientOf(toFloatEven(samples), i);
    quotientOf(toFloatOdd(samples), i + 8);
  }
  for (int i = 0; i < columns; i += 16)
    store(destination + i, truncToLowBytes(pixelsAt(i), pixelsAt(i + 8)));
}

/// See RowLoops::smoothRow.
inline void smoothRow(const std::uint16_t* sums, const std::uint32_t* squares, int columns, const std::uint8_t* source,
                      std::uint8_t* destination, int halfSize, const PixelFormula& formula) {
  const FormulaLanes k = formulaLanes(formula);
  scanBoxSums<kOneToTheRight>(
      sums, squares, columns, columns - 1, halfSize,
      [&](std::ptrdiff_t j, U32x8 boxSums, U32x8 boxSquares) __attribute__((always_inline)) {
        store(destination + j,
              smoothedPixels(loadU8x8(source + j), toFloatBelow2To31(boxSums), toFloatBelow2To31(boxSquares), k));
      },
      [&](std::ptrdiff_t j, int count, const BoxRun& run)
          __attribute__((always_inline)) { smoothRun(run, source + j, destination + j, count, k); });
}

}  // namespace vlvk::VLVK_TARGET
