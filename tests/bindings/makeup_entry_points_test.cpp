/// What a virtual machine calls: loading, and native methods with handles, settings, frames in place and as pixels.
#include <vlvk/makeup_entry_points.h>

#include <vlvk/jni_library.h>
#include "tests/bindings/engine.h"
#include "tests/support/plane.h"

namespace bindings_tests {
namespace {

using testing_support::sameBytes;

// Taken before any test can load the library.
JNIEnv* const envBeforeLoad = JNU_GetEnv();

const Calls kLoadCalls{"GetEnv 65542", "FindClass com/velmira/VKMakeup/Engine",
                       "RegisterNatives com/velmira/VKMakeup/Engine 5"};

TEST(Library, LoadingKeepsTheVirtualMachineAndEnvIsWhatItStores) {
  EXPECT_EQ(envBeforeLoad, nullptr);
  for (int calls = 3; calls >= 0; --calls) {  // up to the one that fails; 0: none does
    FakeJava java;
    java.results[kLoadCalls[static_cast<std::size_t>(calls == 0 ? 2 : calls - 1)]] = calls == 0 ? 7 : JNI_ERR;
    EXPECT_EQ(JNI_OnLoad(java.vm(), nullptr), calls == 0 ? 0x10006 : -1);
    EXPECT_EQ(java.takeCalls(), firstOf(kLoadCalls, calls == 0 ? 3 : calls));
    JNI_OnUnload(java.vm(), nullptr);
    for (const jint result : {JNI_OK, JNI_EDETACHED}) {
      for (const bool stores : {true, false}) {
        java.results[kLoadCalls[0]] = result;
        java.storesEnv = stores;
        EXPECT_EQ(JNU_GetEnv(), stores ? java.env() : nullptr) << result;
      }
    }
    EXPECT_EQ(java.takeCalls(), Calls(4, kLoadCalls[0]));
  }
}

TEST(Handle, OnlyItsLowHalfCounts) {
  FakeJava java;
  const Engine engine(java);
  EXPECT_EQ(java.takeCalls(), Calls{"NewWeakGlobalRef loader"});
  EXPECT_TRUE(!kHandleIsNarrow || (engine.handle > 0 && engine.handle <= INT32_MAX)) << engine.handle;
  int value = 0;
  for (const std::uint64_t high : {0U, 0xFFFFFFFFU, 0x80000000U, 0x12345678U}) {
    const auto handle = static_cast<jlong>(high << 32 | static_cast<std::uint32_t>(engine.handle));
    makeup_setWhitenIntensity(java.env(), nullptr, handle, ++value);
    EXPECT_EQ(engine.filter->whitenIntensity, value) << std::hex << high;
    makeup_Uninit(java.env(), nullptr, static_cast<jlong>(high << 32));  // no engine
  }
  EXPECT_EQ(java.takeCalls(), Calls{});

  // Where 32-bit systems may put an engine.
  auto* top = reinterpret_cast<CMakeupEngine3*>(std::uintptr_t{0x80001000});
  EXPECT_EQ(vlvk::handleOf(top), -0x7FFFF000LL);
  EXPECT_EQ(vlvk::engineOf(vlvk::handleOf(top)), top);
}

// The settings that Java's classes do not pass on, and values that they refuse.
TEST(Settings, ReachTheFilterUnchecked) {
  FakeJava java;
  const Engine engine(java);
  const CFastEdgePreserved& filter = *engine.filter;
  for (const jint value : {13, -5, INT32_MAX, INT32_MIN}) {
    makeup_setWhitenIntensity(java.env(), nullptr, engine.handle, value);
    makeup_setSoftenSkinIntensity(java.env(), nullptr, engine.handle, ~value);
    makeup_setColorAdjustIntensity(java.env(), nullptr, engine.handle, value / 2);
    makeup_setRaduis(java.env(), nullptr, engine.handle, value / 3);
    makeup_setOutputSize(java.env(), nullptr, engine.handle, value, 480);
    EXPECT_EQ(
        (std::array{filter.whitenIntensity, filter.softenSkinIntensity, filter.colorAdjustIntensity, filter.radius}),
        (std::array{value, ~value, value / 2, value / 3}));
  }
}

const Calls kInPlace{"GetElements frame", "ReleaseElements frame"};
const Calls kToPixels{"GetElements frame", "GetElements pixels", "ReleaseElements frame", "ReleaseElements pixels"};

TEST(Video, PixelsAreThoseOfTheFilterAndTheFrameStays) {
  FakeJava java;
  FakeJava thread;  // whose environment a frame comes with; resources come through the one of makeup_Init
  java.file = kPictureFile;
  const Engine engine(java);
  for (const auto& [width, height] : {std::pair{64, 48}, {33, 21}, {2, 17}, {1, 1}, {0, 0}, {0, 7}}) {
    SCOPED_TRACE(testing::Message() << width << " x " << height);
    Bytes content = skinFrame(width, height, 5);
    jbyteArray frame = thread.byteArray(content);
    Bytes expected = noise(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4, 7);
    jintArray pixels = thread.intArray(expected);
    EXPECT_EQ(makeup_ProcessVideo3(thread.env(), nullptr, engine.handle, frame, width, height, pixels), 0);
    EXPECT_EQ(thread.takeCalls(), kToPixels);
    EXPECT_EQ(thread.contentOf(frame), content);
    processDirectly(content, width, height, expected.data(), width * 4);
    EXPECT_TRUE(sameBytes(thread.contentOf(pixels).data(), expected.data(), expected.size(), width * 4));
  }
  jbyteArray frame = thread.byteArray(skinFrame(33, 21, 5));
  Bytes expected = thread.contentOf(frame);
  EXPECT_EQ(makeup_ProcessVideo2(thread.env(), nullptr, engine.handle, frame, 33, 21), 0);
  EXPECT_EQ(thread.takeCalls(), kInPlace);
  processDirectly(expected, 33, 21);
  EXPECT_EQ(thread.contentOf(frame), expected);
}

TEST(Video, RefusedFramesAreReleasedAsTheyWere) {
  FakeJava java;
  const Engine engine(java);
  const Bytes content = skinFrame(16, 8, 9);
  const Bytes blank(16 * 8 * 4, 0x77);
  jbyteArray frame = java.byteArray(content);
  jintArray pixels = java.intArray(blank);
  const struct {
    int width, height;
    std::string failing;
    int callsInPlace, callsToPixels;  // 0: not refused
  } refusals[] = {
      {-16, 8, "", 2, 4},        {16, -8, "", 2, 4},         {INT32_MIN, INT32_MIN, "", 2, 4},
      {INT32_MAX, -1, "", 2, 4}, {16, 8, kInPlace[0], 1, 1}, {16, 8, kToPixels[1], 0, 3},
  };
  for (const auto& [width, height, failing, callsInPlace, callsToPixels] : refusals) {
    SCOPED_TRACE(testing::Message() << width << " x " << height << ' ' << failing);
    java.results = {{failing, 0}};
    java.takeCalls();
    if (callsInPlace > 0) {
      EXPECT_EQ(makeup_ProcessVideo2(java.env(), nullptr, engine.handle, frame, width, height), -1);
    }
    EXPECT_EQ(java.takeCalls(), firstOf(kInPlace, callsInPlace));
    EXPECT_EQ(makeup_ProcessVideo3(java.env(), nullptr, engine.handle, frame, width, height, pixels), -1);
    EXPECT_EQ(java.takeCalls(), firstOf(kToPixels, callsToPixels));
    EXPECT_EQ(java.contentOf(frame), content);
    EXPECT_EQ(java.contentOf(pixels), blank);
  }
}

}  // namespace
}  // namespace bindings_tests
