/// What hosts do while frames run: they change settings from other threads and from the loader, and answer the loader's
/// question in every way. The thread sanitizer watches the same tests.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <climits>
#include <deque>
#include <stdexcept>
#include <thread>
#include <vector>

#include "tests/frames/frame_support.h"

namespace frame_tests {
namespace {

/// Two choices for each setting, and what a host does to put a mixture of them.
struct Toggled {
  model::Settings off{.whiten = 10, .soften = 200, .radius = 8, .colorAdjust = 0};
  model::Settings on{.whiten = 90, .soften = 1000, .radius = 24, .colorAdjust = 100};

  model::Settings mixed(unsigned choice) const {
    return {.whiten = (choice & 1 ? on : off).whiten,
            .soften = (choice & 2 ? on : off).soften,
            .radius = (choice & 4 ? on : off).radius,
            .colorAdjust = (choice & 8 ? on : off).colorAdjust};
  }

  /// Radius and threads have no setters; hosts store into the fields.
  static void put(CFastEdgePreserved& f, const model::Settings& s, int threads) {
    f.put_whitenIntensity(s.whiten);
    f.put_softenSkinIntensity(s.soften);
    std::atomic_ref(f.radius).store(s.radius);
    std::atomic_ref(f.threadCount).store(threads);
    f.put_colorAdjustIntensity(s.colorAdjust);
  }
};

/// A frame and all that it may become.
struct Candidate {
  Candidate(Kind kind, Random& random) : frame(kind, 70, 50, kind == Kind::kInPlace, random) {}

  void check(CFastEdgePreserved& filter) {
    EXPECT_EQ(frame.run(filter), 0);
    EXPECT_TRUE(std::any_of(possible.begin(), possible.end(), [&](const auto& p) { return bool{frame.holds(p)}; }))
        << frame.describe();
    frame.reset();
  }

  Frame frame;
  std::vector<Frame::Memory> possible;
};

// Two filters with a stream of frames each, the first of which choose the target at the same time; two hosts at both.
TEST(Host, SettingsChangedDuringFramesNeverMixWithinOne) {
  Random random(41);
  const Kind kinds[2][2] = {{Kind::kToPixels, Kind::kBgra}, {Kind::kInPlace, Kind::kBgraOntoItself}};
  std::array<std::deque<Candidate>, 2> candidates;
  Rig rigs[] = {Rig(2), Rig(2)};
  for (std::size_t i = 0; i < 2; ++i) {
    candidates[i].emplace_back(kinds[i][0], random);
    candidates[i].emplace_back(kinds[i][1], random);
    Toggled::put(rigs[i].filter, Toggled().off, 2);
  }
  for (unsigned choice = 0; choice < 16; ++choice) {
    model::Filter expected(&noisePicture());
    expected.put(Toggled().mixed(choice));
    for (auto& own : candidates) {
      for (Candidate& candidate : own)
        candidate.possible.push_back(candidate.frame.predict(expected));
    }
  }

  std::atomic<bool> stop{false};
  std::vector<std::thread> streams;
  std::vector<std::thread> hosts;
  for (std::size_t i = 0; i < 2; ++i) {
    streams.emplace_back([&, i] {
      for (std::size_t n = 0; n < 24 && !testing::Test::HasFailure(); ++n)
        candidates[i][n / 3 % 2].check(rigs[i].filter);
    });
    hosts.emplace_back([&, i] {
      for (auto choice = static_cast<unsigned>(i); !stop; choice = choice * 5 + 3) {
        Toggled::put(rigs[choice >> 12 & 1].filter, Toggled().mixed(choice >> 8 & 15), 1 + (choice >> 13 & 3));
        std::this_thread::yield();
      }
    });
  }
  for (auto& stream : streams)
    stream.join();
  stop = true;
  for (auto& host : hosts)
    host.join();
}

// The loader is asked in the middle of a frame: what it changes then belongs to the next frame, whole.
TEST(Host, SettingsChangedByTheLoaderReachTheNextFrame) {
  Random random(42);
  Rig rig(1);
  rig.put(Toggled().off);
  for (const unsigned change : {1U, 2U, 7U, 8U, 15U, 12U}) {
    const model::Settings next = Toggled().mixed(change);
    rig.loader.onCall = [&] { Toggled::put(rig.filter, next, 1 + static_cast<int>(change % 3)); };
    for (int i = 0; i < 2; ++i) {  // the first asks the loader in any case, because the order is another one
      Frame frame(Kind::kToPixels, 40, 48, change % 2 == 1, random);
      rig.check(frame);
      rig.expected.put(next);
    }
  }
}

/// Writes part of the picture, then answers as it is told to.
struct Answer final : IBeautyResourceLoader {
  Answer(std::size_t size, int answer, bool fails) : written(size), result(answer), throws(fails) {}

  int getResFromName(const char* /*name*/, unsigned char* dst) override {
    std::copy_n(noisePicture().payload.begin(), written, dst);
    if (throws && result == 0) throw 0;
    if (throws) throw std::runtime_error("no picture today");
    return result;
  }

  std::size_t written;
  int result;
  bool throws;
};

// Any answer below zero, and any exception, is a missing picture, however much of it was written; any other is one.
TEST(Host, TheLoaderMayAnswerAnything) {
  for (const std::size_t written : {std::size_t{4 * 512 * 300 + 3}, model::kPictureSize}) {
    for (Answer loader : {Answer{written, 1, false},
                          {written, INT_MAX, false},
                          {written, -2, false},
                          {written, INT_MIN, false},
                          {written, 0, true},
                          {written, 1, true}}) {
      SCOPED_TRACE(testing::Message() << written << " bytes, answer " << loader.result
                                      << (loader.throws ? " thrown" : ""));
      model::Resource resource{loader.result >= 0 && !loader.throws, noisePicture().payload};
      resource.payload.resize(written);
      Random random(43);
      CFastEdgePreserved filter(2, &loader);
      model::Filter expected(&resource);
      for (const int step : {0, 1, 2, 3}) {  // step 2 asks again, for the other order
        Frame frame(step == 3 ? Kind::kInPlace : Kind::kToPixels, 48, 32, step < 2, random);
        frame.predict(expected);
        EXPECT_EQ(frame.run(filter), 0);
        EXPECT_TRUE(frame.isPredicted()) << ", step " << step;
      }
    }
  }
}

}  // namespace
}  // namespace frame_tests
