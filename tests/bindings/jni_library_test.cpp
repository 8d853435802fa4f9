/// What a virtual machine calls when it loads the library, and the environment it gives.
#include <vlvk/jni_library.h>

#include <gtest/gtest.h>

#include "tests/bindings/fake_jni.h"

namespace bindings_tests {
namespace {

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

}  // namespace
}  // namespace bindings_tests
