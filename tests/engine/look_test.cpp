/// What is left of a portrait: the same share of skin, hair and features whatever the light and the size, and lips
/// their colour. Linked with the program, which brings the means to read the sample.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <numbers>
#include <numeric>
#include <vector>

#include <vlvk/makeup.h>
#include "tests/tools/tool_support.h"

namespace vlvk::tool_test {
namespace {

struct Plane {
  int width, height;
  std::vector<double> samples;

  Plane(int columns, int rows) : width(columns), height(rows), samples(static_cast<std::size_t>(columns) * rows) {}
  double& at(int x, int y) { return samples[static_cast<std::size_t>(y) * width + x]; }
  const double& at(int x, int y) const { return samples[static_cast<std::size_t>(y) * width + x]; }
};

double lanczos3(double x) {
  const double angle = x * std::numbers::pi;
  return x == 0 ? 1 : std::sin(angle) * std::sin(angle / 3) * 3 / (angle * angle);
}

double gaussian(double x) {
  return std::exp(-x * x / 2);
}

/// The rows of a plane as columns of `count` samples, each a mean by the kernel.
Plane filteredColumns(const Plane& from, int count, double (*kernel)(double), double reach, double spread) {
  Plane to(from.height, count);
  for (int i = 0; i < count; ++i) {
    const double centre = (i + 0.5) * from.width / count;
    const int first = std::max(0, static_cast<int>(centre - reach * spread + 0.5));
    const int last = std::min(from.width, static_cast<int>(centre + reach * spread + 0.5));
    std::vector<double> weights;
    for (int x = first; x < last; ++x)
      weights.push_back(kernel((x + 0.5 - centre) / spread));
    const double total = std::accumulate(weights.begin(), weights.end(), 0.0);
    for (int y = 0; y < from.height; ++y)
      to.at(y, i) = std::inner_product(weights.begin(), weights.end(), &from.at(first, y), 0.0) / total;
  }
  return to;
}

Plane filtered(const Plane& from, int width, int height, double (*kernel)(double), double reach, double spread) {
  return filteredColumns(filteredColumns(from, width, kernel, reach, spread), height, kernel, reach, spread);
}

constexpr int kSide = 512;  // of the sample

/// Rectangles of the sample. Of texture what counts is luma less its Gaussian.
struct Region {
  const char* name;
  bool isTexture;
  int left, top, right, bottom;
};
enum { kForehead, kLeftCheek, kRightCheek, kLeftEye, kRightEye, kMouth, kHair };
constexpr Region kRegions[] = {{"forehead", true, 207, 83, 248, 95},      {"left cheek", true, 188, 112, 206, 130},
                               {"right cheek", true, 247, 113, 264, 132}, {"left eye", false, 192, 95, 211, 107},
                               {"right eye", false, 236, 97, 257, 109},   {"mouth", false, 202, 138, 245, 157},
                               {"hair", true, 205, 50, 285, 78}};

struct Moments {
  double mean, deviation;
};

Moments momentsOf(const Plane& plane, const Region& region) {
  const auto at = [&](int i) { return static_cast<int>(std::lround(1.0 * i * plane.width / kSide)); };
  double count = 0, sum = 0, squares = 0;
  for (int y = at(region.top); y < at(region.bottom); ++y) {
    for (int x = at(region.left); x < at(region.right); ++x, ++count) {
      sum += plane.at(x, y);
      squares += plane.at(x, y) * plane.at(x, y);
    }
  }
  return {sum / count, std::sqrt(squares / count - sum / count * (sum / count))};
}

std::uint8_t toByte(double x) {
  return static_cast<std::uint8_t>(std::clamp(std::floor(x + 0.5), 0.0, 255.0));
}

/// The sample with a share of its light, in linear light, then scaled.
Image makePortrait(double light, int side) {
  const Image sample = readPng(VLVK_SAMPLES "/portrait.png");
  Image image{side, side, Bytes(std::size_t{4} * side * side, 255)};
  for (std::size_t c = 0; c < 3; ++c) {
    Plane channel(kSide, kSide);
    for (std::size_t i = 0; i < channel.samples.size(); ++i) {
      const double x = sample.pixels[4 * i + c] / 255.0;
      const double lit = light * (x <= 0.04045 ? x / 12.92 : std::pow((x + 0.055) / 1.055, 2.4));
      channel.samples[i] = toByte(255 * (lit <= 0.0031308 ? lit * 12.92 : 1.055 * std::pow(lit, 1 / 2.4) - 0.055));
    }
    if (side != kSide) channel = filtered(channel, side, side, lanczos3, 3, std::max(1.0, 1.0 * kSide / side));
    for (std::size_t i = 0; i < channel.samples.size(); ++i)
      image.pixels[4 * i + c] = toByte(channel.samples[i]);
  }
  return image;
}

Image beautified(Image image, const VlvkSettings& settings) {
  const VlvkFrame frame = {sizeof frame,          VLVK_RGBA,        0, 0, image.width, image.height,
                           {image.pixels.data()}, {4 * image.width}};
  VlvkMakeup* makeup = nullptr;
  EXPECT_EQ(vlvkMakeupCreate(&makeup, &settings), VLVK_OK);
  EXPECT_EQ(vlvkMakeupProcess(makeup, &frame, &frame, nullptr), VLVK_OK);
  vlvkMakeupDestroy(makeup);
  return image;
}

/// A weighted sum of the channels in the upper part, where the face is.
Plane planeOf(const Image& image, double red, double green, double blue) {
  Plane sums(image.width, image.width * 2 / 5);
  for (std::size_t i = 0; i < sums.samples.size(); ++i) {
    const std::uint8_t* pixel = &image.pixels[4 * i];
    sums.samples[i] = red * pixel[0] + green * pixel[1] + blue * pixel[2];
  }
  return sums;
}

VlvkSettings defaults() {
  VlvkSettings settings;
  vlvkSettingsInit(&settings, sizeof settings);
  settings.whitening = 0;  // which changes contrast by itself
  return settings;
}

/// As it is; with a quarter and an eighth of its light; scaled to 0.33 and 3.
const Image& portrait(int variant) {
  static const Image all[] = {makePortrait(1, kSide), makePortrait(0.25, kSide), makePortrait(0.125, kSide),
                              makePortrait(1, 169), makePortrait(1, 3 * kSide)};
  return all[variant];
}

std::vector<double> contrastsOf(const Image& image) {
  const Plane luma = planeOf(image, 0.299, 0.587, 0.114);
  Plane texture = filtered(luma, luma.width, luma.height, gaussian, 4, 4.0 * image.width / kSide);
  std::transform(luma.samples.begin(), luma.samples.end(), texture.samples.begin(), texture.samples.begin(),
                 std::minus<>());
  std::vector<double> contrasts;
  for (const Region& region : kRegions)
    contrasts.push_back(momentsOf(region.isTexture ? texture : luma, region).deviation);
  return contrasts;
}

/// Percent of the contrast of each region that is left of each portrait.
struct Left {
  std::vector<double> of[std::size(kRegions)];
  std::vector<double> byLight, byScale;  ///< differences between portraits, the largest first

