/// Row loops of the smoothing filter: column sums, pixel formula. Builds on box_scan_rows.h. Included by
/// rows/all_rows.h.

#include <cstddef>
#include <cstdint>

#include "rows/pixel_formula.h"

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
  for (; columns >= 16; columns -= 16) {
    const U8x16 in = loadU8x16(entering);
    entering += 16;
    const U8x16 out = loadU8x16(leaving);
    leaving += 16;
    slideSums16(sums, in, out);
    sums += 16;
    slideSquares16(squares, in, out);
    squares += 16;
  }
  if (columns == 0) return;
  const U8x8 in = loadU8x8(entering);
  const U8x8 out = loadU8x8(leaving);
  store(sums, addDifference(load8(sums), in, out));
  store(squares, addSquareDifference(load8(squares), in, out));
}

/// Constants of the pixel formula, one vector each.
struct FormulaLanes {
  F32x8 inverseArea;
  F32x8 bias;
  F32x8 strength;
  F32x8 dimScale;
  F32x8 dimOffset;
  F32x8 strengthOfBias;
};

inline FormulaLanes formulaLanes(const PixelFormula& formula) {
  return {splat8(formula.inverseArea), splat8(formula.bias),      splat8(formula.strength),
          splat8(formula.dimScale),    splat8(formula.dimOffset), splat8(formula.strengthOfBias)};
}

