/// Frames through the handle: against the model, against the class where both do the same, and what must not change.
#include <gtest/gtest.h>

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
    if (random.between(0, 5) == 0) engine.setTable(!engine.hasTable);
  }
  void expectModel(int from, int to, int width, int height) {
    const Picture source(from, random.between(0, 3), width, height, random);
    const Picture target(to, random.between(0, 3), width, height, random);
    ASSERT_EQ(engine.check(source, target), "");
    ASSERT_EQ(from == to ? engine.check(source, source) : "", "");
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

}  // namespace
}  // namespace makeup_rig
