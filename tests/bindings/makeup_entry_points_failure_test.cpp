/// Entry points when memory runs out, and on a platform without bitmaps: this executable has none of their functions.
#include <vlvk/makeup_entry_points.h>

#include <gtest/gtest.h>

#include <climits>

#include <vlvk/CFastEdgePreserved.h>
#include "bindings/engine_handle.h"
#include "tests/support/failing_system.h"

namespace {

using testing_support::liveBytes;
using testing_support::memoryFault;

int weakReferences = 0;

// With functions that need no memory of their own.
TEST(BindingsMemory, WithoutItThereIsNoEngineAndNothingStays) {
  JNINativeInterface_ functions{};
  functions.NewWeakGlobalRef = [](JNIEnv*, jobject object) -> jweak { return ++weakReferences, object; };
  functions.DeleteWeakGlobalRef = [](JNIEnv*, jweak) { --weakReferences; };
  JNIEnv env{&functions};
  jlong handle = 0;
  for (int n = 0; handle == 0; ++n) {
    const long long before = liveBytes;
    memoryFault.arm(n, INT_MAX);
    handle = makeup_Init(&env, nullptr, reinterpret_cast<jobject>(&env));
    memoryFault.armed = false;
    if (handle != 0) {
      EXPECT_GE(n, 1) << "the engine allocates past this executable";
      EXPECT_EQ(weakReferences, 1);
      const CFastEdgePreserved* filter = vlvk::engineOf(handle)->filter;
      makeup_Uninit(&env, nullptr, handle);
      delete filter;
    }
    EXPECT_EQ(weakReferences, 0);
    EXPECT_EQ(liveBytes, before) << "allocation " << n;
  }
}

TEST(WithoutBitmaps, ThereIsNothingToProcess) {
  EXPECT_EQ(makeup_ProcessBitmap3(nullptr, nullptr, 0, nullptr), -1);
}

}  // namespace