/// What is known of a denominator before it is computed.
enum Denominator {
  kNormalRange,  ///< 0, or a normal number far below 2^126: bias is 1 or more, or all are integers
  kAny           ///< anything: made of a caller's own constants
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

/// What bias and strength count where the mean and its square are these.
struct LitConstants {
  F32x8 bias;
  F32x8 strength;
};

template <ContrastRule kRule>
inline LitConstants litConstants(F32x8 mean, F32x8 meanSquare, const FormulaLanes& k) {
  if constexpr (kRule == kAbsoluteContrast) {
    return {k.bias, k.strength};
  } else if constexpr (kRule == kRelativeLimited) {
    const F32x8 bias = min(max(mul(meanSquare, k.dimScale), k.dimOffset), k.bias);
    return {bias, mul(bias, k.strengthOfBias)};
  } else {
    const F32x8 root = addProduct(k.dimOffset, mean, k.dimScale);
    const F32x8 bias = min(mul(root, root), k.bias);
    return {bias, mul(bias, k.strengthOfBias)};
  }
}

/// The pixel formula as far as its quotient, see PixelFormula.
template <ContrastRule kRule>
inline Quotient smoothed(F32x8 samples, F32x8 sums, F32x8 squares, const FormulaLanes& k) {
  const F32x8 mean = mul(sums, k.inverseArea);
  const F32x8 variance = subProduct(mul(squares, k.inverseArea), mean, mean);
  if constexpr (kRule == kAbsoluteContrast) {
    return pulledToMean(samples, mean, add(variance, k.bias), k.strength);  // copies of both would go through memory
  } else {
    const LitConstants lit = litConstants<kRule>(mean, mul(mean, mean), k);
    return pulledToMean(samples, mean, add(variance, lit.bias), lit.strength);
  }
}

template <Denominator kDenominator = kNormalRange>
inline F32x8 divided(const Quotient& quotient) {
  if constexpr (kDenominator == kNormalRange) {
    return mul(quotient.numerator, reciprocalEstimateOfNormal(quotient.denominator));
  } else {
    return mul(quotient.numerator, reciprocalEstimate(quotient.denominator));
  }
}

template <ContrastRule kRule = kAbsoluteContrast, Denominator kDenominator = kNormalRange>
inline U8x8 smoothedPixels(U8x8 samples, F32x8 sums, F32x8 squares, const FormulaLanes& k) {
  return truncToLowBytes(divided<kDenominator>(smoothed<kRule>(toFloat(samples), sums, squares, k)));
}

/// See RowLoops::smoothRowAnySums.
template <ContrastRule kRule>
inline void smoothRowAnySums(const std::uint16_t* sums, const std::uint32_t* squares, int columns,
                             const std::uint8_t* source, std::uint8_t* destination, int halfSize,
                             const PixelFormula& formula) {
  const FormulaLanes k = formulaLanes(formula);
  scanBoxSums<kOneToTheRight>(
      sums, squares, columns, columns - 1,
      halfSize, [&](std::ptrdiff_t j, U32x8 boxSums, U32x8 boxSquares) __attribute__((always_inline)) {
        store(destination + j, smoothedPixels<kRule>(loadU8x8(source + j), toFloat(boxSums), toFloat(boxSquares), k));
      });
}

/// Quotients of a run, in the same order.
struct QuotientRun {
  float numerators[BoxRun::kColumns];
  float denominators[BoxRun::kColumns];
};

/// Smooths a run of columns, a multiple of 16.
template <ContrastRule kRule>
inline void smoothRun(const BoxRun& run, const std::uint8_t* source, std::uint8_t* destination, int columns,
                      const FormulaLanes& k) {
  QuotientRun quotients;
  const auto quotientOf = [&](F32x8 samples, int i) __attribute__((always_inline)) {
    const Quotient quotient =
        smoothed<kRule>(samples, toFloatBelow2To31(load8(run.sums + i)), toFloatBelow2To31(load8(run.squares + i)), k);
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

/// Smooths 16 columns.
template <ContrastRule kRule>
VLVK_INLINE U8x16 smoothedPixels(U8x16 samples, const PairedBoxes& boxes, const FormulaLanes& k) {
  const auto pixels = [&](F32x8 x, U32x8 sums, U32x8 squares) __attribute__((always_inline)) {
    return divided(smoothed<kRule>(x, toFloatBelow2To31(sums), toFloatBelow2To31(squares), k));
  };
  return truncToLowBytes(pixels(toFloatEven(samples), boxes.sums.even, boxes.squares.even),
                         pixels(toFloatOdd(samples), boxes.sums.odd, boxes.squares.odd));
}

/// Smooths inside columns from the first one on, in the target's way. Returns the first column that is not done.
template <ContrastRule kRule, class Scan>
VLVK_INLINE std::ptrdiff_t smoothInside(Scan& scan, std::ptrdiff_t first, const std::uint8_t* source,
                                        std::uint8_t* destination, const FormulaLanes& k) {
  const auto use16 = [&](std::ptrdiff_t j, const PairedBoxes& boxes) __attribute__((always_inline)) {
    store(destination + j, smoothedPixels<kRule>(loadU8x16(source + j), boxes, k));
  };
  if constexpr (kInsideColumns == kInPairsOneStepLate) {
    return scan.pairsOneStepLate(first, use16);
  } else if constexpr (kInsideColumns == kInPairs) {
    return scan.pairs(first, use16);
  } else {
    return scan.runs(first, [&](std::ptrdiff_t j, int count, const BoxRun& run) {
      smoothRun<kRule>(run, source + j, destination + j, count, k);
    });
  }
}

/// See RowLoops::smoothRow.
template <ContrastRule kRule>
inline void smoothRow(const std::uint16_t* sums, const std::uint32_t* squares, int columns, const std::uint8_t* source,
                      std::uint8_t* destination, int halfSize, const PixelFormula& formula) {
  const FormulaLanes k = formulaLanes(formula);
  scanBoxSums<kOneToTheRight>(
      sums, squares, columns, columns - 1, halfSize,
      [&](std::ptrdiff_t j, U32x8 boxSums, U32x8 boxSquares) __attribute__((always_inline)) {
        store(destination + j, smoothedPixels<kRule>(loadU8x8(source + j), toFloatBelow2To31(boxSums),
                                                     toFloatBelow2To31(boxSquares), k));
      },
      [&](auto& scan, std::ptrdiff_t first)
          __attribute__((always_inline)) { return smoothInside<kRule>(scan, first, source, destination, k); });
}

}  // namespace vlvk::VLVK_TARGET
