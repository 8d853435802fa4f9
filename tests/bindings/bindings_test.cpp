/// The engine as Java and native hosts see it: library hooks, handles, settings, frames, and the way a resource takes
/// through a Java stream.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <vlvk/CMakeupEngine3.h>
#include <vlvk/jni_library.h>
#include "tests/bindings/engine.h"
#include "tests/support/plane.h"

namespace bindings_tests {
namespace {

using testing_support::Guard;
using testing_support::GuardedBuffer;
using testing_support::sameBytes;

constexpr bool kHandleIsNarrow = sizeof(void*) > sizeof(std::int32_t);

// Taken before any test can load the library.
JNIEnv* const envBeforeLoad = JNU_GetEnv();

const Calls kLoadCalls{"GetEnv 65542", "FindClass com/velmira/VKMakeup/Engine",
                       "RegisterNatives com/velmira/VKMakeup/Engine"};

TEST(Library, LoadingRegistersFiveMethods) {
  EXPECT_EQ(envBeforeLoad, nullptr);
  FakeJava java;
  java.registerResult = 7;  // not negative
  EXPECT_EQ(JNI_OnLoad(java.vm(), nullptr), 0x10006);
  EXPECT_EQ(java.takeCalls(), kLoadCalls);
  struct Native {
    const char* name;
    const char* signature;
    void* function;
  };
  const Native expected[] = {
      {"Init", "(Ljava/lang/Object;)J", reinterpret_cast<void*>(makeup_Init)},
      {"Uninit", "(J)V", reinterpret_cast<void*>(makeup_Uninit)},
      {"setWhitenIntensity", "(JI)V", reinterpret_cast<void*>(makeup_setWhitenIntensity)},
      {"setSoftenSkinIntensity", "(JI)V", reinterpret_cast<void*>(makeup_setSoftenSkinIntensity)},
      {"ProcessVideo", "(J[BII)I", reinterpret_cast<void*>(makeup_ProcessVideo2)},
  };
  ASSERT_EQ(java.natives.size(), std::size(expected));
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_STREQ(java.natives[i].name, expected[i].name);
    EXPECT_STREQ(java.natives[i].signature, expected[i].signature);
    EXPECT_EQ(java.natives[i].fnPtr, expected[i].function) << expected[i].name;
  }
}

TEST(Library, AFailedLoadKeepsTheVirtualMachine) {
  for (std::size_t failing = 0; failing < 3; ++failing) {
    FakeJava before;
    FakeJava java;
    JNI_OnLoad(before.vm(), nullptr);
    if (failing == 0) java.getEnvResult = JNI_EVERSION;
    if (failing == 1) java.failing = {kLoadCalls[1]};
    if (failing == 2) java.registerResult = JNI_ERR;
    EXPECT_EQ(JNI_OnLoad(java.vm(), nullptr), -1);
    EXPECT_EQ(java.takeCalls(), Calls(kLoadCalls.begin(), kLoadCalls.begin() + static_cast<int>(failing) + 1));
    EXPECT_EQ(JNU_GetEnv(), java.env());
  }
}

TEST(Library, EnvIsWhatTheVirtualMachineStores) {
  FakeJava java;
  JNI_OnLoad(java.vm(), nullptr);
  JNI_OnUnload(java.vm(), nullptr);
  java.takeCalls();
  for (const jint result : {JNI_OK, JNI_EDETACHED}) {
    for (const bool stores : {true, false}) {
      java.getEnvResult = result;
      java.storesEnv = stores;
      EXPECT_EQ(JNU_GetEnv(), stores ? java.env() : nullptr) << result;
    }
  }
  EXPECT_EQ(java.takeCalls(), Calls(4, kLoadCalls[0]));
}

TEST(Handle, OnlyItsLowHalfCounts) {
  FakeJava java;
  const Engine engine(java);
  EXPECT_EQ(java.takeCalls(), Calls{"NewWeakGlobalRef loader"});
  if (kHandleIsNarrow) {
    EXPECT_GT(engine.handle, 0);
    EXPECT_LE(engine.handle, INT32_MAX);
  }
  int value = 0;
  for (const std::uint64_t high : {0U, 0xFFFFFFFFU, 0x80000000U, 0x12345678U}) {
    const auto handle = static_cast<jlong>(high << 32 | static_cast<std::uint32_t>(engine.handle));
    makeup_setWhitenIntensity(java.env(), nullptr, handle, ++value);
    EXPECT_EQ(engine.filter->whitenIntensity, value) << std::hex << high;
    makeup_Uninit(java.env(), nullptr, static_cast<jlong>(high << 32));  // no engine
  }
  EXPECT_EQ(java.takeCalls(), Calls{});

  auto* top = reinterpret_cast<CMakeupEngine3*>(std::uintptr_t{0x80001000});
  EXPECT_EQ(vlvk::handleOf(top), -0x7FFFF000LL);
  EXPECT_EQ(vlvk::engineOf(vlvk::handleOf(top)), top);
}

// Where 32-bit systems may put one; its handle is negative.
TEST(Handle, AnEngineAtAnAddressWithItsTopBitSetWorks) {
  constexpr std::size_t kBytes = 65536;  // whole pages, whatever their size
  void* memory = mmap(reinterpret_cast<void*>(std::uintptr_t{0x90000000}), kBytes, PROT_READ | PROT_WRITE,
                      MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED_NOREPLACE, -1, 0);
  if (memory == MAP_FAILED) GTEST_SKIP() << "the address is taken";
  FakeJava java;
  auto* engine = ::new (memory) CMakeupEngine3;
  CFastEdgePreserved* filter = engine->filter;
  ASSERT_EQ(vlvk::handleOf(engine), -0x70000000LL);
  makeup_setWhitenIntensity(java.env(), nullptr, vlvk::handleOf(engine), 3);
  makeup_setRaduis(java.env(), nullptr, 0x90000000LL, 5);
  EXPECT_EQ(filter->whitenIntensity, 3);
  EXPECT_EQ(filter->radius, 5);
  jbyteArray frame = java.byteArray(Bytes(16 * 8 * 3 / 2, 99));
  EXPECT_EQ(makeup_ProcessVideo2(java.env(), nullptr, vlvk::handleOf(engine), frame, 16, 8), 0);
  engine->~CMakeupEngine3();
  delete filter;
  munmap(memory, kBytes);
}

TEST(Handle, ManyEnginesAreApart) {
  FakeJava java;
  jlong first = 0;
  for (int round = 0; round < 2; ++round) {
    std::vector<std::unique_ptr<Engine>> engines;
    std::set<jlong> handles;
    for (int i = 0; i < 100; ++i) {
      engines.push_back(std::make_unique<Engine>(java));
      handles.insert(engines.back()->handle);
      makeup_setWhitenIntensity(java.env(), nullptr, engines.back()->handle, i);
    }
    EXPECT_EQ(handles.size(), engines.size());
    for (int i = 0; i < 100; ++i)
      EXPECT_EQ(engines[static_cast<std::size_t>(i)]->filter->whitenIntensity, i);
    // What was closed is free again.
    if (kHandleIsNarrow && round == 1) {
      EXPECT_EQ(*handles.begin(), first);
    }
    first = *handles.begin();
  }
}

/// Holds everything that is free below 2^31.
class LowMemoryTaken {
 public:
  LowMemoryTaken() {
    std::uintptr_t free = lowestMapping();
    std::ifstream maps("/proc/self/maps");
    std::vector<std::pair<std::uintptr_t, std::uintptr_t>> gaps;
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    char dash = 0;
    for (std::string rest; free < kEnd && maps >> std::hex >> begin >> dash >> end; std::getline(maps, rest)) {
      if (free < begin) gaps.emplace_back(free, std::min(begin, kEnd));
      free = std::max(free, end);
    }
    if (free < kEnd) gaps.emplace_back(free, kEnd);
    for (const auto& [from, to] : gaps) {
      void* taken = mmap(at(from), to - from, PROT_NONE,
                         MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_FIXED_NOREPLACE, -1, 0);
      if (taken == at(from)) ranges_.emplace_back(from, to);
    }
  }
  ~LowMemoryTaken() {
    for (const auto& [from, to] : ranges_)
      munmap(at(from), to - from);
  }
  LowMemoryTaken(const LowMemoryTaken&) = delete;
  LowMemoryTaken& operator=(const LowMemoryTaken&) = delete;

