/// The engine object as hosts that hold a pointer to it see it.
#include <vlvk/CMakeupEngine3.h>

#include <sys/mman.h>
#include <unistd.h>

#include <new>

#include "tests/bindings/engine.h"

namespace bindings_tests {
namespace {

const Calls kLoaderDropped{"DeleteWeakGlobalRef weak loader"};

template <class Result, class... Arguments>
Result callSlot(void* object, std::size_t slot, Arguments... arguments) {
  auto* function = (*static_cast<void***>(object))[slot];
  return reinterpret_cast<Result (*)(void*, Arguments...)>(function)(object, arguments...);
}

TEST(EngineObject, FieldsAndVirtualSlotsStandInOrder) {
  for (const bool isOnHeap : {false, true}) {
    FakeJava java;
    alignas(CMakeupEngine3) unsigned char memory[sizeof(CMakeupEngine3)];
    auto* engine = isOnHeap ? new CMakeupEngine3 : ::new (memory) CMakeupEngine3;
    void** words = reinterpret_cast<void**>(engine);
    CFastEdgePreserved* filter = engine->filter;
    const std::vector<void*> fresh{filter, nullptr, nullptr};
    EXPECT_EQ(sizeof *engine, 4 * sizeof(void*));
    EXPECT_EQ(filter->threadCount, 4);
    EXPECT_EQ(filter->loader, engine);
    EXPECT_EQ(std::vector(words + 1, words + 4), fresh);
    unsigned char dst[1] = {};
    for (const bool missesEnv : {true, false}) {
      words[2] = missesEnv ? nullptr : java.env();
      words[3] = missesEnv ? java.loader() : nullptr;
      EXPECT_EQ((callSlot<int, const char*, unsigned char*>(engine, 0, "a.vlk", dst)), -1);
    }
    EXPECT_EQ(java.takeCalls(), Calls{});
    EXPECT_EQ((callSlot<int, JNIEnv*, jobject>(engine, 3, java.env(), java.loader())), 1);
    EXPECT_EQ(words[2], java.env());
    EXPECT_NE(words[3], nullptr);
    EXPECT_EQ((callSlot<int, const char*, unsigned char*>(engine, 0, "a.vlk", dst)), 0);
    java.takeCalls();
    callSlot<void>(engine, isOnHeap ? 2 : 1);  // the deleting destructor, the destructor alone
    EXPECT_EQ(java.takeCalls(), kLoaderDropped);
    if (!isOnHeap) {
      EXPECT_EQ(std::vector(words + 1, words + 4), fresh);
    } else if (kHandleIsNarrow) {
      EXPECT_EQ(msync(words, sizeof *engine, MS_ASYNC), -1) << "the engine's memory is still there";
    }
    delete filter;
  }
}

using Ranges = std::vector<std::pair<char*, std::size_t>>;

/// Takes a range of addresses whole, or what is free of its halves.
void take(char* begin, std::size_t size, std::size_t page, Ranges* taken) {
  constexpr int kFlags = MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_FIXED_NOREPLACE;
  if (mmap(begin, size, PROT_NONE, kFlags, -1, 0) == begin) {
    taken->emplace_back(begin, size);
  } else if (size > page) {
    const std::size_t half = size / page / 2 * page;
    take(begin, half, page, taken);
    take(begin + half, size - half, page, taken);
  }
}

TEST(Handle, TheOnlyFreePageIsFound) {
  if (!kHandleIsNarrow) GTEST_SKIP() << "any address will do";
  FakeJava java;
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  Ranges taken;
  take(reinterpret_cast<char*>(page), (std::size_t{1} << 31) - page, page, &taken);
  EXPECT_EQ(makeup_Init(java.env(), nullptr, java.loader()), 0);
  EXPECT_EQ(java.takeCalls(), Calls{});
  for (char* free : {taken.front().first, taken.back().first + taken.back().second - page}) {
    munmap(free, page);
    const Engine engine(java);
    EXPECT_EQ(engine.handle, reinterpret_cast<jlong>(free));
  }
  for (const auto& [begin, size] : taken)
    munmap(begin, size);
}

TEST(EngineObject, DestructionLeavesAFilterThatWorks) {
  FakeJava java;
  FakeJava otherThread;
  java.file = kPictureFile;
  const jlong handle = makeup_Init(java.env(), nullptr, java.loader());
  const std::unique_ptr<CFastEdgePreserved> filter(vlvk::engineOf(handle)->filter);
  for (const bool isDestroyed : {false, true}) {
    Bytes frame = skinFrame(64, 48, 1);
    Bytes expected = frame;
    EXPECT_EQ(filter->processVideo(frame.data(), 64, &frame[64 * 48], 64, 64, 48, nullptr, 0, true), 0);
    processDirectly(expected, 64, 48);
    EXPECT_EQ(frame, expected);
    java.takeCalls();
    if (!isDestroyed) makeup_Uninit(otherThread.env(), nullptr, handle);
    EXPECT_EQ(java.takeCalls(), isDestroyed ? Calls{} : kLoaderDropped);
  }
}

}  // namespace
}  // namespace bindings_tests
