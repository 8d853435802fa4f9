/// Frames when memory runs out or threads do not start, and what a frame asks of the system at all.
#include <gtest/gtest.h>

#include <climits>

#include "tests/frames/frame_rig.h"
#include "tests/support/failing_system.h"

namespace frame_rig {
namespace {

using testing_support::liveBytes;
using testing_support::memoryFault;
using testing_support::threadFault;

struct Numbers {
  int first = INT_MAX, last = INT_MAX;
};

/// The result of a frame that does not get some of its memory or threads; the faults count what it asked for.
int runWithout(Numbers allocations, Numbers threads, const Frame& frame, Filter& filter) {
  memoryFault.arm(allocations.first, allocations.last);
  threadFault.arm(threads.first, threads.last);
  const int result = frame.run(filter);
  memoryFault.armed = false;
  threadFault.armed = false;
  return result;
}

class FailingFrames : public testing::TestWithParam<Kind> {};

// For every allocation of a frame in turn: it alone fails, or it and all after it; for the filter's first frame, after
// one of another geometry, and after other settings. The frames that follow tell whether sizes and buffers still belong
// together; a missing resource, which frame asked for it.
TEST_P(FailingFrames, WithoutMemoryNothingChangesAndTheNextFramesAreRight) {
  enum Before { kNothing, kNothingAndNoPicture, kOtherFrame, kOtherSettings };
  Random random(51);
  const model::Resource missing{false, {}};
  const Frame frame(GetParam(), 72, 90, true, random);
  const Frame other(frame.isOverwritten ? kBgraToPixels : kVideoInPlace, 40, 122, true, random);
  for (const Before before : {kNothing, kNothingAndNoPicture, kOtherFrame, kOtherSettings}) {
    for (const int alsoFailing : {0, 1000000}) {
      int failures = 0;
      for (int n = 0, requests = INT_MAX; n <= requests && !HasFailure(); ++n) {
        SCOPED_TRACE(testing::Message() << "allocation " << n << " and " << alsoFailing << " more failed");
        Rig rig(3, before == kNothingAndNoPicture ? missing : noisePicture());
        EXPECT_EQ(before == kOtherFrame ? rig.check(other) : before == kOtherSettings ? rig.check(frame) : "", "");
        if (before == kOtherSettings) rig.put({.whiten = 80, .radius = 33});
        if (before == kOtherSettings) rig.filter.threadCount = 5;
        model::Filter next = rig.expected;
        const Frame::Memory untouched = frame.content();
        const Frame::Memory predicted = frame.predict(next);
        const int result = runWithout({n, n + alsoFailing}, {}, frame, rig.filter);
        requests = memoryFault.requests;
        EXPECT_TRUE(result == 0 || (result == -1 && n < requests)) << result;
        EXPECT_EQ(frame.difference(result == 0 ? predicted : untouched), "") << "result " << result;
        if (result == 0) rig.expected = next;
        failures += result == -1;
        EXPECT_EQ(n % 2 == 0 ? rig.check(other) : "", "");
        EXPECT_EQ(rig.check(frame) + rig.check(other), "");
        EXPECT_TRUE(before >= kOtherFrame || rig.loader.calls == rig.expected.loads());
      }
      EXPECT_GE(failures, 3) << "allocations of the engine do not come through this executable";
    }
  }
}

// Every run of threads that do not start, none and all of them included.
TEST_P(FailingFrames, WithoutThreadsTheFrameIsComplete) {
  Random random(52);
  constexpr int kThreads = 4;
  for (const int height : {200, 61, 9}) {
    Rig rig(kThreads);
    rig.put({.radius = 16});
    for (int first = 0; first <= kThreads; ++first) {
      for (int last = first; last <= kThreads; ++last) {
        const Frame frame(GetParam(), 50, height, true, random);
        const Frame::Memory predicted = frame.predict(rig.expected);
        EXPECT_EQ(runWithout({}, {first, last}, frame, rig.filter), 0);
        EXPECT_EQ(frame.difference(predicted), "") << "without threads " << first << " to " << last;
      }
    }
  }
}

TEST_P(FailingFrames, AFrameStartsItsThreadsAndASteadyOneAllocatesNothing) {
  Random random(53);
  for (const int threads : {1, 4, 7}) {
    Rig rig(threads);
    const Frame frame(GetParam(), 640, 480, true, random);
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(runWithout({}, {}, frame, rig.filter), 0);
      EXPECT_EQ(threadFault.requests.load(), threads);
    }
    EXPECT_EQ(memoryFault.requests.load(), 0);
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, FailingFrames, testing::ValuesIn(kKinds));

TEST(FrameMemory, NeitherGrowsWithTheNumberOfFramesNorOutlivesTheFilter) {
  Random random(54);
  const Frame frames[] = {Frame(kVideoInPlace, 64, 48, true, random), Frame(kBgraToPixels, 90, 40, false, random),
                          Frame(kVideoToPixels, 33, 70, true, random)};
  EXPECT_EQ(Rig(4).check(frames[0]), "");  // the C library keeps something of its first threads
  for (const int kinds : {1, 3}) {
    const long long before = liveBytes;
    {
      Rig rig(4);
      long long settled = 0;
      for (int i = 0; i < 600; ++i) {
        if (kinds > 1) rig.filter.radius = i / 3 % 2 == 0 ? 20 : 40;
        EXPECT_EQ(frames[i % kinds].run(rig.filter), 0);
        if (i == 29) settled = liveBytes;
      }
      EXPECT_EQ(liveBytes, settled) << kinds << " kinds of frames";
    }
    EXPECT_EQ(liveBytes, before) << "left behind by a filter";
  }
}

}  // namespace
}  // namespace frame_rig
