/// Constants of the local-statistics pixel formula.
///
///     m = S * inverseArea                        mean of the box
///     a = Q * inverseArea - m * m + bias         its variance, biased so that the divisor below stays away from 0
///     out = (x * a + m * strength) * estimate(1 / (a + strength))
///
/// in single precision, each operation rounded by itself, the result truncated to an integer whose low 8 bits count.
///
/// With contrast relative to brightness bias and strength are multiplied with a share s first. A picture with a part of
/// the light has that part of every difference, and the square of it of every variance: what is compared with the
/// variance must shrink alike, or features in dim light count as noise. With t the brightness of the box against that
/// of skin in ordinary light, and t of black at least,
///
///     s = min(t * t, 1)
///     t = max(m, 16) / 130                       luma of limited range
///     t = (m * 219 / 255 + 16) / 130             luma of full range
///
/// What is computed is s * bias, out of constants that hold bias and 130 already, and s * strength out of it:
///
///     s * bias = min(max(m * m * dimScale, dimOffset), bias)          limited range
///     s * bias = min(w * w, bias),  w = m * dimScale + dimOffset      full range
///     s * strength = s * bias * strengthOfBias
#ifndef VLVK_ROWS_PIXEL_FORMULA_H
#define VLVK_ROWS_PIXEL_FORMULA_H

namespace vlvk {

/// How contrast is measured: in levels, or against the brightness of the box, in luma of one of the ranges.
enum ContrastRule { kAbsoluteContrast, kRelativeLimited, kRelativeFull };
inline constexpr int kContrastRules = 3;

struct PixelFormula {
  float inverseArea;  ///< 1 / (2h + 1)^2
  float bias;         ///< added to the variance: 120 at strength 0, falling by 0.12 for each unit of strength
  float strength;     ///< weight of the mean
  ContrastRule rule;  ///< the rest counts with relative contrast alone
  float dimScale;
  float dimOffset;
  float strengthOfBias;
};

/// @param halfSize  h of the box, 0 or more; its area is formed without overflow
/// @param level     strength setting, any value: strength is trunc(0.6 * level), saturated; the integer product inside
///                  the bias wraps modulo 2^32
PixelFormula makePixelFormula(int halfSize, int level);

/// The formula for luma of full range, which has 255 levels for 219: the constants, which are compared with a variance,
/// grow by the square of that.
PixelFormula ofFullRange(const PixelFormula& formula);

/// The formula with contrast relative to brightness, of a bias above 0. Where s is 1 it has the result of before, but
/// that for some strengths, not the full one, strengthOfBias cannot give back the strength to its last bit.
PixelFormula withRelativeContrast(const PixelFormula& formula, bool fullRange);

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