  explicit Left(const VlvkSettings& settings) {
    for (int variant = 0; variant < 5; ++variant) {
      const std::vector<double> before = contrastsOf(portrait(variant));
      const std::vector<double> after = contrastsOf(beautified(portrait(variant), settings));
      for (std::size_t i = 0; i < before.size(); ++i)
        of[i].push_back(100 * after[i] / before[i]);
    }
    for (const auto& p : of) {
      std::printf("contrast %d: %5.1f %5.1f %5.1f %5.1f %5.1f left of %s\n", settings.contrast, p[0], p[1], p[2], p[3],
                  p[4], kRegions[&p - of].name);
      byLight.insert(byLight.end(), {std::abs(p[1] - p[0]), std::abs(p[2] - p[0])});
      byScale.insert(byScale.end(), {std::abs(p[3] - p[0]), std::abs(p[4] - p[0]), std::abs(p[4] - p[3])});
    }
    for (auto* differences : {&byLight, &byScale})
      std::sort(differences->begin(), differences->end(), std::greater<>());
  }
};

TEST(Look, DoesNotDependOnLightAndScale) {
  const Left now(defaults());
  for (const auto& d : {now.byLight, now.byScale}) {
    EXPECT_LE(d[0], 16);
    EXPECT_LE(d[d.size() / 10], 8);
  }
  VlvkSettings settings = defaults();
  settings.contrast = VLVK_CONTRAST_ABSOLUTE;
  settings.radius = 20;
  const Left absolute(settings);  // all this can fail
  EXPECT_GT(std::min(absolute.byLight[0], absolute.byScale[0]), 16);
  for (const int cheek : {kLeftCheek, kRightCheek})
    EXPECT_NEAR(now.of[cheek][0], absolute.of[cheek][0], 5);
  for (const int eye : {kLeftEye, kRightEye})
    EXPECT_GE(now.of[eye][0], absolute.of[eye][0] - 1);
}

TEST(Look, EvensSkinAndLeavesLips) {
  VlvkSettings settings = defaults();
  settings.softening = 0;
  settings.evenTone = 1000;
  const Image evened = beautified(portrait(0), settings);
  for (const int i : {kForehead, kLeftCheek, kRightCheek, kMouth}) {
    const Region& region = kRegions[i];
    const auto chroma = [&](const Image& of) {  // U and V of limited range
      const Moments u = momentsOf(planeOf(of, -0.148, -0.291, 0.439), region);
      const Moments v = momentsOf(planeOf(of, 0.439, -0.368, -0.071), region);
      return std::array{u.mean, v.mean, std::hypot(u.deviation, v.deviation)};
    };
    const auto before = chroma(portrait(0));
    const auto after = chroma(evened);
    const double left = 100 * after[2] / before[2];
    const double moved[] = {after[0] - before[0], after[1] - before[1]};
    std::printf("evened, %s: %.1f %%, U %+.2f, V %+.2f\n", region.name, left, moved[0], moved[1]);
    EXPECT_TRUE(i == kMouth ? left >= 85 : left <= 85) << region.name;
    EXPECT_LE(std::max(std::abs(moved[0]), std::abs(moved[1])), 1.5) << region.name;
  }
}

}  // namespace
}  // namespace vlvk::tool_test
