/// What a virtual machine calls when it loads the library, and the environment it gives.
#include <vlvk/jni_library.h>

#include <gtest/gtest.h>

#include <vlvk/makeup_entry_points.h>
#include "tests/bindings/fake_jni.h"

namespace bindings_tests {
namespace {

// Taken before any test can load the library.
JNIEnv* const envBeforeLoad = JNU_GetEnv();

const Calls kLoadCalls{"GetEnv 65542", "FindClass com/velmira/VKMakeup/Engine",
                       "RegisterNatives com/velmira/VKMakeup/Engine"};

TEST(Library, LoadingKeepsTheVirtualMachineAndRegistersFiveMethods) {
  EXPECT_EQ(envBeforeLoad, nullptr);
  const std::vector<Native> expected = {
      {"Init", "(Ljava/lang/Object;)J", reinterpret_cast<void*>(makeup_Init)},
      {"Uninit", "(J)V", reinterpret_cast<void*>(makeup_Uninit)},
      {"setWhitenIntensity", "(JI)V", reinterpret_cast<void*>(makeup_setWhitenIntensity)},
      {"setSoftenSkinIntensity", "(JI)V", reinterpret_cast<void*>(makeup_setSoftenSkinIntensity)},
      {"ProcessVideo", "(J[BII)I", reinterpret_cast<void*>(makeup_ProcessVideo2)},
  };
  FakeJava machines[4];
  for (int calls = 3; calls >= 0; --calls) {  // up to the one that fails; 0: none does
    FakeJava& java = machines[calls];
    java.results[kLoadCalls[static_cast<std::size_t>(calls == 0 ? 2 : calls - 1)]] = calls == 0 ? 7 : JNI_ERR;
    EXPECT_EQ(JNI_OnLoad(java.vm(), nullptr), calls == 0 ? 0x10006 : -1);
    EXPECT_EQ(java.takeCalls(), firstOf(kLoadCalls, calls == 0 ? 3 : calls));
    EXPECT_EQ(JNU_GetEnv(), java.env());
  }
  EXPECT_EQ(machines[0].natives, expected);
}

TEST(Library, EnvIsWhatTheVirtualMachineStores) {
  FakeJava java;
  JNI_OnLoad(java.vm(), nullptr);
  JNI_OnUnload(java.vm(), nullptr);
  java.takeCalls();
  for (const jint result : {JNI_OK, JNI_EDETACHED}) {
    for (const bool stores : {true, false}) {
      java.results[kLoadCalls[0]] = result;
      java.storesEnv = stores;
      EXPECT_EQ(JNU_GetEnv(), stores ? java.env() : nullptr) << result;
    }
  }
  EXPECT_EQ(java.takeCalls(), Calls(4, kLoadCalls[0]));
}

}  // namespace
}  // namespace bindings_tests
