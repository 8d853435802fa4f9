/// See makeup_entry_points.h.
#include <vlvk/makeup_entry_points.h>

#include <new>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/CMakeupEngine3.h>
#include "base/arm_math.h"
#include "base/shared_field.h"
#include "bindings/engine_handle.h"

namespace {

unsigned char* asBytes(void* elements) {
  return static_cast<unsigned char*>(elements);
}

CFastEdgePreserved& filterOf(jlong handle) {
  return *vlvk::engineOf(handle)->filter;
}

}  // namespace

jlong makeup_Init(JNIEnv* env, jobject /*thiz*/, jobject loader) {
  try {
    auto* engine = new CMakeupEngine3;
    if (engine == nullptr || engine->InitializeWithEnv(env, loader) == 0) return 0;
    return vlvk::handleOf(engine);
  } catch (const std::bad_alloc&) {  // an engine without a filter; its own memory is released already
    return 0;
  }
}

void makeup_Uninit(JNIEnv* /*env*/, jobject /*thiz*/, jlong handle) {
  delete vlvk::engineOf(handle);
}

void makeup_setWhitenIntensity(JNIEnv* /*env*/, jobject /*thiz*/, jlong handle, jint value) {
  filterOf(handle).put_whitenIntensity(value);
}

void makeup_setSoftenSkinIntensity(JNIEnv* /*env*/, jobject /*thiz*/, jlong handle, jint value) {
  filterOf(handle).put_softenSkinIntensity(value);
}

void makeup_setColorAdjustIntensity(JNIEnv* /*env*/, jobject /*thiz*/, jlong handle, jint value) {
  filterOf(handle).put_colorAdjustIntensity(value);
}

void makeup_setRaduis(JNIEnv* /*env*/, jobject /*thiz*/, jlong handle, jint radius) {
  vlvk::storeShared(filterOf(handle).radius, static_cast<int>(radius));
}

void makeup_setOutputSize(JNIEnv* /*env*/, jobject /*thiz*/, jlong /*handle*/, jint /*width*/, jint /*height*/) {}

jint makeup_ProcessVideo2(JNIEnv* env, jobject /*thiz*/, jlong handle, jbyteArray nv21, jint width, jint height) {
  jbyte* frame = env->GetByteArrayElements(nv21, nullptr);
  if (frame == nullptr) return -1;
  const jint result = vlvk::engineOf(handle)->processVideo(asBytes(frame), width, height, nullptr, 0);
  env->ReleaseByteArrayElements(nv21, frame, 0);
  return result;
}

jint makeup_ProcessVideo3(JNIEnv* env, jobject /*thiz*/, jlong handle, jbyteArray nv21, jint width, jint height,
                          jintArray rgbaOut) {
  jbyte* frame = env->GetByteArrayElements(nv21, nullptr);
  if (frame == nullptr) return -1;
  jint result = -1;
  jint* pixels = env->GetIntArrayElements(rgbaOut, nullptr);
  if (pixels != nullptr) {
    result =
        vlvk::engineOf(handle)->processVideo(asBytes(frame), width, height, asBytes(pixels), vlvk::wrapMul(width, 4));
  }
  env->ReleaseByteArrayElements(nv21, frame, 0);
  if (pixels != nullptr) env->ReleaseIntArrayElements(rgbaOut, pixels, 0);
  return result;
}
