/// Android's bitmap functions, as weak references: the library also loads where there are none.
#ifndef VLVK_BINDINGS_ANDROID_BITMAP_H
#define VLVK_BINDINGS_ANDROID_BITMAP_H

#include <jni.h>

#include <cstdint>

#if defined(__ANDROID__)
#include <android/bitmap.h>
#else
/// As the platform's android/bitmap.h declares it.
struct AndroidBitmapInfo {
  std::uint32_t width;
  std::uint32_t height;
  std::uint32_t stride;  ///< bytes between rows
  std::int32_t format;   ///< 1: RGBA_8888
  std::uint32_t flags;
};
#endif

extern "C" {
__attribute__((weak)) int AndroidBitmap_getInfo(JNIEnv* env, jobject bitmap, AndroidBitmapInfo* info);
__attribute__((weak)) int AndroidBitmap_lockPixels(JNIEnv* env, jobject bitmap, void** pixels);
__attribute__((weak)) int AndroidBitmap_unlockPixels(JNIEnv* env, jobject bitmap);
}

namespace vlvk {

inline constexpr std::int32_t kBitmapRgba8888 = 1;

inline bool platformHasBitmaps() {
  return AndroidBitmap_getInfo != nullptr && AndroidBitmap_lockPixels != nullptr &&
         AndroidBitmap_unlockPixels != nullptr;
}

/// Whether both sides and the stride fit int.
inline bool fitsInt(const AndroidBitmapInfo& info) {
  return info.width <= INT32_MAX && info.height <= INT32_MAX && info.stride <= INT32_MAX;
}

}  // namespace vlvk

#endif
