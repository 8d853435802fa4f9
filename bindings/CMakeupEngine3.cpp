/// See CMakeupEngine3.h.
#include <vlvk/CMakeupEngine3.h>

#include <vlvk/CFastEdgePreserved.h>
#include "base/checked_size.h"
#include "base/shared_field.h"
#include "bindings/java_resource.h"
#include "bindings/low_memory.h"

CMakeupEngine3::CMakeupEngine3() : filter(new CFastEdgePreserved(4, this)), jniEnv(nullptr), loaderRef(nullptr) {}

CMakeupEngine3::~CMakeupEngine3() {
  if (jniEnv != nullptr && loaderRef != nullptr) jniEnv->DeleteWeakGlobalRef(loaderRef);
  // The compiler drops plain stores to an object that is being destroyed, whose memory may be its host's to look at.
  vlvk::storeShared(jniEnv, static_cast<JNIEnv*>(nullptr));
  vlvk::storeShared(loaderRef, static_cast<jobject>(nullptr));
}

int CMakeupEngine3::InitializeWithEnv(JNIEnv* env, jobject loader) {
  jniEnv = env;
  loaderRef = env->NewWeakGlobalRef(loader);
  return 1;
}

int CMakeupEngine3::getResFromName(const char* name, unsigned char* dst) {
  if (jniEnv == nullptr || loaderRef == nullptr) return -1;
  return vlvk::readJavaResource(jniEnv, loaderRef, name, dst);
}

int CMakeupEngine3::processVideo(unsigned char* yuv, int width, int height, unsigned char* out, int outStride) {
  const vlvk::CheckedSize lumaSize = vlvk::CheckedSize(width) * height;
  if (yuv == nullptr || !lumaSize.fits()) return -1;
  unsigned char* chroma = yuv + lumaSize.bytes();
  return filter->processVideo(yuv, width, chroma, width, width, height, out, outStride, true);
}

// NOLINTNEXTLINE(misc-new-delete-overloads): the sized form matches it
void* CMakeupEngine3::operator new(std::size_t size) noexcept {
  return vlvk::allocateLow(size);
}

void CMakeupEngine3::operator delete(void* memory, std::size_t size) noexcept {
  vlvk::releaseLow(memory, size);
}
