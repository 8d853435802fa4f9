/// Frames of Java's class Frame, as the handle takes them.
#ifndef VLVK_BINDINGS_JAVA_FRAME_H
#define VLVK_BINDINGS_JAVA_FRAME_H

#include <jni.h>

#include <vlvk/makeup.h>

namespace vlvk {

/// What stands where in a frame's layout; NativeMakeup.java has the same places.
enum LayoutPlace : jsize {
  kFormatPlace,
  kMatrixPlace,
  kRangePlace,
  kWidthPlace,  ///< followed by height and first stride, which describeBitmap fills in
  kHeightPlace,
  kStridesPlace,
  kIsBitmapPlace = kStridesPlace + 3,
  kLayoutSize
};

/// Results beside those of the handle, all positive.
inline constexpr jint kBitmapChanged = 1;
inline constexpr jint kBitmapNotLocked = 2;

/// The memory of a buffer; null where it is not direct.
inline unsigned char* bytesOf(JNIEnv* env, jobject buffer) {
  return static_cast<unsigned char*>(env->GetDirectBufferAddress(buffer));
}

/// A frame as long as it is processed: addresses of buffers, or the pixels of a bitmap, locked meanwhile.
class JavaFrame {
 public:
  /// @param planes  ByteBuffers, as many as the format has, or one bitmap
  /// @param layout  kLayoutSize numbers
  JavaFrame(JNIEnv* env, jobjectArray planes, jintArray layout);
  JavaFrame(const JavaFrame&) = delete;
  JavaFrame& operator=(const JavaFrame&) = delete;
  ~JavaFrame();

  /// VLVK_OK, or why there is no frame.
  jint result() const { return result_; }
  const VlvkFrame& frame() const { return frame_; }

 private:
  void lockBitmap(jobject bitmap);

  JNIEnv* env_;
  jobject locked_ = nullptr;
  jint result_ = VLVK_OK;
  VlvkFrame frame_{};
};

}  // namespace vlvk

#endif
