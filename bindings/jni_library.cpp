/// See jni_library.h.
#include <vlvk/jni_library.h>

#include <vlvk/makeup_entry_points.h>

namespace {

/// The virtual machine that loaded the library; null before. Never cleared.
JavaVM* cached_jvm = nullptr;

constexpr jint kJniVersion = JNI_VERSION_1_6;

template <class Function>
JNINativeMethod nativeMethod(const char* name, const char* signature, Function function) {
  // Desktop headers declare the texts without const; they are only read.
  return {const_cast<char*>(name),       // NOLINT(cppcoreguidelines-pro-type-const-cast)
          const_cast<char*>(signature),  // NOLINT(cppcoreguidelines-pro-type-const-cast)
          reinterpret_cast<void*>(function)};
}

bool registerNatives(JNIEnv* env, jclass engineClass) {
  // Java's ProcessVideo is the form that works in place.
  const JNINativeMethod table[] = {
      nativeMethod("Init", "(Ljava/lang/Object;)J", makeup_Init),
      nativeMethod("Uninit", "(J)V", makeup_Uninit),
      nativeMethod("setWhitenIntensity", "(JI)V", makeup_setWhitenIntensity),
      nativeMethod("setSoftenSkinIntensity", "(JI)V", makeup_setSoftenSkinIntensity),
      nativeMethod("ProcessVideo", "(J[BII)I", makeup_ProcessVideo2),
  };
  return env->RegisterNatives(engineClass, table, sizeof table / sizeof table[0]) >= 0;
}

/// The calling thread's JNIEnv as the virtual machine stores it, whatever it returns beside that.
jint getEnv(JavaVM* vm, JNIEnv*& env) {
  void* stored = nullptr;
  const jint result = vm->GetEnv(&stored, kJniVersion);
  env = static_cast<JNIEnv*>(stored);
  return result;
}

}  // namespace

extern "C" {

JNIEXPORT jint JNICALL JNI_OnLoad(JavaVM* vm, void* /*reserved*/) {
  cached_jvm = vm;
  JNIEnv* env = nullptr;
  if (getEnv(vm, env) != JNI_OK) return -1;
  jclass engineClass = env->FindClass("com/velmira/VKMakeup/Engine");
  if (engineClass == nullptr || !registerNatives(env, engineClass)) return -1;
  return kJniVersion;
}

JNIEXPORT void JNICALL JNI_OnUnload(JavaVM* /*vm*/, void* /*reserved*/) {}

JNIEnv* JNU_GetEnv() {
  JNIEnv* env = nullptr;
  if (cached_jvm != nullptr) getEnv(cached_jvm, env);
  return env;
}

}  // extern "C"
