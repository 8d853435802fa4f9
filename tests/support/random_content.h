/// Pictures to test with: random ones and those that random ones never are. The same seed gives the same bytes
/// everywhere.
#ifndef VLVK_TESTS_SUPPORT_RANDOM_CONTENT_H
#define VLVK_TESTS_SUPPORT_RANDOM_CONTENT_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <random>

namespace testing_support {

/// Numbers that do not depend on the standard library's distributions, which differ between implementations.
class Random {
 public:
  explicit Random(std::uint32_t seed) : engine_(seed) {}

  std::uint32_t bits() { return static_cast<std::uint32_t>(engine_()); }
  std::uint8_t byte() { return static_cast<std::uint8_t>(bits() >> 24); }
  int between(int low, int high) { return low + static_cast<int>(bits() % static_cast<std::uint32_t>(high - low + 1)); }

  template <typename T>
  T pick(std::initializer_list<T> choices) {
    return choices.begin()[bits() % choices.size()];
  }

 private:
  std::mt19937 engine_;
};

enum class Content {
  kNoise,         ///< every byte any value
  kFaintNoise,    ///< a few grey levels around a random one: box variance near 0
  kFlat,          ///< one random value
  kBlack,         ///< 0
  kWhite,         ///< 255: the largest sums
  kGradient,      ///< a slope in both directions
  kEdges,         ///< areas of 0 and 255 with random borders
  kCheckerboard,  ///< 0 and 255 by turns: the largest variance
  kSparks,        ///< 255 here and there in 0: samples far from a mean with little variance
  kSkinPairs,     ///< byte pairs around the skin centre 155, 110, at all distances that matter
};

inline constexpr std::initializer_list<Content> kLumaContents = {
    Content::kNoise, Content::kFaintNoise, Content::kFlat,  Content::kBlack,
    Content::kWhite, Content::kGradient,   Content::kEdges, Content::kCheckerboard};

/// Fills width bytes of each row; what lies between the rows stays.
inline void fill(Content content, std::uint8_t* data, int width, int height, int stride, Random& random) {
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
      case Content::kSparks:
        return random.between(0, 149) == 0 ? 255 : 0;
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

#endif
