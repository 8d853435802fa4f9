/// See pixel_formula.h.
#include "rows/pixel_formula.h"

#include <cmath>
#include <initializer_list>

#include <cstdint>

#include "base/arm_math.h"

namespace vlvk {

namespace {

/// Levels of limited range: black, and the skin of a face in ordinary light.
constexpr float kBlack = 16.0F;
constexpr float kBright = 130.0F;

/// A number whose product with `b` is `a`, to the last bit if there is one.
float quotient(float a, float b) {
  const float nearest = a / b;
  for (const float other : {nearest, std::nextafter(nearest, 0.0F), std::nextafter(nearest, 2.0F * nearest)}) {
    if (other * b == a) return other;
  }
  return nearest;
}

}  // namespace

PixelFormula makePixelFormula(int halfSize, int level) {
  // A double holds the side exactly and rounds the product once, like an exact integer converted afterwards.
  const double side = 2.0 * halfSize + 1.0;
  const auto strength = truncSaturate<std::int32_t>(level * 0.6);
  const std::int32_t scaledBias = wrapSub(600000, wrapMul(600, strength));
  return {.inverseArea = static_cast<float>(1.0 / (side * side)),
          .bias = static_cast<float>((static_cast<double>(scaledBias) / 1000.0) * 0.2),
          .strength = static_cast<float>(strength),
          .rule = kAbsoluteContrast,
          .dimScale = 0.0F,
          .dimOffset = 0.0F,
          .strengthOfBias = 0.0F};
}

PixelFormula ofFullRange(const PixelFormula& formula) {
  constexpr float kLevels = 255.0F / 219.0F;
  PixelFormula full = formula;
  full.bias *= kLevels * kLevels;
  full.strength *= kLevels * kLevels;
  return full;
}

PixelFormula withRelativeContrast(const PixelFormula& formula, bool fullRange) {
  PixelFormula relative = formula;
  relative.rule = fullRange ? kRelativeFull : kRelativeLimited;
  if (fullRange) {
    const float root = std::sqrt(formula.bias);
    relative.dimScale = root * (219.0F / (255.0F * kBright));
    relative.dimOffset = root * (kBlack / kBright);
  } else {
    relative.dimScale = formula.bias / (kBright * kBright);
    relative.dimOffset = relative.dimScale * (kBlack * kBlack);
  }
  relative.strengthOfBias = quotient(formula.strength, formula.bias);
  return relative;
}

bool sumsFitFastForm(int halfSize, const PixelFormula& formula) {
  constexpr int kLargestHalfSize = 63;  // (2 * 63 + 1) * 255 = 32385
  constexpr float kLeastShare = (kBlack / kBright) * (kBlack / kBright);
  const float leastBias = formula.rule == kAbsoluteContrast ? formula.bias : formula.bias * kLeastShare;
  return halfSize <= kLargestHalfSize && leastBias >= 1.0F && formula.strength >= 0.0F;
}

}  // namespace vlvk
