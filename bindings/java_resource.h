/// Reading a resource file through Java's loader object and stream.
#ifndef VLVK_BINDINGS_JAVA_RESOURCE_H
#define VLVK_BINDINGS_JAVA_RESOURCE_H

#include <jni.h>

namespace vlvk {

/// Asks `loader` for the resource `name`, reads header and payload in one read each, unscrambles the payload into `dst`
/// and closes the stream. Every local reference is deleted again; no exception is asked for or cleared.
///
/// @param dst  kMaxResourcePayload bytes; written only when the whole payload was delivered
/// @return 0 once a stream was obtained, -1 when the loader has no method `loadFromName` or no such resource
int readJavaResource(JNIEnv* env, jobject loader, const char* name, unsigned char* dst);

}  // namespace vlvk

#endif
