/// The handle when memory runs out or threads do not start, and what it asks of the system at all.
#include <gtest/gtest.h>

#include "tests/engine/makeup_rig.h"
#include "tests/support/failing_system.h"

namespace makeup_rig {
namespace {

using testing_support::liveBytes;
using testing_support::memoryFault;
using testing_support::threadFault;

/// The result of a call whose n-th allocation fails; the fault counts what it asks for.
template <class Call>
VlvkResult withoutAllocation(int n, Call call) {
  memoryFault.arm(n, n);
  const VlvkResult result = call();
  memoryFault.armed = false;
  return result;
}

/// Settings with each option that has buffers or tables of its own, by bits.
VlvkSettings withOptions(VlvkSettings settings, int options) {
  settings.contrast = options & 1;
  settings.whitenArea = options / 2 & 1;
  settings.evenTone = (options / 4 & 1) * 700;
  if ((options & 8) != 0) settings.radius = VLVK_RADIUS_AUTO;
  return settings;
}

// Each allocation of a frame in turn: of the first frame, after a smaller one, and with a new table.
TEST(FailingMakeup, WithoutMemoryNothingChangesAndTheNextFramesAreRight) {
  Random random(321);
  tableFile();
  Byte any = 0;
  auto* makeup = reinterpret_cast<VlvkMakeup*>(&any);
  EXPECT_EQ(withoutAllocation(0, [&] { return vlvkMakeupCreate(&makeup, nullptr); }), VLVK_NO_MEMORY);
  EXPECT_EQ(makeup, nullptr);
  for (int i = 0; i < 3 * 9; ++i) {
    const bool hasTable = i >= 18;
    VlvkResult result = VLVK_NO_MEMORY;
    for (int n = 0; result == VLVK_NO_MEMORY && !testing::Test::HasFailure(); ++n) {
      Engine engine(withOptions(settingsOf(70, 1000, 24, 3), i));
      const Picture small(kFormats[i % 9], 1, 17, 9, random);
      const Picture picture(kFormats[i % 9], 1, 61, 47, random);
      EXPECT_EQ(i < 9 ? "" : engine.check(small, small), "");
      if (hasTable) {
        EXPECT_EQ(withoutAllocation(0, [&] { return engine.setTable(true); }), VLVK_NO_MEMORY);
        EXPECT_EQ(engine.check(small, small), "") << "the table of before";
        EXPECT_EQ(engine.setTable(true), VLVK_OK);
      }
      const Picture::Memory untouched = picture.content();
      result = withoutAllocation(n, [&] { return engine.process(picture, picture); });
      EXPECT_EQ(result, n < memoryFault.requests ? VLVK_NO_MEMORY : VLVK_OK);
      EXPECT_EQ(result == VLVK_OK ? "" : picture.difference(untouched), "");
      EXPECT_EQ(engine.check(small, small), "") << n;  // first: it would fit into what was too small
      EXPECT_EQ(engine.check(picture, picture), "") << n;
      EXPECT_TRUE(result != VLVK_OK || n >= 2) << "allocations of the engine do not come through this executable";
    }
  }
}

TEST(FailingMakeup, WithoutThreadsTheFrameIsCompleteAndTheNextOneAsksAgain) {
  Random random(322);
  for (const int format : kFormats) {
    for (const int first : {0, 1, 2}) {
      const Engine engine(settingsOf(50, 1000, 16, 4));
      const Picture picture(format, 0, 50, 61, random);
      const auto threadsAskedFor = [&] {
        threadFault.arm(first, first);
        EXPECT_EQ(engine.check(picture, picture), "") << "without thread " << first;
        threadFault.armed = false;
        return threadFault.requests.load();
      };
      EXPECT_GT(threadsAskedFor(), first);
      threadsAskedFor();
      threadsAskedFor();
      EXPECT_EQ(threadsAskedFor(), 0) << "threads that are there stay";
    }
  }
}

TEST(FailingMakeup, OneThreadAsksForNone) {
  Random random(324);
  const Engine engine(settingsOf(50, 1000, 16, 1));
  const Picture picture(VLVK_NV12, 0, 50, 61, random);
  threadFault.arm(0, 9);
  EXPECT_EQ(engine.check(picture, picture), "");
  threadFault.armed = false;
  EXPECT_EQ(threadFault.requests, 0);
}

TEST(MakeupMemory, ASteadyFrameAllocatesNothingAndDestroyLeavesNothing) {
  tableFile();
  Random random(323);
  const Mask mask(9, 7, random);
  const long long before = liveBytes;
  for (int i = 0; i < 1000; ++i) {
    Engine engine(withOptions(settingsOf(50, 1000, 20, 1), i));
    EXPECT_EQ(engine.setTable(i % 50 == 0), VLVK_OK);
    engine.mask = (i & 16) != 0 ? &mask.mask : nullptr;
    for (const int format : kFormats) {
      const Picture picture(format, 0, 21 + i % 12, 13);
      EXPECT_EQ(engine.process(picture, picture), VLVK_OK);
      EXPECT_EQ(withoutAllocation(0, [&] { return engine.process(picture, picture); }), VLVK_OK);
      ASSERT_EQ(memoryFault.requests, 0) << format;
    }
  }
  EXPECT_EQ(liveBytes, before);
}

}  // namespace
}  // namespace makeup_rig
