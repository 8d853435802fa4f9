/// Thousands of frames of changing sizes and settings through several engines at once: memory stays flat, threads end,
/// handles stay valid, and the last frames are as right as the first.
#include <gtest/gtest.h>
#include <malloc.h>
#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include "tests/bindings/engine.h"
#include "tests/support/plane.h"

namespace bindings_tests {
namespace {

using testing_support::Random;

/// Sanitizers and emulators, where the run is shorter, hold memory of their own.
constexpr bool kWholeRun = VLVK_LONG_RUN_FRAMES >= 10000;

constexpr int kWidest = 200;
constexpr int kHighest = 150;

/// One engine, the frames that it is given, and the settings that it has by then. Its arrays are as large as the
/// largest frame; each call takes what the one before it left.
class Stream {
 public:
  explicit Stream(std::uint32_t seed) : random_(seed), pixels_(noise(std::size_t{kWidest} * kHighest * 4, seed)) {
    java_.file = resourceFile(pictureFactors(), noisePicture());
    renewEngine();
    frame_ = java_.byteArray(skinFrame(kWidest, kHighest, seed));
    rgba_ = java_.intArray(pixels_);
  }

  void run(int frames) {
    for (int i = 0; i < frames && !testing::Test::HasFailure(); ++i) {
      if (random_.between(0, 999) == 0) renewEngine();
      if (random_.between(0, 7) == 0) changeSettings();
      const int width = random_.between(0, kWidest);
      const int height = random_.between(0, kHighest);
      for (int steady = random_.between(0, 2); steady >= 0; --steady, ++i)
        EXPECT_EQ(process(width, height), 0) << width << " x " << height;
      java_.takeCalls();
    }
  }

  /// Brings the engine to a state that depends on nothing before.
  void park() {
    put({50, 1000, 100, 20});
    EXPECT_EQ(makeup_ProcessVideo2(java_.env(), nullptr, engine_->handle, frame_, 64, 48), 0);
    EXPECT_EQ(engine_->filter->processBGRAVideo(pixels_.data(), 64, 48, 64 * 4, nullptr, 0), 0);
    EXPECT_EQ(vlvk::engineOf(engine_->handle)->filter, engine_->filter);
    java_.takeCalls();
  }

  /// Frames like those of a filter that has seen nothing yet.
  void expectRight() {
    for (const auto& [width, height] : {std::pair{kWidest, kHighest}, {33, 70}}) {
      for (const std::vector<int>& settings : {std::vector{50, 1000, 100, 20}, {85, 600, 0, 40}, {10, 300, 100, 8}}) {
        SCOPED_TRACE(testing::Message() << width << " x " << height << ", whiten " << settings[0]);
        put(settings);
        DirectFilter direct(&noisePicture());
        put(direct.filter, settings);
        Bytes frame = skinFrame(width, height, 21);
        Bytes expected = frame;
        EXPECT_EQ(engine_->filter->processVideo(frame.data(), width, &frame[static_cast<std::size_t>(width * height)],
                                                width, width, height, nullptr, 0, true),
                  0);
        EXPECT_EQ(direct.process(expected.data(), width, height), 0);
        EXPECT_TRUE(testing_support::sameBytes(frame.data(), expected.data(), frame.size(), width));
      }
    }
  }

 private:
  void renewEngine() {
    engine_.reset();
    engine_ = std::make_unique<Engine>(java_);
  }

  /// Whitening, softening, colour adjustment, radius.
  static void put(CFastEdgePreserved& filter, const std::vector<int>& settings) {
    filter.put_whitenIntensity(settings[0]);
    filter.put_softenSkinIntensity(settings[1]);
    filter.put_colorAdjustIntensity(settings[2]);
    filter.radius = settings[3];
  }
  void put(const std::vector<int>& settings) { put(*engine_->filter, settings); }

  void changeSettings() {
    put({random_.between(0, 100), random_.pick({1000, 400, 0}), random_.pick({100, 0}), random_.between(0, 60)});
  }

  int process(int width, int height) {
    JNIEnv* env = java_.env();
    switch (random_.between(0, 3)) {
      case 0:
        return makeup_ProcessVideo2(env, nullptr, engine_->handle, frame_, width, height);
      case 1:
        return makeup_ProcessVideo3(env, nullptr, engine_->handle, frame_, width, height, rgba_);
      case 2:
        return engine_->filter->processBGRAVideo(pixels_.data(), width, height, kWidest * 4, nullptr, 0);
      default:
        return engine_->filter->processBGRAVideo(pixels_.data(), width, height, kWidest * 4, pixels_.data(),
                                                 kWidest * 4);
    }
  }

  Random random_;
  FakeJava java_;
  std::unique_ptr<Engine> engine_;
  jbyteArray frame_ = nullptr;
  jintArray rgba_ = nullptr;
  Bytes pixels_;
};

/// What the process holds, in bytes; allocated is 0 where the C library does not tell.
struct Held {
  std::size_t allocated = 0;
  std::size_t mapped = 0;
  std::size_t resident = 0;

  static Held now() {
    Held held;
#ifdef __GLIBC__
    const struct mallinfo2 info = mallinfo2();
    held.allocated = info.uordblks + info.hblkhd;
#endif
    std::ifstream("/proc/self/statm") >> held.mapped >> held.resident;
    held.mapped *= static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    held.resident *= static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return held;
  }
};

std::ptrdiff_t threadCount() {
  const std::filesystem::directory_iterator threads("/proc/self/task");
  return std::distance(begin(threads), end(threads));
}

TEST(LongRun, MemoryStaysFlatThreadsEndAndFramesStayRight) {
  constexpr int kStreams = 4;
  std::vector<std::unique_ptr<Stream>> streams;
  for (std::uint32_t i = 0; i < kStreams; ++i)
    streams.push_back(std::make_unique<Stream>(70 + i));
  const auto runAll = [&](int frames) {
    std::vector<std::thread> callers;
    callers.reserve(kStreams);
    for (auto& stream : streams)
      callers.emplace_back([&] { stream->run(frames / kStreams); });
    for (auto& caller : callers)
      caller.join();
    for (auto& stream : streams)
      stream->park();
    return Held::now();
  };
  std::thread([] {}).join();  // the thread sanitizer starts a thread of its own with the first one
  const std::ptrdiff_t threadsAtRest = threadCount();
  const Held settled = runAll(VLVK_LONG_RUN_FRAMES / 5);
  const Held atEnd = runAll(VLVK_LONG_RUN_FRAMES * 4 / 5);
  // A thread that was joined is listed for a moment longer.
  for (int wait = 0; wait < 500 && threadCount() > threadsAtRest; ++wait)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  EXPECT_LE(threadCount(), threadsAtRest);
  if (kWholeRun) {
    EXPECT_LT(atEnd.allocated, settled.allocated + (1U << 18)) << "grew by 32 bytes a frame or more";
    EXPECT_LT(atEnd.resident, settled.resident + (1U << 24));
    EXPECT_LT(atEnd.mapped, settled.mapped + (1U << 26)) << "stacks of threads, at 8 MiB each";
  }
  for (auto& stream : streams)
    stream->expectRight();
}

}  // namespace
}  // namespace bindings_tests
