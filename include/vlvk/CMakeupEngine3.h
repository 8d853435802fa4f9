/// @file
/// The engine that a Java handle stands for: one filter, and the Java object that supplies its resources.
#ifndef VLVK_CMAKEUPENGINE3_H
#define VLVK_CMAKEUPENGINE3_H

#include <jni.h>

#include <cstddef>

#include <vlvk/IBeautyResourceLoader.h>
#include <vlvk/export.h>

class CFastEdgePreserved;

/// Owns one filter with four bands and serves it resources from a Java loader object.
///
/// The loader has an instance method `java.io.InputStream loadFromName(String)`; null stands for "no such resource".
/// All Java calls go through the JNIEnv that InitializeWithEnv was given, so frames must be processed on its thread.
class VLVK_API CMakeupEngine3 : public IBeautyResourceLoader {
 public:
  /// Creates the engine and its filter of four bands. Throws std::bad_alloc when there is no memory for the filter.
  CMakeupEngine3();
  CMakeupEngine3(const CMakeupEngine3&) = delete;
  CMakeupEngine3& operator=(const CMakeupEngine3&) = delete;

  /// Streams the resource `name` from the Java loader and unscrambles its payload into `dst`.
  ///
  /// @param name  zero-terminated name, handed to the loader
  /// @param dst   room for 1,048,576 bytes; larger payloads are not read. Untouched unless the whole payload came in
  ///              one read
  /// @return 0 once a stream was obtained, whatever it delivered; -1 without a loader, its method or a stream
  int getResFromName(const char* name, unsigned char* dst) override;

  /// Gives up the Java loader. The filter, and all that it allocated, stays.
  virtual ~CMakeupEngine3();

  /// Keeps `env` and a weak global reference to `loader`.
  ///
  /// @param env     JNIEnv of the thread that frames will be processed on
  /// @param loader  Java object, kept alive by the caller
  /// @return 1
  virtual int InitializeWithEnv(JNIEnv* env, jobject loader);

  /// Processes an NV21 frame whose chroma follows its luma, both without padding.
  ///
  /// @param yuv        width * height luma bytes, then chroma; written when `out` is null
  /// @param width      pixels of a row, 0 or more
  /// @param height     rows, 0 or more
  /// @param out        RGBA pixels, or null to process the frame in place
  /// @param outStride  bytes between rows of `out`
  /// @return as CFastEdgePreserved::processVideo
  int processVideo(unsigned char* yuv, int width, int height, unsigned char* out, int outStride);

  /// An engine's address fits 31 bits, so that 32 bits of a handle can hold it on every processor.
  ///
  /// @param size  bytes
  /// @return null when there is no such memory; release with delete
  static void* operator new(std::size_t size) noexcept;  // NOLINT(misc-new-delete-overloads): the sized form matches it
  /// Releases an engine's memory.
  ///
  /// @param memory  from operator new, or null
  /// @param size    as given to it
  static void operator delete(void* memory, std::size_t size) noexcept;

  CFastEdgePreserved* filter;  ///< never null; settings may be changed through it
  JNIEnv* jniEnv;              ///< null before InitializeWithEnv
  jobject loaderRef;           ///< weak global reference
};

#endif
