/// Whole frames through the filter, byte for byte against the model: every kind, size and setting, and what earlier
/// frames leave behind.
#include <gtest/gtest.h>

#include <climits>

#include "tests/frames/frame_rig.h"
#include "tests/support/target_test.h"

namespace frame_rig {
namespace {

model::Settings randomSettings(Random& random) {
  return {.whiten = random.pick({50, 0, 100, 1, -20, 300, INT_MAX, random.between(1, 99)}),
          .soften = random.pick({1000, 1000, 1000, 600, 2, 1, 0, -1000, 10000, INT_MAX, random.between(2, 1000)}),
          .radius = random.pick({20, 8, 1, 9, 64, 72, 128, 129, 140, 0, -3, -8, INT_MIN, INT_MAX, INT_MAX - 7,
                                 random.between(1, 40), random.between(1, 40), random.between(1, 40)}),
          .colorAdjust = random.pick({100, 100, 1, 0, -1})};
}

int randomSide(Random& random) {
  return random.pick({random.between(0, 18), random.between(0, 100), random.between(100, 200)});
}

/// One filter sees everything, so each frame also meets the buffers and tables of all sorts of earlier ones.
void checkSequence(int threads, int frames, Random& random) {
  Rig rig(threads);
  int width = 64;
  int height = 48;
  model::Settings settings;
  for (int i = 0; i < frames && !testing::Test::HasFailure(); ++i) {
    if (random.between(0, 2) != 0) width = randomSide(random);
    if (random.between(0, 2) != 0) height = randomSide(random);
    if (random.between(0, 1) != 0) settings = randomSettings(random);
    if (random.between(0, 9) == 0) rig.filter.threadCount = random.between(1, 8);
    if (random.between(0, 9) == 0) rig.filter.threadCount = threads;
    if (random.between(0, 9) == 0) {  // bands just long enough for the band kernels, with odd ends
      const int rows = random.pick({16, 33, 48});
      height = rig.filter.threadCount * rows + random.between(0, 3);
      settings.radius = random.pick({8, rows / 2, rows});
    }
    rig.put(settings);
    const Kind kind = kKinds[random.between(0, 6)];
    EXPECT_EQ(rig.check(Frame(kind, width, height, random.between(0, 1) == 1, random)), "");
  }
  EXPECT_EQ(rig.loader.calls, rig.expected.loads());
  EXPECT_GE(rig.expected.smoothedFrames(), frames / 5) << "the frames do not show whether they are smoothed";
}

class FramesOfTarget : public testing_support::TargetTest {};

TEST_P(FramesOfTarget, MatchTheModelInAnySequence) {
  for (int threads = 1; threads <= 8; ++threads) {
    Random random(static_cast<std::uint32_t>(threads));
    checkSequence(threads, 100, random);
  }
}

VLVK_TEST_ALL_TARGETS(FramesOfTarget);

TEST(Frame, EveryTinySizeIsSafe) {
  Random random(6);
  Rig rig(3);
  for (const Kind kind : kKinds) {
    for (int height = 0; height <= 5; ++height) {
      for (int width = 0; width <= 18; ++width)
        ASSERT_EQ(rig.check(Frame(kind, width, height, kind.delivery == Delivery::kOntoItself, random)), "");
    }
  }
}

TEST(Frame, RefusedCallsChangeNothingAndTheNextFrameIsRight) {
  Random random(8);
  for (const Kind kind : kKinds) {
    for (const bool warm : {false, true}) {
      Rig rig(2);
      const Frame frame(kind, 50, 38, true, random);
      for (int i = 1; i <= static_cast<int>(Refusal::kNoThreads); ++i) {
        const auto refusal = static_cast<Refusal>(i);
        if (!frame.mustFail(refusal)) continue;
        EXPECT_EQ(warm ? rig.check(frame) : "", "");
        EXPECT_EQ(frame.check(rig.filter, frame.content(), refusal), "") << (warm ? "warm" : "");
        EXPECT_EQ(rig.check(frame), "") << "after refusal " << i << (warm ? ", warm" : "");
      }
    }
  }
}

// The picture may be missing, cut short or come back; whitening lasts, a tint does not.
TEST(Frame, ColoursFollowTheResource) {
  for (const int part : {0, 4 * 512 * 100 + 2, static_cast<int>(model::kPictureSize) - 1, 1 << 20, -1}) {
    model::Resource current{(part & 1) == 0, noisePicture().payload};
    if (part >= 0) current.payload.resize(static_cast<std::size_t>(part));
    Random random(10);
    Rig rig(2, current);
    if (part < 0) rig.filter.loader = nullptr;  // the picture of such a filter stays missing
    const auto expectFrames = [&](bool rgbOrder, int count) {
      for (int i = 0; i < count; ++i) {
        EXPECT_EQ(rig.check(Frame(kKinds[i % 2], 48, 32, rgbOrder, random)), "") << part << ' ' << i;
        EXPECT_TRUE(part < 0 || rig.loader.calls == rig.expected.loads());
      }
    };
    expectFrames(true, 3);
    expectFrames(false, 3);
    rig.put({.whiten = 90});
    expectFrames(false, 2);
    rig.put({.whiten = 90, .soften = 10, .colorAdjust = 0});
    expectFrames(false, 2);
    if (part >= 0) current.present = !current.present;
    expectFrames(false, 1);
    rig.put({.whiten = 20});
    expectFrames(false, 2);
  }
}

}  // namespace
}  // namespace frame_rig
