/// See random_content.h.
#include "tests/support/random_content.h"

#include <algorithm>
#include <cstddef>

namespace testing_support {

void fill(Content content, std::uint8_t* data, int width, int height, int stride, Random& random) {
  const int base = random.byte();
  const int slopeX = random.between(-9, 9);
  const int slopeY = random.between(-9, 9);
  const int edgeX = random.between(0, std::max(width, 0));
  const int edgeY = random.between(0, std::max(height, 0));
  const auto value = [&](int x, int y) -> int {
    switch (content) {
      case Content::kFaintNoise:
        return base + random.between(-2, 2);
      case Content::kFlat:
        return base;
      case Content::kBlack:
        return 0;
      case Content::kWhite:
        return 255;
      case Content::kGradient:
        return base + x * slopeX / 4 + y * slopeY / 4;
      case Content::kEdges:
        return (x < edgeX) != (y < edgeY) ? 255 : 0;
      case Content::kCheckerboard:
        return (x + y) % 2 == 0 ? 255 : 0;
      case Content::kSkinPairs:
        return (x % 2 == 0 ? 155 : 110) + random.between(-70, 70);
      default:
        return random.byte();
    }
  };
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x)
      data[static_cast<std::ptrdiff_t>(y) * stride + x] = static_cast<std::uint8_t>(value(x, y));
  }
}

}  // namespace testing_support
