/// @file
/// What the Java virtual machine calls when it loads and unloads the library.
#ifndef VLVK_JNI_LIBRARY_H
#define VLVK_JNI_LIBRARY_H

#include <jni.h>

#include <vlvk/export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// The JNIEnv of the calling thread. Any thread.
///
/// @return null for a thread that is not attached, and before the library was loaded by a virtual machine
VLVK_API JNIEnv* JNU_GetEnv(void);

#ifdef __cplusplus
}
#endif

#endif
