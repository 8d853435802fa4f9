/// Constants of the local-statistics pixel formula.
///
///     m = S * inverseArea                        mean of the box
///     a = Q * inverseArea - m * m + bias         its variance, biased so that the divisor below stays away from 0
///     out = (x * a + m * strength) * estimate(1 / (a + strength))
///
/// in single precision, each operation rounded by itself, the result truncated to an integer whose low 8 bits count.
#ifndef VLVK_ROWS_PIXEL_FORMULA_H
#define VLVK_ROWS_PIXEL_FORMULA_H

namespace vlvk {

struct PixelFormula {
  float inverseArea;  ///< 1 / (2h + 1)^2
  float bias;         ///< added to the variance: 120 at strength 0, falling by 0.12 for each unit of strength
  float strength;     ///< weight of the mean
};

/// @param halfSize  h of the box, 0 or more; its area is formed without overflow
/// @param level     strength setting, any value: strength is trunc(0.6 * level), saturated; the integer product inside
///                  the bias wraps modulo 2^32
PixelFormula makePixelFormula(int halfSize, int level);

/// Whether RowLoops::smoothRow, the fast form with narrow integers, may smooth with boxes of this size and this
/// formula. It may where
///
/// - column sums over 2h + 1 rows of 8-bit samples stay below 2^15, so that their differences fit 16 bits with sign;
/// - box sums, of squares too, stay below 2^31;
/// - bias and strength are large enough that every quotient lies between the sample and the mean, up to the error of
///   the estimate: 0 .. 256.
bool sumsFitFastForm(int halfSize, const PixelFormula& formula);

}  // namespace vlvk

#endif
