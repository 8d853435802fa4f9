/// What hosts do while frames run: they change settings from other threads and from the loader, and hand frames over
/// from several threads. The thread sanitizer watches the same tests.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <deque>
#include <thread>
#include <vector>

#include "tests/frames/frame_rig.h"

namespace frame_rig {
namespace {

/// One of two choices for each setting.
model::Settings mixed(unsigned choice) {
  return {.whiten = (choice & 1) != 0 ? 90 : 10,
          .soften = (choice & 2) != 0 ? 1000 : 200,
          .radius = (choice & 4) != 0 ? 24 : 8,
          .colorAdjust = (choice & 8) != 0 ? 100 : 0};
}

/// Radius and threads have no setters; hosts store into the fields.
void put(CFastEdgePreserved& f, const model::Settings& s, int threads) {
  f.put_whitenIntensity(s.whiten);
  f.put_softenSkinIntensity(s.soften);
  std::atomic_ref(f.radius).store(s.radius);
  std::atomic_ref(f.threadCount).store(threads);
  f.put_colorAdjustIntensity(s.colorAdjust);
}

/// The same frame again and again, and all that it may become.
struct Stream {
  Stream(Kind kind, bool rgbOrder, Random& random) : frame(kind, 70, 50, rgbOrder, random), content(frame.content()) {
    for (unsigned choice = 0; choice < 16; ++choice) {
      model::Filter expected(&noisePicture());
      expected.put(mixed(choice));
      possible.push_back(frame.predict(expected));
    }
  }

  void run(Filter& filter) const {
    for (int n = 0; n < 12 && !testing::Test::HasFailure(); ++n) {
      frame.put(content);
      EXPECT_EQ(frame.run(filter), 0);
      EXPECT_TRUE(std::ranges::any_of(possible, [&](const auto& p) { return frame.difference(p).empty(); }));
    }
  }

  Frame frame;
  Frame::Memory content;
  std::vector<Frame::Memory> possible;
};

// Two filters, the first frames of which choose the target at the same time; for each of them two threads with frames,
// which take turns; two hosts at both.
TEST(FramePipeline, SettingsChangedDuringFramesNeverMixWithinOne) {
  Random random(41);
  const Stream streams[] = {{kVideoToPixels, false, random},
                            {kBgraToPixels, false, random},
                            {kVideoInPlace, true, random},
                            {kBgraOntoItself, false, random}};
  Rig rigs[] = {Rig(2), Rig(2)};
  for (Rig& rig : rigs)
    put(rig.filter, mixed(0), 2);
  std::atomic<bool> stop{false};
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < 4; ++i)
    threads.emplace_back([&, i] { streams[i].run(rigs[i / 2].filter); });
  std::vector<std::thread> hosts;
  for (unsigned i = 0; i < 2; ++i) {
    hosts.emplace_back([&, i] {
      for (unsigned choice = i; !stop; choice = choice * 5 + 3) {
        put(rigs[choice >> 12 & 1].filter, mixed(choice >> 8), 1 + static_cast<int>(choice >> 13 & 3));
        std::this_thread::yield();
      }
    });
  }
  for (auto& thread : threads)
    thread.join();
  stop = true;
  for (auto& host : hosts)
    host.join();
}

// The loader is asked in the middle of a frame: what it changes then belongs to the next frame, whole.
TEST(FramePipeline, SettingsChangedByTheLoaderReachTheNextFrame) {
  Random random(42);
  Rig rig(1);
  rig.put(mixed(0));
  for (const unsigned change : {1U, 2U, 7U, 8U, 15U, 12U}) {
    rig.loader.onCall = [&] { put(rig.filter, mixed(change), 1 + static_cast<int>(change % 3)); };
    for (int i = 0; i < 2; ++i) {  // the first asks the loader in any case, because the order is another one
      EXPECT_EQ(rig.check(Frame(kVideoToPixels, 40, 48, change % 2 == 1, random)), "");
      rig.expected.put(mixed(change));
    }
  }
}

}  // namespace
}  // namespace frame_rig
