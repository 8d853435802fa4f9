/// See yuv_matrix.h.
#include "rows/yuv_matrix.h"

#include <cmath>
#include <utility>

namespace vlvk {

namespace {

/// Luma weights of red and blue, and what the samples of a range are multiplied with.
struct Definition {
  double red;
  double blue;
  double lumaScale;
  double chromaScale;

  explicit Definition(Colorimetry colors)
      : red(isBt709(colors) ? 0.2126 : 0.299),
        blue(isBt709(colors) ? 0.0722 : 0.114),
        lumaScale(lumaLevels(colors)),
        chromaScale(chromaLevels(colors)) {}

  double green() const { return 1.0 - red - blue; }
};

std::int32_t fixedPoint(double weight) {
  return static_cast<std::int32_t>(std::floor(weight * (1 << kYuvMatrixBits) + 0.5));
}

}  // namespace

YuvMatrix makeYuvMatrix(Colorimetry from, ChromaOrder fromOrder, Colorimetry to, ChromaOrder toOrder) {
  const Definition a(from);
  const Definition b(to);
  // Red and blue less luma, of a unit of V and of U; what green lacks makes luma come out right.
  const double redOfV = 2.0 * (1.0 - a.red);
  const double blueOfU = 2.0 * (1.0 - a.blue);
  const double lumaOfV = redOfV * (b.red - b.green() * a.red / a.green());
  const double lumaOfU = blueOfU * (b.blue - b.green() * a.blue / a.green());
  const double uOfBlue = 0.5 / (1.0 - b.blue);
  const double vOfRed = 0.5 / (1.0 - b.red);
  const double toLuma = b.lumaScale / a.chromaScale;
  const double toChroma = b.chromaScale / a.chromaScale;

  double ofU[3] = {lumaOfU * toLuma, (blueOfU - lumaOfU) * uOfBlue * toChroma, -lumaOfU * vOfRed * toChroma};
  double ofV[3] = {lumaOfV * toLuma, -lumaOfV * uOfBlue * toChroma, (redOfV - lumaOfV) * vOfRed * toChroma};
  if (fromOrder == kVThenU) std::swap(ofU, ofV);
  const int first = toOrder == kUThenV ? 1 : 2;
  const int second = 3 - first;
  return {.luma = fixedPoint(b.lumaScale / a.lumaScale),
          .lumaOfFirst = fixedPoint(ofU[0]),
          .lumaOfSecond = fixedPoint(ofV[0]),
          .firstOfFirst = fixedPoint(ofU[first]),
          .firstOfSecond = fixedPoint(ofV[first]),
          .secondOfFirst = fixedPoint(ofU[second]),
          .secondOfSecond = fixedPoint(ofV[second]),
          .lumaOffset = lumaOffset(from),
          .newLumaOffset = lumaOffset(to)};
}

}  // namespace vlvk
