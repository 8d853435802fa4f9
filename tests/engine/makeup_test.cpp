/// Frames through the handle: against the model, against the class where both do the same, what must not change, and
/// how near to each other frames of all matrices and ranges are: a picture with skin, as cameras of each kind deliver
/// it.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/engine/makeup_rig.h"
#include "tests/support/target_test.h"

namespace makeup_rig {
namespace {

// One engine sees everything, so each frame also meets the buffers and tables of all sorts of earlier ones.
class MakeupOfTarget : public testing_support::TargetTest {
 protected:
  void change() {
    engine.put(settingsOf(random.pick({0, 0, 50, 100, random.between(1, 99)}),
                          random.pick({1000, 1000, 1000, 0, 2, random.between(0, 1000)}),
                          random.pick({0, 8, 20, 60, 128, random.between(1, 40), random.between(1, 40)}),
                          random.between(1, 5)));
    VlvkSettings drawn = engine.settings;
    if (random.between(0, 9) == 0) drawn.radius = VLVK_RADIUS_AUTO;
    drawn.contrast = random.between(0, 2) > 0 ? VLVK_CONTRAST_RELATIVE : VLVK_CONTRAST_ABSOLUTE;
    drawn.whitenArea = random.between(0, 1);
    drawn.evenTone = random.pick({0, 1000, random.between(1, 1000)});
    engine.put(drawn);
    if (random.between(0, 5) == 0) engine.setTable(!engine.hasTable);
  }
  void expectModel(int from, int to, int width, int height) {
    const Picture source(from, random.between(0, 3), width, height, random);
    const Picture target(to, random.between(0, 3), width, height, random);
    const Mask mask(random.pick({1, width, random.between(1, 3 * width)}),
                    random.pick({1, height, random.between(1, 3 * height)}), random);
    engine.mask = random.between(0, 2) == 0 ? &mask.mask : nullptr;
    ASSERT_EQ(engine.check(source, target), "");
    ASSERT_EQ(from == to ? engine.check(source, source) : "", "");
    engine.mask = nullptr;
  }
  int side() {
    return random.pick({random.between(1, 20), random.between(1, 40), random.between(1, 40), random.between(64, 100)});
  }

  Random random{301};
  Engine engine{settingsOf(50, 1000, 20)};
};

TEST_P(MakeupOfTarget, MatchesTheModelFromEveryFormatToEvery) {
  for (int i = 0; i < 6 * 81 && !HasFailure(); ++i) {
    change();
    expectModel(kFormats[i % 9], kFormats[i / 9 % 9], side(), side());
  }
  for (int i = 0; i < 18 * 4 * 3 && !HasFailure(); ++i) {  // tiny ones
    const int from = kFormats[random.between(0, 8)];
    if (i % 4 == 0) change();
    expectModel(from, random.pick({from, kFormats[random.between(0, 8)]}), 1 + i / 4 % 18, 1 + i % 4);
  }
}

VLVK_TEST_ALL_TARGETS(MakeupOfTarget);

TEST(Makeup, TakesTheRadiusFromTheShorterSide) {
  Random random(302);
  const int cases[][3] = {{1, 40, 8},     {269, 280, 8},    {290, 270, 16},   {509, 600, 16},
                          {720, 730, 24}, {1080, 1081, 40}, {2161, 2160, 64}, {2161, 2161, 128}};
  for (const auto& [width, height, radius] : cases) {
    const Picture source(VLVK_NV12, 0, width, height, random);
    const Picture targets[] = {{VLVK_NV12, 0, width, height}, {VLVK_NV12, 0, width, height}};
    source.planes[0].fill(testing_support::Content::kNoise, random);
    for (const int other : {radius, radius - 8}) {
      EXPECT_EQ(Engine(settingsOf(0, 1000, VLVK_RADIUS_AUTO)).process(source, targets[0]), VLVK_OK);
      EXPECT_EQ(Engine(settingsOf(0, 1000, other)).process(source, targets[1]), VLVK_OK);
      EXPECT_EQ(targets[0].difference(targets[1].content()) == "", other == radius) << width << " x " << height;
    }
  }
}

// In place and as pixels, with any strides.
TEST(Makeup, HasTheBytesOfTheClass) {
  using frame_rig::Call;
  using frame_rig::Delivery;
  Random random(303);
  for (int i = 0; i < 60; ++i) {
    const bool rgbOrder = i % 2 == 1;
    const int width = 16 * random.between(1, 12);
    const int height = 2 * random.between(1, 60);
    const int radius = random.pick({0, 8, 20, 60, 70});
    Engine engine(settingsOf(random.between(1, 100), random.pick({0, 500, 1000}), radius, random.between(1, 4)));
    ASSERT_EQ(engine.setTable(i / 2 % 2 == 1), VLVK_OK);
    frame_rig::Rig rig(random.between(1, 4));
    rig.put({engine.settings.whitening, engine.settings.softening, radius, engine.hasTable ? 100 : 0});
    const Picture source(rgbOrder ? VLVK_NV21 : VLVK_NV12, 0, width, height, random);
    const Picture pixels(rgbOrder ? VLVK_RGBA : VLVK_BGRA, 0, width, height, random);
    const int strides[] = {source.frame.stride[0], source.frame.stride[1], pixels.frame.stride[0]};
    for (const Delivery delivery : {Delivery::kToPixels, Delivery::kOntoItself}) {
      const frame_rig::Frame frame(
          {{Call::kInternal, delivery}, rgbOrder, width, height, {strides[0], strides[1], strides[2]}});
      frame.put({source.planes[0].bytes(), source.planes[1].bytes(), {}});
      ASSERT_EQ(frame.run(rig.filter), 0);
      const auto& [luma, chroma, out] = frame.content();
      ASSERT_EQ(engine.process(source, delivery == Delivery::kToPixels ? pixels : source), VLVK_OK);
      ASSERT_EQ(source.difference({luma, chroma, {}}) + pixels.difference({out, {}, {}}), "") << i;
    }
  }
}

// Neither the whole frame where settings are neutral, nor chroma where only luma is smoothed.
TEST(Makeup, LeavesWhatItIsNotToChange) {
  Random random(304);
  for (int i = 0; i < 9 * 4; ++i) {
    const int format = kFormats[i % 9];
    const Picture source(format, i / 9, random.between(1, 70), random.between(20, 40), random);
    const Picture target(format, i / 9, source.frame.width, source.frame.height);
    const bool hasX = format == VLVK_RGBX || format == VLVK_BGRX;  // which becomes 255
    for (int k = 0; k < (hasX ? source.planes[0].rows * source.frame.width : 0); ++k)
      source.planes[0].row(k / source.frame.width)[k % source.frame.width * 4 + 3] = 255;
    const Picture::Memory before = source.content();
    for (const auto& settings : {settingsOf(0, 0, 20), settingsOf(0, 1000, 0), settingsOf(0, 1, 20)}) {
      ASSERT_EQ(Engine(settings).process(source, target), VLVK_OK);
      ASSERT_EQ(Engine(settings).process(source, source), VLVK_OK);
      EXPECT_EQ(source.difference(before), "") << format;
      ASSERT_EQ(Engine(settings).process(target, source), VLVK_OK);
      EXPECT_EQ(source.difference(before), "") << format << " elsewhere";
    }
    if (makeup_model::isPixels(format)) continue;
    ASSERT_EQ(Engine(settingsOf(0, 1000, 20)).process(source, source), VLVK_OK);
    EXPECT_EQ(source.planes[1].difference(before[1]) + source.planes[2].difference(before[2]), "");
  }
}

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
