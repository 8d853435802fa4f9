/// Frames when memory runs out or threads do not start, and what a frame asks of the system at all.
#include <gtest/gtest.h>

#include <climits>

#include "tests/frames/frame_support.h"
#include "tests/support/failing_system.h"

namespace frame_tests {
namespace {

using testing_support::liveBytes;
using testing_support::memoryFault;
using testing_support::threadFault;

constexpr int kNever = INT_MAX;

/// What one frame asked for, and what came of it.
struct Outcome {
  int result, allocations, threads;
};

struct Numbers {
  int first = kNever, last = kNever;
};

Outcome runWith(Frame& frame, CFastEdgePreserved& filter, Numbers failingAllocations, Numbers failingThreads) {
  memoryFault.arm(failingAllocations.first, failingAllocations.last);
  threadFault.arm(failingThreads.first, failingThreads.last);
  const int result = frame.run(filter);
  memoryFault.armed = false;
  threadFault.armed = false;
  return {result, memoryFault.requests, threadFault.requests};
}

class FailingFrames : public testing::TestWithParam<Kind> {};

/// What a filter has behind it when memory runs out.
enum class Before { kNothing, kOtherFrame, kOtherSettings };

// For every allocation of a frame in turn: it alone fails, or it and all after it. Frames of another geometry before
// and after tell whether sizes and buffers still belong together; a missing resource, which frame asked for it.
TEST_P(FailingFrames, WithoutMemoryNothingChangesAndTheNextFramesAreRight) {
  Random random(51);
  const model::Resource missing{false, {}};
  Frame frame(GetParam(), 72, 90, true, random);
  Frame other(GetParam() == Kind::kInPlace ? Kind::kBgra : Kind::kInPlace, 40, 122, true, random);
  const auto check = [](Rig& rig, Frame& one) {
    rig.check(one);
    one.reset();
  };
  const auto expectSafe = [&](Before before, const model::Resource& resource, bool forGood) {
    int failures = 0;
    for (int n = 0;; ++n) {
      SCOPED_TRACE(testing::Message() << frame.describe() << ", allocation " << n
                                      << (forGood ? " and all after it" : "") << " failed");
      Rig rig(3, resource);
      if (before == Before::kOtherFrame) check(rig, other);
      if (before == Before::kOtherSettings) {
        check(rig, frame);
        rig.put({.whiten = 80, .radius = 33});
        rig.filter.threadCount = 5;
      }
      const model::Filter unchanged = rig.expected;
      frame.predict(rig.expected);
      const Outcome outcome = runWith(frame, rig.filter, {n, forGood ? kNever : n}, {});
      EXPECT_TRUE(outcome.result == 0 || outcome.result == -1) << outcome.result;
      EXPECT_TRUE(outcome.result == 0 ? frame.isPredicted() : frame.isUntouched()) << ", result " << outcome.result;
      if (outcome.result != 0) rig.expected = unchanged;
      failures += outcome.result == -1;
      frame.reset();
      if (n % 2 == 0) check(rig, other);
      check(rig, frame);
      check(rig, other);
      if (before == Before::kNothing) {
        EXPECT_EQ(rig.loader.calls, rig.expected.loads());
      }
      if (outcome.allocations > n && !HasFailure()) continue;
      EXPECT_EQ(outcome.result, 0);
      break;
    }
    EXPECT_GE(failures, 3) << "allocations of the engine do not come through this executable";
  };
  for (const bool forGood : {false, true}) {
    expectSafe(Before::kNothing, noisePicture(), forGood);
    expectSafe(Before::kNothing, missing, forGood);
    expectSafe(Before::kOtherFrame, noisePicture(), forGood);
    expectSafe(Before::kOtherSettings, noisePicture(), forGood);
  }
}

// Every run of threads that do not start, none and all of them included.
TEST_P(FailingFrames, WithoutThreadsTheFrameIsComplete) {
  Random random(52);
  constexpr int kThreads = 4;
  for (const int height : {200, 61, 9}) {
    Rig rig(kThreads);
    rig.put({.radius = 16});
    Frame frame(GetParam(), 50, height, true, random);
    for (int first = 0; first <= kThreads; ++first) {
      for (int last = first; last <= kThreads; ++last) {
        frame.predict(rig.expected);
        const Outcome outcome = runWith(frame, rig.filter, {}, {first, last});
        EXPECT_EQ(outcome.result, 0);
        EXPECT_TRUE(frame.isPredicted()) << ", threads " << first << " to " << last << " of " << outcome.threads
                                         << " did not start";
        frame.reset();
      }
    }
  }
}

TEST_P(FailingFrames, AFrameStartsItsThreadsAndASteadyOneAllocatesNothing) {
  Random random(53);
  for (const int threads : {1, 4, 7}) {
    Rig rig(threads);
    Frame frame(GetParam(), 640, 480, true, random);
    for (int i = 0; i < 3; ++i) {
      const Outcome outcome = runWith(frame, rig.filter, {}, {});
      EXPECT_EQ(outcome.result, 0);
      EXPECT_EQ(outcome.threads, threads) << frame.describe();
      EXPECT_TRUE(i < 2 || outcome.allocations == 0) << outcome.allocations << " allocations, " << frame.describe();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, FailingFrames, testing::ValuesIn(kKinds));

TEST(FrameMemory, NeitherGrowsWithTheNumberOfFramesNorOutlivesTheFilter) {
  Random random(54);
  Frame steady(Kind::kInPlace, 64, 48, true, random);
  Frame first(Kind::kBgra, 90, 40, false, random);
  Frame second(Kind::kToPixels, 33, 70, true, random);
  Rig(4).check(steady);  // the C library keeps something of its first threads
  for (const bool mixed : {false, true}) {
    const long long before = liveBytes;
    {
      Rig rig(4);
      long long settled = 0;
      constexpr int kRounds = 200;
      for (int round = 0; round < kRounds; ++round) {
        if (mixed) rig.filter.radius = round % 2 == 0 ? 20 : 40;
        EXPECT_EQ(steady.run(rig.filter), 0);
        const int others = mixed ? first.run(rig.filter) + second.run(rig.filter) : 0;
        EXPECT_EQ(others, 0);
        if (round == 9) settled = liveBytes;
      }
      EXPECT_EQ(liveBytes, settled) << (mixed ? "frames of changing size and kind" : "one kind of frame");
    }
    EXPECT_EQ(liveBytes, before) << "left behind by a filter";
  }
}

}  // namespace
}  // namespace frame_tests