  std::uintptr_t first() const { return ranges_.front().first; }
  std::uintptr_t last() const { return ranges_.back().second - page(); }
  static void release(std::uintptr_t address) { munmap(at(address), page()); }

 private:
  static constexpr std::uintptr_t kEnd = std::uintptr_t{1} << 31;
  /// The lowest address that the system lets a process map.
  static std::uintptr_t lowestMapping() {
    for (std::uintptr_t address = page();; address += page()) {
      void* probe = mmap(at(address), page(), PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED_NOREPLACE, -1, 0);
      if (probe == MAP_FAILED) continue;
      munmap(probe, page());
      return address;
    }
  }
  static void* at(std::uintptr_t address) { return reinterpret_cast<void*>(address); }
  static std::size_t page() { return static_cast<std::size_t>(sysconf(_SC_PAGESIZE)); }

  std::vector<std::pair<std::uintptr_t, std::uintptr_t>> ranges_;
};

TEST(Handle, TheOnlyFreePageIsFound) {
  if (!kHandleIsNarrow) GTEST_SKIP() << "any address will do";
  FakeJava java;
  const LowMemoryTaken taken;
  EXPECT_EQ(makeup_Init(java.env(), nullptr, java.loader()), 0);
  EXPECT_EQ(java.takeCalls(), Calls{});
  for (const std::uintptr_t page : {taken.first(), taken.last()}) {
    LowMemoryTaken::release(page);
    const Engine engine(java);
    EXPECT_EQ(engine.handle, static_cast<jlong>(page));
  }
}

// The words of an object, the first of which points to its virtual functions.
void** wordsOf(void* object) {
  return static_cast<void**>(object);
}

template <class Result, class... Arguments>
Result callSlot(void* object, std::size_t slot, Arguments... arguments) {
  auto* function = static_cast<void**>(wordsOf(object)[0])[slot];
  return reinterpret_cast<Result (*)(void*, Arguments...)>(function)(object, arguments...);
}

TEST(EngineObject, FieldsAndVirtualSlotsStandInOrder) {
  FakeJava java;
  auto* engine = new CMakeupEngine3;
  void** words = wordsOf(engine);
  CFastEdgePreserved* filter = engine->filter;
  EXPECT_EQ(sizeof *engine, 4 * sizeof(void*));
  EXPECT_EQ(words[1], filter);
  EXPECT_EQ(filter->threadCount, 4);
  EXPECT_EQ(filter->loader, engine);
  EXPECT_EQ(words[2], nullptr);
  EXPECT_EQ(words[3], nullptr);
  unsigned char dst[1] = {};
  EXPECT_EQ((callSlot<int, const char*, unsigned char*>(engine, 0, "a.vlk", dst)), -1);  // no loader yet
  EXPECT_EQ((callSlot<int, JNIEnv*, jobject>(engine, 3, java.env(), java.loader())), 1);
  EXPECT_EQ(words[2], java.env());
  EXPECT_NE(words[3], nullptr);
  EXPECT_EQ((callSlot<int, const char*, unsigned char*>(engine, 0, "a.vlk", dst)), 0);
  java.takeCalls();
  callSlot<void>(engine, 2);  // the deleting destructor
  EXPECT_EQ(java.takeCalls(), Calls{"DeleteWeakGlobalRef weak loader"});
  if (kHandleIsNarrow) {
    EXPECT_EQ(msync(words, sizeof *engine, MS_ASYNC), -1) << "the engine's memory is still there";
    EXPECT_EQ(errno, ENOMEM);
  }
  delete filter;

  alignas(CMakeupEngine3) unsigned char memory[sizeof(CMakeupEngine3)];
  engine = ::new (memory) CMakeupEngine3;
  filter = engine->filter;
  engine->InitializeWithEnv(java.env(), java.loader());
  java.takeCalls();
  callSlot<void>(engine, 1);  // the destructor alone
  EXPECT_EQ(java.takeCalls(), Calls{"DeleteWeakGlobalRef weak loader"});
  delete filter;
}

TEST(EngineObject, WithoutEnvOrLoaderNothingIsCalled) {
  unsigned char dst[1] = {};
  for (const bool missesEnv : {true, false}) {
    FakeJava java;
    if (!missesEnv) java.failing = {"NewWeakGlobalRef loader"};
    jobject reference = nullptr;
    {
      const Engine engine(java);
      CMakeupEngine3* object = vlvk::engineOf(engine.handle);
      reference = object->loaderRef;
      if (missesEnv) object->jniEnv = nullptr;
      java.takeCalls();
      EXPECT_EQ(object->getResFromName("a.vlk", dst), -1);
    }
    EXPECT_EQ(java.takeCalls(), Calls{});
    if (missesEnv) java.env()->DeleteWeakGlobalRef(reference);
  }
}

TEST(EngineObject, DestructionLeavesAFilterThatWorks) {
  FakeJava java;
  FakeJava otherThread;
  java.file = resourceFile(pictureFactors(), noisePicture());
  const jlong handle = makeup_Init(java.env(), nullptr, java.loader());
  CFastEdgePreserved* filter = vlvk::engineOf(handle)->filter;
  DirectFilter direct(&noisePicture());
  for (int i = 0; i < 2; ++i) {
    Bytes frame = skinFrame(64, 48, 1);
    Bytes expected = frame;
    EXPECT_EQ(filter->processVideo(frame.data(), 64, &frame[64 * 48], 64, 64, 48, nullptr, 0, true), 0);
    EXPECT_EQ(direct.process(expected.data(), 64, 48), 0);
    EXPECT_TRUE(sameBytes(frame.data(), expected.data(), frame.size(), 64));
    java.takeCalls();
    if (i == 0) {
      makeup_Uninit(otherThread.env(), nullptr, handle);
      EXPECT_EQ(java.takeCalls(), Calls{"DeleteWeakGlobalRef weak loader"});
    }
  }
  EXPECT_EQ(otherThread.takeCalls(), Calls{});
  delete filter;
}

/// A resource of five bytes, and where it goes.
class Resource : public testing::Test {
 protected:
  Resource() { java_.file = resourceFile({5, 0, 0, 0, 1, 0, 0, 0}, kPayload); }

