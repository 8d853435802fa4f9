/// See bindings_fake_jni.h.
#include "tests/bindings/fake_jni.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstring>
#include <utility>

namespace bindings_tests {
namespace {

template <std::size_t kSlot>
void* trap() {
  ADD_FAILURE() << "the function in slot " << kSlot << " of the table was called";
  return nullptr;
}

template <class Table, std::size_t... kSlots>
void fillWithTraps(Table* table, std::index_sequence<kSlots...> /*slots*/) {
  void* (*const traps[])() = {trap<kSlots>...};
  static_assert(sizeof traps == sizeof *table);
  std::memcpy(table, traps, sizeof traps);
}

template <class Table>
void fillWithTraps(Table* table) {
  fillWithTraps(table, std::make_index_sequence<sizeof(Table) / sizeof(void*)>());
}

const std::string& methodName(jmethodID method) {
  return *reinterpret_cast<const std::string*>(method);
}

}  // namespace

FakeJava::FakeJava() : loader_(newObject("loader")) {
  fillWithTraps(&functions_);
  fillWithTraps(&vmFunctions_);
  fillEnvTable();
  fillVmTable();
  env_.env.functions = &functions_;
  env_.java = this;
  vm_.vm.functions = &vmFunctions_;
  vm_.java = this;
}

FakeJava::~FakeJava() {
  for (jobject reference : references_)
    ADD_FAILURE() << "a reference was not deleted: " << nameOf(reference);
  EXPECT_TRUE(pins_.empty()) << "an array was not released";
}

FakeJava& FakeJava::of(JNIEnv* env) {
  return *reinterpret_cast<Env*>(env)->java;
}

void FakeJava::fillVmTable() {
  vmFunctions_.GetEnv = [](JavaVM* vm, void** env, jint version) {
    FakeJava& java = *reinterpret_cast<Vm*>(vm)->java;
    java.passes("GetEnv " + std::to_string(version));
    if (java.storesEnv) *env = java.env();
    return java.getEnvResult;
  };
}

void FakeJava::fillEnvTable() {
  functions_.FindClass = [](JNIEnv* env, const char* name) {
    // Local references of JNI_OnLoad end with it: they belong to the virtual machine.
    return of(env).passes(std::string("FindClass ") + name) ? static_cast<jclass>(of(env).newObject(name)) : nullptr;
  };
  functions_.RegisterNatives = [](JNIEnv* env, jclass javaClass, const JNINativeMethod* methods, jint count) {
    of(env).passes("RegisterNatives " + of(env).nameOf(javaClass));
    of(env).natives.assign(methods, methods + count);
    return of(env).registerResult;
  };
  functions_.NewWeakGlobalRef = [](JNIEnv* env, jobject object) -> jweak {
    const std::string& name = of(env).nameOf(object);
    return of(env).newReference("NewWeakGlobalRef " + name, "weak " + name);
  };
  functions_.DeleteWeakGlobalRef = [](JNIEnv* env, jweak object) {
    of(env).deleteReference("DeleteWeakGlobalRef ", object);
  };
  functions_.DeleteLocalRef = [](JNIEnv* env, jobject object) { of(env).deleteReference("DeleteLocalRef ", object); };
  functions_.GetObjectClass = [](JNIEnv* env, jobject object) {
    const std::string& name = of(env).nameOf(object);
    return static_cast<jclass>(of(env).newReference("GetObjectClass " + name, "class of " + name));
  };
  functions_.GetMethodID = [](JNIEnv* env, jclass javaClass, const char* name, const char* signature) {
    return of(env).methodId(javaClass, name, signature);
  };
  functions_.NewStringUTF = [](JNIEnv* env, const char* text) {
    return static_cast<jstring>(of(env).newReference(std::string("NewStringUTF ") + text, text));
  };
  functions_.NewByteArray = [](JNIEnv* env, jsize size) {
    const std::string text = std::to_string(size);
    return static_cast<jbyteArray>(of(env).newReference("NewByteArray " + text, "array " + text,
                                                        Bytes(static_cast<std::size_t>(std::max(size, 0)), 0xEE)));
  };
  functions_.CallObjectMethodV = [](JNIEnv* env, jobject object, jmethodID method, va_list arguments) {
    auto* name = va_arg(arguments, jobject);
    FakeJava& java = of(env);
    java.filePosition_ = 0;
    return java.newReference(
        "CallObjectMethod " + java.nameOf(object) + " " + methodName(method) + " " + java.nameOf(name), "stream");
  };
  functions_.CallIntMethodV = [](JNIEnv* env, jobject object, jmethodID method, va_list arguments) {
    auto* array = va_arg(arguments, jobject);
    const jint offset = va_arg(arguments, jint);
    const jint length = va_arg(arguments, jint);
    of(env).passes("CallIntMethod " + of(env).nameOf(object) + " " + methodName(method) + " " + of(env).nameOf(array) +
                   " " + std::to_string(offset) + " " + std::to_string(length));
    return of(env).read(array, offset, length);
  };
  functions_.CallVoidMethodV = [](JNIEnv* env, jobject object, jmethodID method, va_list /*arguments*/) {
    of(env).passes("CallVoidMethod " + of(env).nameOf(object) + " " + methodName(method));
  };
  functions_.GetByteArrayElements = [](JNIEnv* env, jbyteArray array, jboolean* isCopy) {
    EXPECT_EQ(isCopy, nullptr);
    return static_cast<jbyte*>(of(env).pin("GetByteArrayElements ", array));
  };
  functions_.ReleaseByteArrayElements = [](JNIEnv* env, jbyteArray array, jbyte* elements, jint mode) {
    of(env).unpin("ReleaseByteArrayElements ", array, elements, mode);
  };
  functions_.GetIntArrayElements = [](JNIEnv* env, jintArray array, jboolean* isCopy) {
    EXPECT_EQ(isCopy, nullptr);
    return static_cast<jint*>(of(env).pin("GetIntArrayElements ", array));
  };
  functions_.ReleaseIntArrayElements = [](JNIEnv* env, jintArray array, jint* elements, jint mode) {
    of(env).unpin("ReleaseIntArrayElements ", array, elements, mode);
  };
}

bool FakeJava::passes(const std::string& call) {
  calls_.push_back(call);
  return !failing.contains(call);
}

jobject FakeJava::newObject(const std::string& name, const Bytes& content) {
  auto object = std::make_unique<Object>(Object{name, content});
  auto* handle = reinterpret_cast<jobject>(object.get());
  objects_[handle] = std::move(object);
  return handle;
}

jobject FakeJava::newReference(const std::string& call, const std::string& name, const Bytes& content) {
  if (!passes(call)) return nullptr;
  jobject reference = newObject(name, content);
  references_.insert(reference);
  return reference;
}

FakeJava::Object& FakeJava::known(jobject object) {
  const auto found = objects_.find(object);
  if (found != objects_.end()) return *found->second;
  ADD_FAILURE() << "an object that does not exist, or no longer";
  static Object nobody{"nobody", {}};
  return nobody;
}

void FakeJava::deleteReference(const char* function, jobject object) {
  calls_.push_back(function + nameOf(object));
  EXPECT_EQ(references_.erase(object), 1U) << "deleted without being a reference: " << nameOf(object);
  objects_.erase(object);
}

jmethodID FakeJava::methodId(jclass javaClass, const char* name, const char* signature) {
  const std::string method = std::string(name) + signature;
  if (!passes("GetMethodID " + nameOf(javaClass) + " " + method)) return nullptr;
  return reinterpret_cast<jmethodID>(const_cast<std::string*>(&*methods_.insert(method).first));
}

jint FakeJava::read(jobject array, jint offset, jint length) {
  Bytes& content = known(array).content;
  const auto left = static_cast<jint>(file.size() - filePosition_);
  const jint all = length == 0 ? 0 : left == 0 ? -1 : std::min(length, left);
  const jint result = readResults.empty() ? all : readResults.front();
  if (!readResults.empty()) readResults.erase(readResults.begin());
  const auto count = static_cast<std::size_t>(std::clamp(std::min(result, left), 0, length));
  std::copy_n(file.begin() + static_cast<std::ptrdiff_t>(filePosition_), count, content.begin() + offset);
  filePosition_ += count;
  return result;
}

void* FakeJava::pin(const char* function, jobject array) {
  if (!passes(function + nameOf(array))) return nullptr;
  using testing_support::Guard;
  using testing_support::GuardedBuffer;
  const Bytes& content = known(array).content;
  pins_.push_back(std::unique_ptr<Pin>(new Pin{array, GuardedBuffer(content.size(), Guard::kBehind, 0)}));
  std::copy(content.begin(), content.end(), pins_.back()->buffer.data());
  return pins_.back()->buffer.data();
}

void FakeJava::unpin(const char* function, jobject array, void* elements, jint mode) {
  calls_.push_back(function + nameOf(array));
  EXPECT_EQ(mode, 0) << "0: copy back and release";
  const auto pin = std::find_if(pins_.begin(), pins_.end(), [&](const std::unique_ptr<Pin>& one) {
    return one->array == array && one->buffer.data() == elements;
  });
  ASSERT_NE(pin, pins_.end()) << "released without being pinned";
  Bytes& content = known(array).content;
  content.assign((*pin)->buffer.data(), (*pin)->buffer.data() + content.size());
  pins_.erase(pin);
}

Bytes resourceFile(const Bytes& factors, const Bytes& payload) {
  Bytes file(12 + payload.size(), 'x');
  std::copy(factors.begin(), factors.end(), file.begin() + 4);
  for (std::size_t i = 0; i < payload.size(); ++i) {
    const std::size_t neighbour = i ^ 1;
    file[12 + i] = payload[neighbour < payload.size() ? neighbour : i] ^ 0x5A;
  }
  return file;
}

}  // namespace bindings_tests
