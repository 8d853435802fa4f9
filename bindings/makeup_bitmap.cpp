/// The entry point for Android bitmaps.
#include <cstddef>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/makeup_entry_points.h>
#include "base/checked_size.h"
#include "base/mutex_lock.h"
#include "base/scratch_memory.h"
#include "bindings/android_bitmap.h"
#include "bindings/engine_handle.h"
#include "filter/frame_pipeline.h"

namespace {

/// Runs the engine over locked pixels, by way of an NV21 frame. Returns false when there is no memory for that.
bool processPixels(CMakeupEngine3& engine, unsigned char* pixels, const AndroidBitmapInfo& info) {
  if (!vlvk::fitsInt(info)) return false;
  const auto width = static_cast<int>(info.width);
  const auto height = static_cast<int>(info.height);
  const auto stride = static_cast<int>(info.stride);
  const vlvk::CheckedSize lumaSize = vlvk::CheckedSize(width) * height;
  const vlvk::CheckedSize frameSize = lumaSize + vlvk::CheckedSize(width) * ((height + 1LL) / 2);
  const vlvk::ScratchMemory frame(frameSize + vlvk::CheckedSize(1));  // never empty, so that none means no memory
  if (!frame.available()) return false;
  auto* luma = frame.at<unsigned char>(0);
  const vlvk::MutexLock lock(engine.filter->mutex);
  // What it returns is not the bitmap's concern.
  vlvk::processPixels(*engine.filter, {pixels, stride}, luma, width, width, height, pixels, stride, true);
  return true;
}

}  // namespace

jint makeup_ProcessBitmap3(JNIEnv* env, jobject /*thiz*/, jlong handle, jobject bitmap) {
  if (!vlvk::platformHasBitmaps()) return -1;
  AndroidBitmapInfo info{};
  AndroidBitmap_getInfo(env, bitmap, &info);
  if (info.format != vlvk::kBitmapRgba8888) return -1;
  void* pixels = nullptr;
  AndroidBitmap_lockPixels(env, bitmap, &pixels);
  if (pixels == nullptr) return -1;
  const bool processed = processPixels(*vlvk::engineOf(handle), static_cast<unsigned char*>(pixels), info);
  const int unlocked = AndroidBitmap_unlockPixels(env, bitmap);
  return processed ? unlocked : -1;
}