  int load() {
    java_.takeCalls();
    dst_ = std::make_unique<GuardedBuffer>(1048576, Guard::kBehind, std::uint8_t{0xC5});
    return vlvk::engineOf(engine_.handle)->getResFromName("some.vlk", dst_->data());
  }

  testing::AssertionResult dstHolds(const Bytes& payload) const {
    Bytes expected(dst_->size(), 0xC5);
    std::copy(payload.begin(), payload.end(), expected.begin());
    return sameBytes(dst_->data(), expected.data(), expected.size(), 2048);
  }

  const Bytes kPayload{0x00, 0x5A, 0xFF, 0x01, 0x80};
  FakeJava java_;
  Engine engine_{java_};
  std::unique_ptr<GuardedBuffer> dst_;
};

const Calls kResourceCalls{
    "GetObjectClass weak loader",
    "GetMethodID class of weak loader loadFromName(Ljava/lang/String;)Ljava/io/InputStream;",
    "NewStringUTF some.vlk",
    "CallObjectMethod weak loader loadFromName(Ljava/lang/String;)Ljava/io/InputStream; some.vlk",
    "GetObjectClass stream",  // 4
    "GetMethodID class of stream read([BII)I",
    "NewByteArray 12",
    "CallIntMethod stream read([BII)I array 12 0 12",
    "GetByteArrayElements array 12",  // 8
    "ReleaseByteArrayElements array 12",
    "NewByteArray 5",
    "CallIntMethod stream read([BII)I array 5 0 5",
    "GetByteArrayElements array 5",  // 12
    "ReleaseByteArrayElements array 5",
    "DeleteLocalRef array 5",
    "DeleteLocalRef array 12",
    "GetMethodID class of stream close()V",  // 16
    "CallVoidMethod stream close()V",
    "DeleteLocalRef stream",
    "DeleteLocalRef class of stream",
    "DeleteLocalRef some.vlk",  // 20
    "DeleteLocalRef class of weak loader",
};

// The calls up to one, and those from another on.
Calls callsAround(std::size_t last, std::size_t resumed) {
  Calls calls(kResourceCalls.begin(), kResourceCalls.begin() + static_cast<std::ptrdiff_t>(last) + 1);
  calls.insert(calls.end(), kResourceCalls.begin() + static_cast<std::ptrdiff_t>(resumed), kResourceCalls.end());
  return calls;
}

TEST_F(Resource, IsReadThroughTheStream) {
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(load(), 0);
    EXPECT_EQ(java_.takeCalls(), kResourceCalls);
    EXPECT_TRUE(dstHolds(kPayload));
  }
}

