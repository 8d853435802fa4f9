/// The handle's calls on several threads at once.
#include <gtest/gtest.h>

#include <pthread.h>
#include <sched.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "tests/engine/makeup_rig.h"

#if defined(__SANITIZE_THREAD__)
#define VLVK_TESTS_THREAD_SANITIZER 1
#elif defined(__has_feature)  // clang
#define VLVK_TESTS_THREAD_SANITIZER __has_feature(thread_sanitizer)
#endif

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

// Fewer and more threads than before, each frame on a thread that is new.
TEST(MakeupThreads, FollowTheSettingsAndServeEveryCaller) {
  Random random(313);
  Engine engine(settingsOf(50, 1000, 16, 1));
  for (const int threads : {5, 2, 1, 8, 3, 8}) {
    engine.put(settingsOf(50, 1000, 16, threads));
    const Picture picture(VLVK_NV21, 0, 50, 91, random);
    std::thread([&] { EXPECT_EQ(engine.check(picture, picture), "") << threads; }).join();
  }
}

// A child has the handle and none of its threads; the parent keeps them. A sanitizer of threads ends a child that
// starts threads.
TEST(MakeupThreads, AreTheirOwnInAProcessThatForked) {
#if VLVK_TESTS_THREAD_SANITIZER
  GTEST_SKIP();
#endif
  Random random(314);
  auto* engine = new Engine(settingsOf(50, 1000, 16, 4));
  const Picture picture(VLVK_NV21, 0, 50, 91, random);
  EXPECT_EQ(engine->check(picture, picture), "");
  for (const bool hasFrames : {true, false}) {
    const pid_t child = fork();
    if (child == 0) {
      alarm(20);
      for (int i = 0; hasFrames && i < 3; ++i) {
        if (!engine->check(picture, picture).empty()) _exit(1);
      }
      delete engine;
      _exit(0);
    }
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(engine->check(picture, picture), "");
  }
  delete engine;
}

#if defined(__linux__)
/// Whether a thread of the process, other than the calling one, may run on just these processors.
bool aThreadHas(const cpu_set_t& processors) {
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    const int thread = std::stoi(task.path().filename());
    cpu_set_t its;
    if (thread != getpid() && sched_getaffinity(thread, sizeof its, &its) == 0 && CPU_EQUAL(&its, &processors))
      return true;
  }
  return false;
}

// A caller that is bound to a processor must not find the threads bound to the same one.
TEST(MakeupThreads, LeaveTheCallersProcessor) {
  cpu_set_t all;
  ASSERT_EQ(sched_getaffinity(0, sizeof all, &all), 0);
  if (CPU_COUNT(&all) < 2) GTEST_SKIP();
  Random random(316);
  const Engine engine(settingsOf(50, 1000, 16, 2));
  const Picture picture(VLVK_NV21, 0, 50, 91, random);
  EXPECT_EQ(engine.check(picture, picture), "");
  int tried = 0;
  for (int processor = 0; processor < CPU_SETSIZE && tried < 3; ++processor) {
    if (!CPU_ISSET(processor, &all)) continue;
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(processor, &one);
    ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
    cpu_set_t others = all;
    CPU_CLR(processor, &others);
    bool left = false;
    for (int i = 0; i < 200 && !left; ++i) {  // the thread may not have started yet
      EXPECT_EQ(engine.check(picture, picture), "");
      left = aThreadHas(others);
    }
    EXPECT_TRUE(left) << processor;
    sched_setaffinity(0, sizeof all, &all);
    ++tried;
  }
}
#endif

// A host may block a signal in its threads to wait for it: no other thread may take it then. One that a thread may
// cause itself has to be blocked before there are threads.
TEST(MakeupThreads, LeaveSignalsOfTheProcessToTheHost) {
  sigset_t wanted;
  sigset_t before;
  sigemptyset(&wanted);
  sigaddset(&wanted, SIGPROF);
  pthread_sigmask(SIG_BLOCK, &wanted, &before);
  Random random(315);
  const Engine engine(settingsOf(50, 1000, 16, 4));
  const Picture picture(VLVK_NV21, 0, 50, 91, random);
  EXPECT_EQ(engine.check(picture, picture), "");
  sigaddset(&wanted, SIGUSR1);
  pthread_sigmask(SIG_BLOCK, &wanted, nullptr);
  for (const int sent : {SIGUSR1, SIGPROF}) {
    EXPECT_EQ(kill(getpid(), sent), 0);
    int signal = 0;
    EXPECT_EQ(sigwait(&wanted, &signal), 0);
    EXPECT_EQ(signal, sent);
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

}  // namespace
}  // namespace makeup_rig
