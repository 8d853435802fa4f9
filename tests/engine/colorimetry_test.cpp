/// How near to each other frames of all matrices and ranges are: a picture with skin, as cameras of each kind would
/// deliver it.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/engine/makeup_rig.h"

namespace makeup_rig {
namespace {

constexpr int kSide = 256;

/// Red, green and blue of a lit face with texture before a background.
std::array<double, 3> portraitAt(int x, int y) {
  const double dx = (x - 120) / 85.0;
  const double dy = (y - 130) / 105.0;
  const double inside = 1 / (1 + std::exp(14 * (dx * dx + dy * dy - 1)));
  const double face = inside * (0.75 + 0.001 * x - 0.15 * dy * dy + 0.03 * std::sin(x * 0.9) * std::cos(y * 1.1));
  const double wall = (1 - inside) * (0.9 + 0.1 * std::sin(x * 0.05 + y * 0.03));
  return {face * 196 + wall * 90, face * 150 + wall * 105, face * 130 + wall * 120};
}

/// The portrait, or all levels of grey: rounded, chroma of upper left pixels.
void fill(const Picture& picture, bool grey) {
  const double kr = picture.frame.matrix == VLVK_BT709 ? 0.2126 : 0.299;
  const double kb = picture.frame.matrix == VLVK_BT709 ? 0.0722 : 0.114;
  const bool full = picture.frame.range == VLVK_FULL;
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x) {
      const auto [r, g, b] = grey ? std::array{1.0 * x, 1.0 * x, 1.0 * x} : portraitAt(x, y);
      const double luma = kr * r + (1 - kr - kb) * g + kb * b;
      picture.planes[0].row(y)[x] = static_cast<Byte>(std::lround(full ? luma : 16 + luma * 219 / 255));
      Byte* pair = picture.planes[1].row(y / 2) + x / 2 * 2;
      const double scale = full ? 1 : 224.0 / 255;
      if (x % 2 + y % 2 > 0) continue;
      pair[0] = static_cast<Byte>(std::lround(128 + scale * (b - luma) / (2 - 2 * kb)));
      pair[1] = static_cast<Byte>(std::lround(128 + scale * (r - luma) / (2 - 2 * kr)));
    }
  }
}

double decibels(const Picture& a, const Picture& b) {
  double sum = 0;
  double count = 0;
  for (std::size_t p = 0; p < 2; ++p) {
    const int bytes = static_cast<int>(a.planes[p].memory.size());  // without anything between rows
    for (int i = 0; i < bytes; ++i)
      sum += std::pow(a.planes[p].row(0)[i] - b.planes[p].row(0)[i], 2);
    count += bytes;
  }
  return sum > 0 ? 10 * std::log10(255.0 * 255 * count / sum) : INFINITY;
}

TEST(Colorimetry, OfAFrameDoesNotShowInThePicture) {
  for (const int whitening : {0, 50}) {
    const Engine engine(settingsOf(whitening, 1000, 20));
    const Picture results[] = {{VLVK_RGB, 0, kSide, kSide}, {VLVK_RGB, 0, kSide, kSide}};
    for (int colors = 0; colors < 4; ++colors) {
      const Picture source(VLVK_NV12, colors, kSide, kSide);
      fill(source, false);
      EXPECT_EQ(engine.process(source, results[colors > 0]), VLVK_OK);
      EXPECT_GE(decibels(results[0], results[colors > 0]), whitening > 0 ? 43.5 : 44) << colors;
    }
  }
}

// To each colorimetry, or to pixels, and back.
TEST(Colorimetry, SurvivesANeutralTrip) {
  const Engine neutral(settingsOf(0, 0, 0));
  for (int i = 0; i < 4 * 5 * 2; ++i) {
    const int colors = i % 4;
    const int way = i / 4 % 5;
    const bool grey = i >= 20;
    const Picture there(way < 4 ? VLVK_NV12 : VLVK_RGBA, way % 4, kSide, kSide);
    const Picture back(VLVK_NV12, colors, kSide, kSide);
    const Picture source(VLVK_NV12, colors, kSide, kSide);
    fill(source, grey);
    EXPECT_EQ(neutral.process(source, there), VLVK_OK);
    EXPECT_EQ(neutral.process(there, back), VLVK_OK);
    const bool keepsLevels = grey && colors % 2 == 1 && (way == 4 || way % 2 == 1);
    EXPECT_GE(decibels(source, back), keepsLevels ? INFINITY : 46) << colors << " by way of " << way;
  }
}

}  // namespace
}  // namespace makeup_rig
