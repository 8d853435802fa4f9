/// See random_content.h.
#include "tests/support/random_content.h"

#include <cstddef>

namespace testing_support {

void fill(Content content, std::uint8_t* data, int width, int height, int stride, Random& random) {
  const int base = random.byte();
  const int slopeX = random.between(-9, 9);
  const int slopeY = random.between(-9, 9);
  const int edgeX = random.between(0, width > 0 ? width : 0);
  const int edgeY = random.between(0, height > 0 ? height : 0);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      int value = 0;
      switch (content) {
        case Content::kNoise:
          value = random.byte();
          break;
        case Content::kFaintNoise:
          value = base + random.between(-2, 2);
          break;
        case Content::kFlat:
          value = base;
          break;
        case Content::kBlack:
          value = 0;
          break;
        case Content::kWhite:
          value = 255;
          break;
        case Content::kGradient:
          value = base + x * slopeX / 4 + y * slopeY / 4;
          break;
        case Content::kEdges:
          value = (x < edgeX) != (y < edgeY) ? 255 : 0;
          break;
        case Content::kCheckerboard:
          value = (x + y) % 2 == 0 ? 255 : 0;
          break;
        case Content::kSkinPairs:
          value = (x % 2 == 0 ? 155 : 110) + random.between(-70, 70);
          break;
      }
      data[static_cast<std::ptrdiff_t>(y) * stride + x] = static_cast<std::uint8_t>(value);
    }
  }
}

}  // namespace testing_support