struct Break {
  std::size_t call;     ///< that fails
  std::size_t resumed;  ///< first of the calls that still follow
  int result;
};

TEST_F(Resource, EveryStepMayFail) {
  const Break breaks[] = {{0, 22, -1}, {1, 21, -1}, {2, 21, -1}, {3, 20, -1}, {4, 18, 0}, {5, 16, 0},
                          {6, 16, 0},  {8, 15, 0},  {10, 15, 0}, {12, 14, 0}, {16, 18, 0}};
  for (const Break& one : breaks) {
    SCOPED_TRACE("failing: " + kResourceCalls[one.call]);
    java_.failing = {kResourceCalls[one.call]};
    EXPECT_EQ(load(), one.result);
    Calls expected = callsAround(one.call, one.resumed);
    if (one.call == 4) std::erase(expected, "DeleteLocalRef class of stream");
    EXPECT_EQ(java_.takeCalls(), expected);
    EXPECT_TRUE(dstHolds(one.call == 16 ? kPayload : Bytes{}));
  }
}

TEST_F(Resource, ShortReadsCountAsNothing) {
  const auto expectNothing = [this](std::size_t last, std::size_t resumed) {
    EXPECT_EQ(load(), 0);
    EXPECT_EQ(java_.takeCalls(), callsAround(last, resumed));
    EXPECT_TRUE(dstHolds({}));
  };
  const Bytes whole = java_.file;
  for (const std::size_t size : {0, 5, 11, 12, 16}) {
    SCOPED_TRACE(testing::Message() << "a file of " << size << " bytes");
    java_.file.assign(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    size < 12 ? expectNothing(7, 15) : expectNothing(11, 14);
  }
  java_.file = whole;
  for (const jint result : {-1, 0, 4, 6}) {  // delivered in pieces, or by a stream that miscounts
    SCOPED_TRACE(result);
    java_.readResults = {12, result};
    expectNothing(11, 14);
  }
}

TEST_F(Resource, SizesAreTakenFromSignedFactors) {
  struct Size {
    Bytes factors;
    int bytes;  ///< -1: not read
  };
  const Size sizes[] = {
      {{1, 0, 0, 0, 1, 0, 0, 0}, 1},          {{0, 0, 0, 0, 0, 2, 0, 0}, 0},     {pictureFactors(), 1048576},
      {{0xFF, 0x08, 0, 0, 1, 0, 0, 0}, 2047}, {{0xFF, 0, 0, 0, 1, 0, 0, 0}, -1}, {{1, 0, 16, 0, 1, 0, 0, 0}, -1},
  };
  for (const Size& size : sizes) {
    SCOPED_TRACE(testing::Message() << "factors " << testing::PrintToString(size.factors));
    const Bytes payload = noise(static_cast<std::size_t>(std::max(size.bytes, 64)), 3);
    java_.file =
        resourceFile(size.factors, size.bytes > 0 ? Bytes(payload.begin(), payload.begin() + size.bytes) : payload);
    EXPECT_EQ(load(), 0);
    const Calls calls = java_.takeCalls();
    EXPECT_EQ(calls.size(), size.bytes < 0 ? 17U : kResourceCalls.size());
    EXPECT_EQ(calls[10], size.bytes < 0 ? "DeleteLocalRef array 12" : "NewByteArray " + std::to_string(size.bytes));
    EXPECT_TRUE(dstHolds(size.bytes < 0 ? Bytes{} : Bytes(payload.begin(), payload.begin() + size.bytes)));
  }
}

struct FrameSize {
  int width;
  int height;
};
constexpr FrameSize kSizes[] = {{64, 48}, {33, 21}, {16, 2}, {2, 17}, {1, 1}, {0, 0}, {0, 7}};

TEST(Video, FramesInPlaceAreThoseOfTheFilter) {
  FakeJava java;
  FakeJava thread;  // whose environment a frame comes with; resources come through the one of makeup_Init
  java.file = resourceFile(pictureFactors(), noisePicture());
  const Engine engine(java);
  DirectFilter direct(&noisePicture());
  java.takeCalls();
  for (const auto& [width, height] : kSizes) {
    SCOPED_TRACE(testing::Message() << width << " x " << height);
    Bytes expected = skinFrame(width, height, 5);
    jbyteArray frame = thread.byteArray(expected);
    EXPECT_EQ(makeup_ProcessVideo2(thread.env(), nullptr, engine.handle, frame, width, height), 0);
    EXPECT_EQ(thread.takeCalls(), (Calls{"GetByteArrayElements frame", "ReleaseByteArrayElements frame"}));
    EXPECT_EQ(direct.process(expected.data(), width, height), 0);
    EXPECT_TRUE(sameBytes(thread.contentOf(frame).data(), expected.data(), expected.size(), width));
    // The first frame asks for the colours.
    const Calls calls = java.takeCalls();
    EXPECT_EQ(calls.size(), &width == &kSizes[0].width ? kResourceCalls.size() : 0);
    if (!calls.empty()) {
      EXPECT_EQ(calls[2], "NewStringUTF adjust.vlk");
    }
  }
}

TEST(Video, PixelsAreThoseOfTheFilterAndTheFrameStays) {
  FakeJava java;
  java.file = resourceFile(pictureFactors(), noisePicture());
  const Engine engine(java);
  DirectFilter direct(&noisePicture());
  const Calls pinned{"GetByteArrayElements frame", "GetIntArrayElements pixels", "ReleaseByteArrayElements frame",
                     "ReleaseIntArrayElements pixels"};
  for (const auto& [width, height] : kSizes) {
    SCOPED_TRACE(testing::Message() << width << " x " << height);
    Bytes source = skinFrame(width, height, 6);
    Bytes expected = noise(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4, 7);
    jbyteArray frame = java.byteArray(source);
    jintArray pixels = java.intArray(expected);
    java.takeCalls();
    EXPECT_EQ(makeup_ProcessVideo3(java.env(), nullptr, engine.handle, frame, width, height, pixels), 0);
    Calls calls = java.takeCalls();
    std::erase_if(
        calls, [&](const std::string& call) { return std::find(pinned.begin(), pinned.end(), call) == pinned.end(); });
    EXPECT_EQ(calls, pinned);
    EXPECT_EQ(java.contentOf(frame), source);
    EXPECT_EQ(direct.process(source.data(), width, height, expected.data(), width * 4), 0);
    EXPECT_TRUE(sameBytes(java.contentOf(pixels).data(), expected.data(), expected.size(), width * 4));
  }
}

TEST(Video, WithoutAResourceTheFirstFrameKeepsItsColours) {
  FakeJava java;
  java.failing = {"CallObjectMethod weak loader loadFromName(Ljava/lang/String;)Ljava/io/InputStream; adjust.vlk"};
  const Engine engine(java);
  DirectFilter direct(nullptr);
  for (int i = 0; i < 2; ++i) {
    Bytes expected = skinFrame(48, 32, 8);
    jbyteArray frame = java.byteArray(expected);
    EXPECT_EQ(makeup_ProcessVideo2(java.env(), nullptr, engine.handle, frame, 48, 32), 0);
    EXPECT_EQ(direct.process(expected.data(), 48, 32), 0);
    EXPECT_TRUE(sameBytes(java.contentOf(frame).data(), expected.data(), expected.size(), 48));
  }
}

TEST(Video, RefusedFramesAreReleasedAsTheyWere) {
  FakeJava java;
  const Engine engine(java);
  const Bytes content = skinFrame(16, 8, 9);
  const Bytes blank(16 * 8 * 4, 0x77);
  jbyteArray frame = java.byteArray(content);
  jintArray pixels = java.intArray(blank);
  const auto expectRefused = [&](int width, int height, const Calls& calls2, const Calls& calls3) {
    java.takeCalls();
    EXPECT_EQ(makeup_ProcessVideo2(java.env(), nullptr, engine.handle, frame, width, height), -1);
    EXPECT_EQ(java.takeCalls(), calls2);
    EXPECT_EQ(makeup_ProcessVideo3(java.env(), nullptr, engine.handle, frame, width, height, pixels), -1);
    EXPECT_EQ(java.takeCalls(), calls3);
    EXPECT_EQ(java.contentOf(frame), content);
    EXPECT_EQ(java.contentOf(pixels), blank);
  };
  const std::string pinFrame = "GetByteArrayElements frame";
  const std::string pinPixels = "GetIntArrayElements pixels";
  const std::string freeFrame = "ReleaseByteArrayElements frame";
  const std::string freePixels = "ReleaseIntArrayElements pixels";
  for (const auto& [width, height] : {FrameSize{-16, 8}, {16, -8}, {INT32_MIN, INT32_MIN}, {INT32_MAX, -1}}) {
    expectRefused(width, height, {pinFrame, freeFrame}, {pinFrame, pinPixels, freeFrame, freePixels});
  }
  java.failing = {pinFrame};
  expectRefused(16, 8, {pinFrame}, {pinFrame});
  java.failing = {pinPixels};
  EXPECT_EQ(makeup_ProcessVideo3(java.env(), nullptr, engine.handle, frame, 16, 8, pixels), -1);
  EXPECT_EQ(java.takeCalls(), (Calls{pinFrame, pinPixels, freeFrame}));
  EXPECT_EQ(java.contentOf(frame), content);
}

TEST(Settings, ReachTheFilterUnchecked) {
  FakeJava java;
  const Engine engine(java);
  java.takeCalls();
  const CFastEdgePreserved& filter = *engine.filter;
  const auto expectSettings = [&filter](const std::vector<int>& settings) {
    EXPECT_EQ((std::vector<int>{filter.whitenIntensity, filter.softenSkinIntensity, filter.colorAdjustIntensity,
                                filter.radius}),
              settings);
  };
  expectSettings({50, 1000, 100, 20});
  for (const jint value : {13, -5, INT32_MAX, INT32_MIN}) {
    makeup_setWhitenIntensity(java.env(), nullptr, engine.handle, value);
    makeup_setSoftenSkinIntensity(java.env(), nullptr, engine.handle, value - (value < 0 ? -1 : 1));
    makeup_setColorAdjustIntensity(java.env(), nullptr, engine.handle, value / 2);
    makeup_setRaduis(java.env(), nullptr, engine.handle, value / 3);
    makeup_setOutputSize(java.env(), nullptr, engine.handle, value, 480);
    expectSettings({value, value - (value < 0 ? -1 : 1), value / 2, value / 3});
  }
  EXPECT_EQ(java.takeCalls(), Calls{});
}

}  // namespace
}  // namespace bindings_tests
