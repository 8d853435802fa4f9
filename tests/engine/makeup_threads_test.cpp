/// The handle's calls on several threads at once.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

#include "tests/engine/makeup_rig.h"

namespace makeup_rig {
namespace {

// Every frame has the settings and the table of one moment; the memory of table and frames may be gone afterwards.
TEST(MakeupThreads, MayChangeSettingsWhileFramesRun) {
  Random random(312);
  const VlvkSettings settings[] = {settingsOf(0, 1000, 8), settingsOf(100, 300, 24, 3)};
  const Picture source(VLVK_I420, 0, 72, 50, random);
  std::vector<Bytes> results;
  for (int i = 0; i < 4; ++i) {
    Engine one(settings[i % 2]);
    one.hasTable = i >= 2;
    results.push_back(one.predict(source, Picture(VLVK_RGB, 0, 72, 50))[0]);
  }
  const Engine engine(settings[0]);
  std::atomic<int> running = 2;
  const auto processFrames = [&] {
    for (int i = 0; i < 60; ++i) {
      const Picture target(VLVK_RGB, 0, 72, 50);
      EXPECT_EQ(engine.process(source, target), VLVK_OK);
      EXPECT_NE(std::find(results.begin(), results.end(), target.planes[0].bytes()), results.end()) << "frame " << i;
    }
    --running;
  };
  std::thread first(processFrames);
  std::thread second(processFrames);
  for (int i = 0; running > 0; ++i) {
    EXPECT_EQ(vlvkMakeupConfigure(engine.makeup, &settings[i % 2]), VLVK_OK);
    const Bytes table = i / 2 % 2 == 0 ? Bytes() : tableFile();
    EXPECT_EQ(vlvkMakeupSetTable(engine.makeup, table.data(), table.size()), VLVK_OK);
  }
  first.join();
  second.join();
}

}  // namespace
}  // namespace makeup_rig
