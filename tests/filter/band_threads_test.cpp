/// The phases of a frame: each task runs once, and none before all of the phase before it are over.
#include "filter/band_threads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

namespace vlvk {
namespace {

/// How often each task of three phases ran, and how many tasks began too early.
struct Record {
  static constexpr int kTasks[] = {1, 9, 4};

  std::atomic<int> runs[3][9] = {};
  std::atomic<int> finished{0}, early{0};
};

/// The last task of a phase takes longer than threads need to find that no other is left.
template <int kPhase>
void run(const void* frame, int task) {
  Record& record = **static_cast<Record* const*>(frame);
  int before = 0;
  for (int phase = 0; phase < kPhase; ++phase)
    before += Record::kTasks[phase];
  if (record.finished < before) ++record.early;
  if (task == Record::kTasks[kPhase] - 1) std::this_thread::sleep_for(std::chrono::milliseconds(3));
  ++record.runs[kPhase][task];
  ++record.finished;
}

TEST(BandThreads, APhaseBeginsWhenTheOneBeforeItIsOver) {
  constexpr Phase kPhases[] = {{run<0>, Record::kTasks[0]}, {run<1>, Record::kTasks[1]}, {run<2>, Record::kTasks[2]}};
  for (const int threads : {0, 1, 2, 7}) {
    for (int repeat = 0; repeat < 5; ++repeat) {
      Record record;
      Record* const frame = &record;
      std::vector<BandThread> room(static_cast<std::size_t>(threads));
      runPhases(kPhases, 3, &frame, room.data(), threads);
      EXPECT_EQ(record.early, 0) << threads;
      for (int phase = 0; phase < 3; ++phase) {
        for (int task = 0; task < 9; ++task)
          EXPECT_EQ(record.runs[phase][task], task < Record::kTasks[phase] ? 1 : 0) << threads;
      }
    }
  }
}

}  // namespace
}  // namespace vlvk
