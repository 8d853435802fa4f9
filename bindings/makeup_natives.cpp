/// The native methods of Java's class NativeMakeup, on the handle; like its functions, they throw nothing.
#include <jni.h>

#include <cstddef>
#include <cstdint>
#include <optional>

#include <vlvk/makeup.h>
#include "bindings/android_bitmap.h"
#include "bindings/java_frame.h"

namespace {

using vlvk::JavaFrame;

constexpr std::int32_t VlvkSettings::*kSettings[] = {
    &VlvkSettings::whitening,  &VlvkSettings::softening, &VlvkSettings::radius,  &VlvkSettings::contrast,
    &VlvkSettings::whitenArea, &VlvkSettings::evenTone,  &VlvkSettings::threads,
};
constexpr jsize kSettingsSize = sizeof kSettings / sizeof kSettings[0];

/// What describeBitmap returns instead of a format.
constexpr jint kNoBitmap = -1;
constexpr jint kNoBitmapsHere = -2;

VlvkMakeup* makeupOf(jlong handle) {
  // NOLINTNEXTLINE(performance-no-int-to-ptr): that is what a handle is
  return reinterpret_cast<VlvkMakeup*>(static_cast<std::uintptr_t>(handle));
}

/// @param layout  width, height, stride
VlvkMask maskOf(JNIEnv* env, jobject buffer, jintArray layout) {
  jint numbers[3] = {};
  env->GetIntArrayRegion(layout, 0, 3, numbers);
  return {sizeof(VlvkMask), numbers[0], numbers[1], numbers[2], vlvk::bytesOf(env, buffer)};
}

}  // namespace

extern "C" {

JNIEXPORT jlong JNICALL Java_com_velmira_VKMakeup_NativeMakeup_create(JNIEnv* env, jclass /*type*/,
                                                                      jintArray settings) {
  VlvkMakeup* makeup = nullptr;
  if (vlvkMakeupCreate(&makeup, nullptr) != VLVK_OK) return 0;
  VlvkSettings defaults{};
  vlvkSettingsInit(&defaults, sizeof defaults);
  jint numbers[kSettingsSize] = {};
  for (jsize i = 0; i < kSettingsSize; ++i)
    numbers[i] = defaults.*kSettings[i];
  env->SetIntArrayRegion(settings, 0, kSettingsSize, numbers);
  return static_cast<jlong>(reinterpret_cast<std::uintptr_t>(makeup));
}

JNIEXPORT void JNICALL Java_com_velmira_VKMakeup_NativeMakeup_destroy(JNIEnv* /*env*/, jclass /*type*/, jlong handle) {
  vlvkMakeupDestroy(makeupOf(handle));
}

JNIEXPORT jint JNICALL Java_com_velmira_VKMakeup_NativeMakeup_configure(JNIEnv* env, jclass /*type*/, jlong handle,
                                                                        jintArray settings) {
  jint numbers[kSettingsSize] = {};
  env->GetIntArrayRegion(settings, 0, kSettingsSize, numbers);
  VlvkSettings wanted{};
  vlvkSettingsInit(&wanted, sizeof wanted);
  for (jsize i = 0; i < kSettingsSize; ++i)
    wanted.*kSettings[i] = numbers[i];
  return vlvkMakeupConfigure(makeupOf(handle), &wanted);
}

JNIEXPORT jint JNICALL Java_com_velmira_VKMakeup_NativeMakeup_setTable(JNIEnv* env, jclass /*type*/, jlong handle,
                                                                       jbyteArray file, jint size) {
  if (file == nullptr) return vlvkMakeupSetTable(makeupOf(handle), nullptr, 0);
  jbyte* bytes = env->GetByteArrayElements(file, nullptr);
  if (bytes == nullptr) return VLVK_NO_MEMORY;
  const VlvkResult result = vlvkMakeupSetTable(makeupOf(handle), bytes, static_cast<std::size_t>(size));
  env->ReleaseByteArrayElements(file, bytes, JNI_ABORT);
  return result;
}

JNIEXPORT jint JNICALL Java_com_velmira_VKMakeup_NativeMakeup_process(JNIEnv* env, jclass /*type*/, jlong handle,
                                                                      jobjectArray source, jintArray sourceLayout,
                                                                      jobjectArray target, jintArray targetLayout,
                                                                      jobject mask, jintArray maskLayout) {
  const JavaFrame from(env, source, sourceLayout);
  if (from.result() != VLVK_OK) return from.result();
  std::optional<JavaFrame> to;
  if (target != nullptr) {
    to.emplace(env, target, targetLayout);
    if (to->result() != VLVK_OK) return to->result();
  }
  VlvkMask wanted{};
  if (mask != nullptr) wanted = maskOf(env, mask, maskLayout);
  return vlvkMakeupProcess(makeupOf(handle), &from.frame(), to ? &to->frame() : &from.frame(),
                           mask != nullptr ? &wanted : nullptr);
}

JNIEXPORT jlong JNICALL Java_com_velmira_VKMakeup_NativeMakeup_distance(JNIEnv* env, jclass /*type*/, jobject from,
                                                                        jobject to) {
  return static_cast<jlong>(reinterpret_cast<std::intptr_t>(vlvk::bytesOf(env, to)) -
                            reinterpret_cast<std::intptr_t>(vlvk::bytesOf(env, from)));
}

JNIEXPORT jint JNICALL Java_com_velmira_VKMakeup_NativeMakeup_formatOfYuv420(JNIEnv* env, jclass /*type*/, jobject y,
                                                                             jobject u, jobject v, jint chromaStep) {
  // Of a single pixel, so that nothing but the addresses counts: strides and sizes are checked by the class.
  VlvkFrame pixel{};
  pixel.size = sizeof pixel;
  pixel.width = pixel.height = 1;
  unsigned char* const planes[3] = {vlvk::bytesOf(env, y), vlvk::bytesOf(env, u), vlvk::bytesOf(env, v)};
  const std::int32_t strides[3] = {2, 2, 2};
  return vlvkFrameFromYuv420(&pixel, planes, strides, chromaStep) == VLVK_OK ? pixel.format : 0;
}

JNIEXPORT jint JNICALL Java_com_velmira_VKMakeup_NativeMakeup_describeBitmap(JNIEnv* env, jclass /*type*/,
                                                                             jobject bitmap, jintArray layout) {
  if (!vlvk::platformHasBitmaps()) return kNoBitmapsHere;
  AndroidBitmapInfo info{};
  if (AndroidBitmap_getInfo(env, bitmap, &info) != 0 || !vlvk::fitsInt(info)) {
    env->ExceptionClear();
    return kNoBitmap;
  }
  const jint numbers[3] = {static_cast<jint>(info.width), static_cast<jint>(info.height),
                           static_cast<jint>(info.stride)};
  env->SetIntArrayRegion(layout, vlvk::kWidthPlace, 3, numbers);
  return info.format;
}

JNIEXPORT jstring JNICALL Java_com_velmira_VKMakeup_NativeMakeup_resultText(JNIEnv* env, jclass /*type*/, jint result) {
  return env->NewStringUTF(vlvkResultText(static_cast<VlvkResult>(result)));
}

}  // extern "C"
