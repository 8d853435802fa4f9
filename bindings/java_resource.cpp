/// See java_resource.h.
#include "bindings/java_resource.h"

#include <cstdint>

#include "resource/resource_file.h"

namespace vlvk {

namespace {

/// A local reference, deleted at the end of its scope.
template <class Object>
class LocalRef {
 public:
  LocalRef(JNIEnv* env, Object object) : env_(env), object_(object) {}
  LocalRef(const LocalRef&) = delete;
  LocalRef& operator=(const LocalRef&) = delete;
  ~LocalRef() {
    if (object_ != nullptr) env_->DeleteLocalRef(object_);
  }

  Object get() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  JNIEnv* env_;
  Object object_;
};

/// Hands the pinned bytes of an array to `use`. Returns false when they cannot be pinned.
template <class Use>
bool withBytes(JNIEnv* env, jbyteArray array, Use use) {
  jbyte* bytes = env->GetByteArrayElements(array, nullptr);
  if (bytes == nullptr) return false;
  use(reinterpret_cast<const unsigned char*>(bytes));
  env->ReleaseByteArrayElements(array, bytes, 0);
  return true;
}

/// Reads `size` bytes into `array` in one call. A stream that delivers them in pieces does not count.
bool readAll(JNIEnv* env, jobject stream, jmethodID read, jbyteArray array, jint size) {
  return env->CallIntMethod(stream, read, array, 0, size) == size;
}

void readPayload(JNIEnv* env, jobject stream, jmethodID read, std::int32_t size, unsigned char* dst) {
  const LocalRef<jbyteArray> data(env, env->NewByteArray(size));
  if (!data || !readAll(env, stream, read, data.get(), size)) return;
  withBytes(env, data.get(), [&](const unsigned char* bytes) { scrambleResource(bytes, size, dst); });
}

void readFile(JNIEnv* env, jobject stream, jmethodID read, unsigned char* dst) {
  const LocalRef<jbyteArray> header(env, env->NewByteArray(kResourceHeaderSize));
  if (!header || !readAll(env, stream, read, header.get(), kResourceHeaderSize)) return;
  std::int32_t size = -1;
  withBytes(env, header.get(), [&](const unsigned char* bytes) { size = resourcePayloadSize(bytes); });
  if (isResourcePayloadAllowed(size)) readPayload(env, stream, read, size, dst);
}

void readAndClose(JNIEnv* env, jobject stream, jclass streamClass, unsigned char* dst) {
  if (streamClass == nullptr) return;
  if (jmethodID read = env->GetMethodID(streamClass, "read", "([BII)I")) readFile(env, stream, read, dst);
  if (jmethodID close = env->GetMethodID(streamClass, "close", "()V")) env->CallVoidMethod(stream, close);
}

}  // namespace

int readJavaResource(JNIEnv* env, jobject loader, const char* name, unsigned char* dst) {
  const LocalRef<jclass> loaderClass(env, env->GetObjectClass(loader));
  if (!loaderClass) return -1;
  jmethodID load = env->GetMethodID(loaderClass.get(), "loadFromName", "(Ljava/lang/String;)Ljava/io/InputStream;");
  if (load == nullptr) return -1;
  const LocalRef<jstring> javaName(env, env->NewStringUTF(name));
  if (!javaName) return -1;
  jobject stream = env->CallObjectMethod(loader, load, javaName.get());
  if (stream == nullptr) return -1;
  jclass streamClass = env->GetObjectClass(stream);
  readAndClose(env, stream, streamClass, dst);
  // Deleted in the order stream, its class, name, loader's class.
  env->DeleteLocalRef(stream);
  if (streamClass != nullptr) env->DeleteLocalRef(streamClass);
  return 0;
}

}  // namespace vlvk
