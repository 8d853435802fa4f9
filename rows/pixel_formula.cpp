/// See pixel_formula.h.
#include "rows/pixel_formula.h"

#include <cstdint>

#include "base/arm_math.h"

namespace vlvk {

PixelFormula makePixelFormula(int halfSize, int level) {
  // A double holds the side exactly and rounds the product once, like an exact integer converted afterwards.
  const double side = 2.0 * halfSize + 1.0;
  const auto strength = truncSaturate<std::int32_t>(level * 0.6);
  const std::int32_t scaledBias = wrapSub(600000, wrapMul(600, strength));
  return {.inverseArea = static_cast<float>(1.0 / (side * side)),
          .bias = static_cast<float>((static_cast<double>(scaledBias) / 1000.0) * 0.2),
          .strength = static_cast<float>(strength)};
}

bool sumsFitFastForm(int halfSize, const PixelFormula& formula) {
  constexpr int kLargestHalfSize = 63;  // (2 * 63 + 1) * 255 = 32385
  return halfSize <= kLargestHalfSize && formula.bias >= 1.0F && formula.strength >= 0.0F;
}

}  // namespace vlvk
