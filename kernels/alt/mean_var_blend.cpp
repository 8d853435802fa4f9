/// See mean_var_blend.h.
#include <vlvk/mean_var_blend.h>

#include <cstddef>
#include <cstdint>

#include "base/arm_math.h"
#include "rows/pixel_formula.h"
#include "rows/row_loops.h"

namespace {

/// A pixel past the whole groups: here the variance is formed first, the division is exact, and the result is
/// rounded.
unsigned char blendExactly(unsigned char sample, unsigned int sum, unsigned int square,
                           const vlvk::PixelFormula& formula) {
  const float mean = static_cast<float>(sum) * formula.inverseArea;
  const float meanSquare = static_cast<float>(square) * formula.inverseArea;
  const float biased = (meanSquare - mean * mean) + formula.bias;
  const float numerator = static_cast<float>(sample) * biased + formula.strength * mean;
  const float quotient = numerator / (formula.strength + biased);
  return static_cast<unsigned char>(vlvk::truncSaturate<std::int32_t>(static_cast<double>(quotient) + 0.5));
}

}  // namespace

void Mean_var_Blend(unsigned char* destination, const unsigned char* source, const unsigned int* sums,
                    const unsigned int* squares, int width, int rows, int stride, int radius, int level) {
  const vlvk::PixelFormula formula = vlvk::makePixelFormula(radius, level);
  const int grouped = vlvk::wholeGroups(width);
  for (std::ptrdiff_t y = 0; y < rows; ++y) {
    const unsigned char* in = source + y * stride;
    unsigned char* out = destination + y * stride;
    const unsigned int* rowSums = sums + y * width;
    const unsigned int* rowSquares = squares + y * width;
    vlvk::rowLoops().blendStatistics(in, out, rowSums, rowSquares, grouped, formula);
    for (int x = grouped; x < width; ++x)
      out[x] = blendExactly(in[x], rowSums[x], rowSquares[x], formula);
  }
}
