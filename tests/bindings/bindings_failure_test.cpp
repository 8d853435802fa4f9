/// The entry points when memory runs out: no engine, or a frame that is whole or untouched.
#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/CMakeupEngine3.h>
#include <vlvk/makeup_entry_points.h>
#include "bindings/android_bitmap.h"
#include "bindings/engine_handle.h"
#include "tests/support/failing_system.h"
#include "tests/support/random_content.h"

namespace {

using testing_support::liveBytes;
using testing_support::memoryFault;

using Bytes = std::vector<unsigned char>;

constexpr int kWidth = 50;
constexpr int kHeight = 38;

int weakReferences = 0;

/// Arrays and bitmaps of this machine are their bytes.
template <class Element>
Element* bytesOf(jobject array) {
  return reinterpret_cast<Element*>(array);
}

/// A virtual machine that needs no memory of its own. Its loader has no class, so there is no resource.
class PlainJava {
 public:
  PlainJava() {
    functions_.NewWeakGlobalRef = [](JNIEnv*, jobject object) -> jweak {
      ++weakReferences;
      return object;
    };
    functions_.DeleteWeakGlobalRef = [](JNIEnv*, jweak) { --weakReferences; };
    functions_.GetObjectClass = [](JNIEnv*, jobject) -> jclass { return nullptr; };
    functions_.GetByteArrayElements = [](JNIEnv*, jbyteArray array, jboolean*) { return bytesOf<jbyte>(array); };
    functions_.ReleaseByteArrayElements = [](JNIEnv*, jbyteArray, jbyte*, jint) {};
    functions_.GetIntArrayElements = [](JNIEnv*, jintArray array, jboolean*) { return bytesOf<jint>(array); };
    functions_.ReleaseIntArrayElements = [](JNIEnv*, jintArray, jint*, jint) {};
    env_.functions = &functions_;
  }

  JNIEnv* env() { return &env_; }
  jobject loader() { return reinterpret_cast<jobject>(this); }

 private:
  JNINativeInterface_ functions_{};
  JNIEnv env_{};
};

void destroy(PlainJava& java, jlong handle) {
  const CFastEdgePreserved* filter = vlvk::engineOf(handle)->filter;
  makeup_Uninit(java.env(), nullptr, handle);
  delete filter;
}

/// What an entry point may write.
struct Memory {
  Bytes frame = Bytes(kWidth * kHeight * 3 / 2);
  Bytes pixels = Bytes(kWidth * kHeight * 4);

  Memory() {
    testing_support::Random random(61);
    for (Bytes* bytes : {&frame, &pixels}) {
      for (unsigned char& byte : *bytes)
        byte = random.byte();
    }
  }
  bool operator==(const Memory&) const = default;
};

using EntryPoint = jint (*)(JNIEnv* env, jlong handle, Memory& memory);

const EntryPoint kEntryPoints[] = {
    [](JNIEnv* env, jlong handle, Memory& m) {
      return makeup_ProcessVideo2(env, nullptr, handle, reinterpret_cast<jbyteArray>(m.frame.data()), kWidth, kHeight);
    },
    [](JNIEnv* env, jlong handle, Memory& m) {
      return makeup_ProcessVideo3(env, nullptr, handle, reinterpret_cast<jbyteArray>(m.frame.data()), kWidth, kHeight,
                                  reinterpret_cast<jintArray>(m.pixels.data()));
    },
    [](JNIEnv* env, jlong handle, Memory& m) {
      return makeup_ProcessBitmap3(env, nullptr, handle, reinterpret_cast<jobject>(m.pixels.data()));
    }};

}  // namespace

int AndroidBitmap_getInfo(JNIEnv* /*env*/, jobject /*bitmap*/, AndroidBitmapInfo* info) {
  *info = {kWidth, kHeight, kWidth * 4, 1, 0};
  return 0;
}
int AndroidBitmap_lockPixels(JNIEnv* /*env*/, jobject bitmap, void** pixels) {
  *pixels = bitmap;
  return 0;
}
int AndroidBitmap_unlockPixels(JNIEnv* /*env*/, jobject /*bitmap*/) {
  return 0;
}

namespace {

TEST(BindingsMemory, WithoutItThereIsNoEngineAndNothingStays) {
  PlainJava java;
  for (int n = 0;; ++n) {
    const long long before = liveBytes;
    memoryFault.arm(n, INT_MAX);
    const jlong handle = makeup_Init(java.env(), nullptr, java.loader());
    memoryFault.armed = false;
    if (handle != 0) {
      EXPECT_GE(n, 1) << "the engine allocates past this executable";
      EXPECT_EQ(weakReferences, 1);
      destroy(java, handle);
    }
    EXPECT_EQ(weakReferences, 0);
    EXPECT_EQ(liveBytes, before) << "allocation " << n;
    if (handle != 0) break;
  }
}

// For every allocation of a first and of a second call, which meets the tables of the first. A bitmap says 0 also where
// its frame was refused.
TEST(BindingsMemory, WithoutItAFrameIsWholeOrUntouched) {
  PlainJava java;
  for (const EntryPoint& run : kEntryPoints) {
    const bool isBitmap = &run == &kEntryPoints[2];
    for (const int callsBefore : {0, 1}) {
      for (int n = 0;; ++n) {
        SCOPED_TRACE(testing::Message() << "entry point " << &run - kEntryPoints << ", calls before " << callsBefore
                                        << ", allocation " << n);
        const Memory original;
        Memory expected;
        Memory memory;
        const jlong direct = makeup_Init(java.env(), nullptr, java.loader());
        const jlong handle = makeup_Init(java.env(), nullptr, java.loader());
        for (int i = 0; i < callsBefore; ++i) {
          for (const jlong one : {direct, handle}) {
            Memory passing;
            kEntryPoints[i](java.env(), one, passing);
          }
          makeup_setWhitenIntensity(java.env(), nullptr, direct, 90);
          makeup_setWhitenIntensity(java.env(), nullptr, handle, 90);
        }
        EXPECT_EQ(run(java.env(), direct, expected), 0);
        EXPECT_FALSE(expected == original);
        const long long before = liveBytes;
        memoryFault.arm(n, n);
        const jint result = run(java.env(), handle, memory);
        memoryFault.armed = false;
        const bool whole = memory == expected;
        EXPECT_TRUE(whole || memory == original);
        EXPECT_TRUE(result == (whole ? 0 : -1) || (isBitmap && result == 0)) << result;
        if (!whole) {
          EXPECT_EQ(run(java.env(), handle, memory), 0);
          EXPECT_TRUE(memory == expected) << "the next frame";
        }
        EXPECT_LT(liveBytes, before + 4'000'000);
        destroy(java, direct);
        destroy(java, handle);
        if (memoryFault.requests > n && !HasFailure()) continue;
        EXPECT_TRUE(whole);
        EXPECT_GE(n, 1);
        break;
      }
    }
  }
}

}  // namespace
