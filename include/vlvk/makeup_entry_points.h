/// @file
/// The entry points of Java and of native hosts. Handles stand for engines.
///
/// A handle is the engine's address, of which the low 32 bits count, sign-extended to 64 bits; 0 stands for no engine.
/// No function but makeup_Uninit checks for it. `thiz` is never used. Frames of one engine, and makeup_Uninit, belong
/// to the thread that created it; different engines are independent.
#ifndef VLVK_MAKEUP_ENTRY_POINTS_H
#define VLVK_MAKEUP_ENTRY_POINTS_H

#include <jni.h>

#include <vlvk/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Creates an engine that loads its resources through `loader`, an object with a method
/// `InputStream loadFromName(String)`. The engine keeps `env`, and a weak reference to the object.
///
/// @param env     JNIEnv of the calling thread
/// @param thiz    not used
/// @param loader  Java object, kept alive by the caller
/// @return the engine's handle, or 0 when there is no memory for it
VLVK_API jlong makeup_Init(JNIEnv* env, jobject thiz, jobject loader);

/// Destroys an engine; its filter stays allocated. The handle is invalid from here on. Call it on the engine's thread,
/// while no frame runs.
///
/// @param env     JNIEnv of the calling thread
/// @param thiz    not used
/// @param handle  engine; 0 in the low 32 bits: nothing is done
VLVK_API void makeup_Uninit(JNIEnv* env, jobject thiz, jlong handle);

///@{
/// Sets what the CFastEdgePreserved setter of that name does, from the next frame on. Any thread.
///
/// @param env     JNIEnv of the calling thread
/// @param thiz    not used
/// @param handle  engine, see above
/// @param value   any; see there
VLVK_API void makeup_setWhitenIntensity(JNIEnv* env, jobject thiz, jlong handle, jint value);
VLVK_API void makeup_setSoftenSkinIntensity(JNIEnv* env, jobject thiz, jlong handle, jint value);
VLVK_API void makeup_setColorAdjustIntensity(JNIEnv* env, jobject thiz, jlong handle, jint value);
///@}

/// Sets the smoothing radius, CFastEdgePreserved::radius, from the next frame on. Any thread.
///
/// @param env     JNIEnv of the calling thread
/// @param thiz    not used
/// @param handle  engine, see above
/// @param radius  pixels, rounded up to a multiple of 8 by each frame; 0 or less: no smoothing
VLVK_API void makeup_setRaduis(JNIEnv* env, jobject thiz, jlong handle, jint radius);

/// Does nothing.
///
/// @param env     JNIEnv of the calling thread
/// @param thiz    not used
/// @param handle  engine, see above
/// @param width   ignored
/// @param height  ignored
VLVK_API void makeup_setOutputSize(JNIEnv* env, jobject thiz, jlong handle, jint width, jint height);

/// Processes an NV21 frame in place.
///
/// @param env     JNIEnv of the calling thread
/// @param thiz    not used
/// @param handle  engine, see above
/// @param nv21    width * height luma bytes, then (height + 1) / 2 rows of `width` chroma bytes; the length is not
///                checked
/// @param width   pixels of a row, 0 or more
/// @param height  rows, 0 or more
/// @return 0, or -1 with the frame unchanged: negative size, no memory, array that cannot be pinned
VLVK_API jint makeup_ProcessVideo2(JNIEnv* env, jobject thiz, jlong handle, jbyteArray nv21, jint width, jint height);

/// Processes an NV21 frame into RGBA pixels (bytes R, G, B, A in memory), one int each; the frame is only read.
///
/// @param env      JNIEnv of the calling thread
/// @param thiz     not used
/// @param handle   engine, see above
/// @param nv21     as for makeup_ProcessVideo2
/// @param width    pixels of a row, 0 or more
/// @param height   rows, 0 or more
/// @param rgbaOut  width * height ints; the length is not checked. An odd last column or row is not converted
/// @return as makeup_ProcessVideo2
VLVK_API jint makeup_ProcessVideo3(JNIEnv* env, jobject thiz, jlong handle, jbyteArray nv21, jint width, jint height,
                                   jintArray rgbaOut);

/// Processes an Android RGBA_8888 bitmap in place.
///
/// @param env     JNIEnv of the calling thread
/// @param thiz    not used
/// @param handle  engine, see above
/// @param bitmap  the bitmap; unlocked again before the call returns
/// @return what unlocking the bitmap returned (0), or -1: another format, pixels that cannot be locked, no memory, or a
///         platform without Android's bitmap functions
VLVK_API jint makeup_ProcessBitmap3(JNIEnv* env, jobject thiz, jlong handle, jobject bitmap);

#ifdef __cplusplus
}
#endif

#endif
