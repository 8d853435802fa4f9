/// Whole frames through the filter, byte for byte against the model: every kind, size and setting, and what earlier
/// frames leave behind.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>

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
    checkSequence(threads, 40, random);
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

// One number for a set of frames: what the engine makes of them is the same on every processor, with every compiler
// and every target. It never changes, unless what the engine makes of a frame is meant to change, or the set below.
// Then it is the number that the failing test prints, provided that the frames above equal the model.
constexpr std::uint64_t kGolden = 0x68F3EC3365CB8364U;

// Content from arithmetic alone; the number must not hang on helpers that other tests may change.
int below(std::uint32_t& state, int count) {
  state = state * 1664525U + 1013904223U;
  return static_cast<int>((state >> 8) % static_cast<std::uint32_t>(count));
}

template <class Value>
Bytes plane(int stride, int height, Value value) {
  Bytes bytes;
  for (int i = 0; i < stride * height; ++i)
    bytes.push_back(static_cast<Byte>(std::clamp(value(i % stride, i / stride), 0, 255)));
  return bytes;
}

/// Slopes, one edge and noise.
Bytes drawLuma(std::uint32_t& state, int width, int height) {
  const int edge = below(state, width);
  const int contrast = below(state, 160);
  const int noise = 1 + below(state, 60);
  return plane(width, height, [&](int x, int y) {
    return 60 + (x < edge ? contrast : 0) + (x + 2 * y) / 4 % 50 + below(state, noise);
  });
}

class Golden : public testing_support::TargetTest {};

// Every size, kind and order; settings and thread counts take turns.
TEST_P(Golden, FramesHaveTheOneChecksum) {
  constexpr int kSizes[][2] = {{64, 48}, {33, 21}, {17, 70}, {128, 96},  {1, 1},
                               {8, 2},   {7, 9},   {50, 38}, {161, 119}, {320, 180}};
  constexpr int kThreads[] = {1, 2, 3, 4, 8};
  constexpr model::Settings kSettings[] = {{50, 1000, 20, 100}, {100, 1000, 8, 100},  {50, 600, 64, 100},
                                           {80, 300, 33, 0},    {-20, 10000, 9, 100}, {300, 1, INT_MAX, 100},
                                           {0, 1000, 16, 0}};
  std::uint32_t state = 1;
  const model::Resource resource{true, plane(2048, 512, [&](int, int) { return below(state, 256); })};
  Loader loader(&resource);
  Filter filter(1, &loader);
  std::uint64_t checksum = 0xCBF29CE484222325U;  // FNV-1a
  for (std::size_t i = 0; i < 6 * std::size(kSizes); ++i) {
    filter.put(kSettings[i % 7]);
    filter.threadCount = kThreads[i % 5];
    const auto [width, height] = kSizes[i / 6];
    const bool rgbOrder = i % 6 == 0 || i % 6 == 2;
    const bool bgra = i % 6 >= 4;
    const bool toPixels = i % 6 >= 2 && i % 6 <= 4;
    state = static_cast<std::uint32_t>(i + 1) * 2654435761U | 1U;
    const int stride = 4 * width + below(state, 3) * 12;
    Bytes picture = drawLuma(state, width, height);
    if (bgra) {
      picture = plane(stride, height, [&, light = picture](int x, int y) {
        const int shade = x < 4 * width ? light[static_cast<std::size_t>(y * width + x / 4)] - 120 : 0;
        return std::array{125, 150, 200, 77}[static_cast<std::size_t>(x % 4)] + shade / 2 + below(state, 24);
      });
    }
    // Pairs that are skin more or less, and blocks of any colour.
    Bytes chroma = plane(width, bgra ? 0 : (height + 1) / 2, [&](int x, int y) {
      return (x / 16 + y / 8) % 4 == 3 ? below(state, 256)
                                       : ((x % 2 == 0) == rgbOrder ? 155 : 110) - 30 + below(state, 61);
    });
    Bytes pixels(toPixels ? static_cast<std::size_t>(stride * height) : 0, 0xC5);
    Byte* const out = toPixels ? pixels.data() : bgra ? picture.data() : nullptr;
    Byte* const in = picture.data();
    ASSERT_EQ(bgra ? filter.processBGRAVideo(in, width, height, stride, out, stride)
                   : filter.processVideo(in, width, chroma.data(), width, width, height, out, stride, rgbOrder),
              0);
    for (const Bytes& plane : {picture, chroma, pixels}) {
      for (const Byte byte : plane)
        checksum = (checksum ^ byte) * 0x100000001B3U;
    }
  }
  EXPECT_EQ(checksum, kGolden) << "the checksum is 0x" << std::hex << checksum;
}

VLVK_TEST_ALL_TARGETS(Golden);

}  // namespace
}  // namespace frame_rig
