/// The evening of skin tone: what each sample of chroma becomes. With the means u', v' of chroma and the mean and
/// variance of luma in a box at the resolution of chroma, a pair u, v comes nearer to u', v' by the part
///
///     amount * max(1 - d / (farthest * s), 0)^2 * strength * s / (variance + bias * s + strength * s)
///     d = (u - u')^2 + (v - v')^2
///
/// with bias, strength and s as in pixel_formula.h. The quotient gives way where luma does and stays at its edges. The
/// square leaves alone what differs from its surroundings more than skin does, which is lips, eyes and make-up: they
/// are too large for the box to see their edges, and often as light as skin.
#ifndef VLVK_ROWS_TONE_FORMULA_H
#define VLVK_ROWS_TONE_FORMULA_H

#include "rows/pixel_formula.h"

namespace vlvk {

struct ToneFormula {
  PixelFormula luma;
  float amount;          ///< 0 to 1
  float farthestOfBias;  ///< farthest, in squared levels of chroma, for each unit of bias
};

/// Luma keeps the edges, so chroma can be evened more than luma without a look of plastic: so many times the strength.
inline constexpr float kToneStrength = 16.0F;

/// In limited range: 12 levels. Spots and blotches differ from the skin around them by 3 to 8, lips by 8 to 20.
inline constexpr float kFarthestTone = 12.0F * 12.0F;

}  // namespace vlvk

#endif
