/// Whole frames through the filter, byte for byte against the model: every kind, size and setting, and what earlier
/// frames leave behind.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <thread>
#include <vector>

#include "tests/frames/frame_support.h"
#include "tests/support/target_test.h"

namespace frame_tests {
namespace {

using model::Resource;
using model::Settings;

Settings randomSettings(Random& random) {
  return {.whiten = random.pick({50, 0, 100, 1, -20, 300, INT_MAX, random.between(1, 99)}),
          .soften = random.pick({1000, 1000, 1000, 600, 2, 1, 0, -1000, 10000, INT_MAX, random.between(2, 1000)}),
          .radius = random.pick({20, 8, 1, 9, 64, 128, 129, 140, 0, -3, -8, INT_MIN, INT_MAX, INT_MAX - 7,
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
  Settings settings;
  for (int i = 0; i < frames && !testing::Test::HasFailure(); ++i) {
    if (random.between(0, 2) != 0) width = randomSide(random);
    if (random.between(0, 2) != 0) height = randomSide(random);
    if (random.between(0, 1) != 0) settings = randomSettings(random);
    if (random.between(0, 9) == 0) rig.filter.threadCount = random.between(1, 8);
    if (random.between(0, 9) == 0) rig.filter.threadCount = threads;
    rig.put(settings);
    Frame frame(random.pick({Kind::kInPlace, Kind::kInPlace, Kind::kToPixels, Kind::kToPixels, Kind::kBgra,
                             Kind::kBgraOntoItself, Kind::kBgraNowhere}),
                width, height, random.between(0, 1) == 1, random);
    rig.check(frame);
  }
  EXPECT_EQ(rig.loader.calls, rig.expected.loads());
  EXPECT_GE(rig.expected.smoothedFrames(), frames / 4) << "the frames do not show whether they are smoothed";
}

class Frames : public testing::TestWithParam<int> {};

TEST_P(Frames, MatchTheModelInAnySequence) {
  Random random(static_cast<std::uint32_t>(GetParam()));
  checkSequence(GetParam(), 100, random);
}

class FramesOfTarget : public testing_support::TargetTest {};

TEST_P(FramesOfTarget, MatchTheModelInAnySequence) {
  Random random(100);
  checkSequence(4, 100, random);
}

VLVK_TEST_ALL_TARGETS(FramesOfTarget);

// Bands long enough for the band kernels, in all their combinations with odd ends.
TEST_P(Frames, MatchTheModelWithLongBands) {
  const int threads = GetParam();
  Random random(static_cast<std::uint32_t>(100 + threads));
  Rig rig(threads);
  for (const int rowsPerBand : {16, 33, 48}) {
    for (const Kind kind : {Kind::kInPlace, Kind::kToPixels, Kind::kBgra}) {
      Frame frame(kind, 40 + random.between(0, 17), threads * rowsPerBand + random.between(0, 3), true, random);
      rig.put({.radius = random.pick({8, rowsPerBand / 2, rowsPerBand})});
      rig.check(frame);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Threads, Frames, testing::Range(1, 9));

TEST(Frame, BigOnesMatchTheModel) {
  Random random(5);
  struct Case {
    Kind kind;
    int width, height, radius, threads;
  };
  for (const Case& c : {Case{Kind::kInPlace, 641, 482, 20, 4}, Case{Kind::kToPixels, 1030, 419, 129, 3},
                        Case{Kind::kBgra, 479, 641, 36, 4}}) {
    Rig rig(c.threads);
    rig.put({.radius = c.radius});
    Frame frame(c.kind, c.width, c.height, true, random);
    rig.check(frame);
  }
}

TEST(Frame, EveryTinySizeIsSafe) {
  Random random(6);
  Rig rig(3);
  for (const Kind kind : kKinds) {
    for (int height = 0; height <= 5; ++height) {
      for (int width = 0; width <= 18 && !HasFailure(); ++width) {
        Frame frame(kind, width, height, kind == Kind::kInPlace, random);
        rig.check(frame);
      }
    }
  }
}

// Each buffer has a size of its own: the geometry that the last frame recorded says nothing about the others.
TEST(Frame, BuffersSurviveAnySequenceOfKinds) {
  struct Step {
    Kind kind;
    int width, height;
  };
  const std::vector<Step> sequences[] = {
      {{Kind::kBgra, 32, 32}, {Kind::kToPixels, 128, 128}, {Kind::kBgra, 128, 128}},
      {{Kind::kToPixels, 96, 64}, {Kind::kInPlace, 96, 64}, {Kind::kBgraNowhere, 96, 64}, {Kind::kInPlace, 96, 64}},
      {{Kind::kInPlace, 40, 40}, {Kind::kToPixels, 160, 96}, {Kind::kInPlace, 160, 96}, {Kind::kInPlace, 40, 40}},
      {{Kind::kBgra, 33, 65}, {Kind::kInPlace, 65, 33}, {Kind::kBgra, 65, 33}, {Kind::kBgraOntoItself, 33, 65}},
      {{Kind::kInPlace, 0, 0}, {Kind::kInPlace, 64, 64}, {Kind::kBgra, 0, 9}, {Kind::kBgra, 64, 64}}};
  for (const auto& sequence : sequences) {
    for (const int radius : {0, 8, 64}) {
      Random random(7);
      Rig rig(2);
      rig.put({.radius = radius});
      for (const Step& step : sequence) {
        Frame frame(step.kind, step.width, step.height, true, random);
        rig.check(frame);
      }
    }
  }
}

TEST(Frame, RefusedCallsChangeNothingAndTheNextFrameIsRight) {
  constexpr int kHuge = INT_MAX;
  Random random(8);
  for (const Kind kind : kKinds) {
    for (const bool warm : {false, true}) {
      Rig rig(2);
      Frame frame(kind, 50, 38, true, random);
      const auto expectRefused = [&](unsigned char* picture, unsigned char* chroma, int width, int height,
                                     const char* what, int threads = 2) {
        SCOPED_TRACE(testing::Message() << what << ", " << frame.describe() << (warm ? ", warm" : ""));
        if (warm) {
          rig.check(frame);
          frame.reset();
        }
        rig.filter.threadCount = threads;
        const int result = frame.isBgra() ? rig.filter.processBGRAVideo(picture, width, height, 200, frame.out(), 200)
                                          : rig.filter.processVideo(picture, width, chroma, width, width, height,
                                                                    frame.out(), frame.outStride(), true);
        EXPECT_EQ(result, -1);
        EXPECT_TRUE(frame.isUntouched());
        rig.filter.threadCount = 2;
        rig.check(frame);
        frame.reset();
      };
      unsigned char* const picture = frame.picture();
      unsigned char* const chroma = frame.chroma();
      expectRefused(nullptr, chroma, 50, 38, "no picture");
      if (!frame.isBgra()) expectRefused(picture, nullptr, 50, 38, "no chroma");
      expectRefused(picture, chroma, -50, 38, "negative width");
      expectRefused(picture, chroma, 50, -1, "negative height");
      expectRefused(picture, chroma, INT_MIN, INT_MIN, "most negative size");
      expectRefused(picture, chroma, kHuge, kHuge, "more than there is memory");
      expectRefused(picture, chroma, 50, 38, "no threads", 0);
      expectRefused(picture, chroma, 50, 38, "fewer than no threads", -4);
    }
  }
}

// Planes with padding, which only the lock-free form takes: the frame between the padding is what counts.
TEST(Frame, StridesOfTheCallerAreHonoured) {
  Random random(13);
  Rig rig(3);
  for (const int radius : {0, 8, 40}) {
    for (const auto& [width, height] : {std::pair{51, 70}, {64, 33}, {7, 5}}) {
      for (const bool inPlace : {true, false}) {
        rig.put({.radius = radius});
        const Plane luma(width, height, width + 13, Guard::kBehind, Content::kNoise, random);
        const Plane chroma(width & ~1, height / 2, width + 6, Guard::kBehind, Content::kSkinPairs, random);
        const Plane out(width * 4, height, width * 4 + 5, Guard::kBehind, Content::kNoise, random);
        model::Bytes y;
        model::Bytes uv;
        for (int row = 0; row < height; ++row)
          y.insert(y.end(), luma.row(row), luma.row(row) + width);
        for (int row = 0; row < height / 2; ++row) {
          uv.insert(uv.end(), chroma.row(row), chroma.row(row) + (width & ~1));
          uv.resize(static_cast<std::size_t>(width) * (static_cast<std::size_t>(row) + 1));
        }
        auto expectedOut = out.bytes();
        rig.expected.processVideo(y, uv, width, height, inPlace ? nullptr : expectedOut.data(), out.stride(), true);
        auto expectedLuma = luma.bytes();
        auto expectedChroma = chroma.bytes();
        for (std::ptrdiff_t row = 0; row < height; ++row) {
          std::copy_n(y.begin() + row * width, width, expectedLuma.begin() + row * luma.stride());
        }
        for (std::ptrdiff_t row = 0; row < height / 2; ++row) {
          std::copy_n(uv.begin() + row * width, width & ~1, expectedChroma.begin() + row * chroma.stride());
        }
        SCOPED_TRACE(testing::Message() << width << " x " << height << ", radius " << radius << ", inPlace "
                                        << inPlace);
        EXPECT_EQ(rig.filter.processVideoInternal(luma.data(), luma.stride(), chroma.data(), chroma.stride(), width,
                                                  height, inPlace ? nullptr : out.data(), out.stride(), true),
                  0);
        EXPECT_TRUE(sameBytes(luma, expectedLuma)) << "luma";
        EXPECT_TRUE(sameBytes(chroma, expectedChroma)) << "chroma";
        EXPECT_TRUE(sameBytes(out, expectedOut)) << "out";
      }
    }
  }
}

TEST(Frame, MoreThreadsThanRowsIsRight) {
  Random random(9);
  for (const int threads : {64, 333}) {
    Rig rig(threads);
    for (const Kind kind : {Kind::kInPlace, Kind::kToPixels}) {
      Frame frame(kind, 34, 50, true, random);
      rig.check(frame);
    }
  }
}

// The picture may be missing, cut short or come back; whitening lasts, a tint does not.
TEST(Frame, ColoursFollowTheResource) {
  const auto resource = [](bool present, std::size_t size) {
    Resource cut{present, noisePicture().payload};
    cut.payload.resize(size);
    return cut;
  };
  for (Resource current : {resource(true, 0), resource(true, 4 * 512 * 100 + 2),
                           resource(true, model::kPictureSize - 1), resource(false, model::kPictureSize)}) {
    Random random(10);
    Rig rig(2, current);
    const auto expectFrames = [&](bool rgbOrder, int count) {
      for (int i = 0; i < count; ++i) {
        Frame frame(i % 2 == 0 ? Kind::kToPixels : Kind::kInPlace, 48, 32, rgbOrder, random);
        rig.check(frame);
        EXPECT_EQ(rig.loader.calls, rig.expected.loads()) << frame.describe();
      }
    };
    expectFrames(true, 3);
    expectFrames(false, 3);
    rig.put({.whiten = 90});
    expectFrames(false, 2);
    rig.put({.whiten = 90, .soften = 10, .colorAdjust = 0});
    expectFrames(false, 2);
    current.present = !current.present;
    expectFrames(false, 1);
    rig.put({.whiten = 20});
    expectFrames(false, 2);
  }
}

TEST(Frame, WithoutALoaderThePictureIsMissing) {
  const Resource missing{false, {}};
  Random random(11);
  CFastEdgePreserved filter(2, nullptr);
  model::Filter expected(&missing);
  for (const bool rgbOrder : {true, true, true, false, false}) {
    Frame frame(Kind::kToPixels, 48, 32, rgbOrder, random);
    frame.predict(expected);
    EXPECT_EQ(frame.run(filter), 0);
    EXPECT_TRUE(frame.isPredicted());
  }
}

TEST(Frame, FramesOfSeveralThreadsTakeTurns) {
  Rig rig(2);
  std::vector<std::unique_ptr<Frame>> frames;
  std::vector<int> results(12, -2);
  Random random(12);
  for (int i = 0; i < 12; ++i) {
    frames.push_back(
        std::make_unique<Frame>(kKinds[static_cast<std::size_t>(i % 5)], 30 + 9 * (i % 3), 40, false, random));
    frames.back()->predict(rig.expected);
  }
  std::vector<std::thread> callers;
  for (std::size_t first = 0; first < 3; ++first) {
    callers.emplace_back([&, first] {
      for (std::size_t i = first; i < frames.size(); i += 3)
        results[i] = frames[i]->run(rig.filter);
    });
  }
  for (auto& caller : callers)
    caller.join();
  EXPECT_EQ(results, std::vector<int>(12, 0));
  for (const auto& frame : frames)
    EXPECT_TRUE(frame->isPredicted());
}

}  // namespace
}  // namespace frame_tests
