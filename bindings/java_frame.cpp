/// See java_frame.h.
#include "bindings/java_frame.h"

#include <algorithm>

#include "bindings/android_bitmap.h"

namespace vlvk {

namespace {

/// Whether a bitmap still is what it was when its frame was described: bitmaps can be given another size.
bool isAsDescribed(const AndroidBitmapInfo& info, const VlvkFrame& frame) {
  return fitsInt(info) && info.format == kBitmapRgba8888 && static_cast<jint>(info.width) == frame.width &&
         static_cast<jint>(info.height) == frame.height && static_cast<jint>(info.stride) == frame.stride[0];
}

}  // namespace

JavaFrame::JavaFrame(JNIEnv* env, jobjectArray planes, jintArray layout) : env_(env) {
  jint numbers[kLayoutSize] = {};
  env->GetIntArrayRegion(layout, 0, kLayoutSize, numbers);
  frame_.size = sizeof frame_;
  frame_.format = numbers[kFormatPlace];
  frame_.matrix = numbers[kMatrixPlace];
  frame_.range = numbers[kRangePlace];
  frame_.width = numbers[kWidthPlace];
  frame_.height = numbers[kHeightPlace];
  std::copy_n(numbers + kStridesPlace, 3, frame_.stride);
  const jsize count = env->GetArrayLength(planes);
  for (jsize plane = 0; plane < count; ++plane) {
    jobject memory = env->GetObjectArrayElement(planes, plane);
    if (numbers[kIsBitmapPlace] != 0) {
      lockBitmap(memory);
    } else {
      frame_.plane[plane] = bytesOf(env, memory);
    }
  }
}

void JavaFrame::lockBitmap(jobject bitmap) {
  result_ = kBitmapNotLocked;
  AndroidBitmapInfo info{};
  if (!platformHasBitmaps()) return;
  void* pixels = nullptr;
  if (AndroidBitmap_getInfo(env_, bitmap, &info) == 0) {
    if (!isAsDescribed(info, frame_)) {
      result_ = kBitmapChanged;
    } else if (AndroidBitmap_lockPixels(env_, bitmap, &pixels) == 0) {
      locked_ = bitmap;
      frame_.plane[0] = static_cast<unsigned char*>(pixels);
      result_ = VLVK_OK;
    }
  }
  // What the platform threw would stand in the way of unlocking another bitmap. The result says it as well.
  if (result_ != VLVK_OK) env_->ExceptionClear();
}

JavaFrame::~JavaFrame() {
  if (locked_ != nullptr) AndroidBitmap_unlockPixels(env_, locked_);
}

}  // namespace vlvk
