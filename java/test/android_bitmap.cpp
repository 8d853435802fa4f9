/// Android's bitmap functions for the class android.graphics.Bitmap of the tests.
#include "bindings/android_bitmap.h"

namespace {

constexpr int kJniException = -2;  // a result of Android's

jfieldID field(JNIEnv* env, jobject bitmap, const char* name, const char* type) {
  return env->GetFieldID(env->GetObjectClass(bitmap), name, type);
}

jint number(JNIEnv* env, jobject bitmap, const char* name) {
  return env->GetIntField(bitmap, field(env, bitmap, name, "I"));
}

void count(JNIEnv* env, jobject bitmap, const char* name) {
  env->SetIntField(bitmap, field(env, bitmap, name, "I"), number(env, bitmap, name) + 1);
}

}  // namespace

int AndroidBitmap_getInfo(JNIEnv* env, jobject bitmap, AndroidBitmapInfo* info) {
  info->width = static_cast<std::uint32_t>(number(env, bitmap, "width"));
  info->height = static_cast<std::uint32_t>(number(env, bitmap, "height"));
  info->stride = static_cast<std::uint32_t>(number(env, bitmap, "stride"));
  info->format = number(env, bitmap, "format");
  return info->format < 0 ? kJniException : 0;
}

int AndroidBitmap_lockPixels(JNIEnv* env, jobject bitmap, void** pixels) {
  if (env->GetBooleanField(bitmap, field(env, bitmap, "isRecycled", "Z")) == JNI_TRUE) {
    env->ThrowNew(env->FindClass("java/lang/IllegalStateException"), "recycled");
    return kJniException;
  }
  count(env, bitmap, "locks");
  *pixels =
      env->GetDirectBufferAddress(env->GetObjectField(bitmap, field(env, bitmap, "pixels", "Ljava/nio/ByteBuffer;")));
  return 0;
}

int AndroidBitmap_unlockPixels(JNIEnv* env, jobject bitmap) {
  count(env, bitmap, "unlocks");
  return 0;
}
