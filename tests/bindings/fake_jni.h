/// A Java virtual machine that records what native code asks of it, and whether everything it hands out comes back.
#ifndef VLVK_TESTS_BINDINGS_FAKE_JNI_H
#define VLVK_TESTS_BINDINGS_FAKE_JNI_H

#include <gtest/gtest.h>
#include <jni.h>

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/guarded_buffer.h"

namespace bindings_tests {

using Bytes = std::vector<std::uint8_t>;
using Calls = std::vector<std::string>;

inline Calls firstOf(const Calls& calls, int count) {
  return {calls.begin(), calls.begin() + count};
}

/// A virtual machine with one thread, and a loader object whose method loadFromName gives a stream of `file`.
///
/// Any function but those of the engine's protocol is null. A test fails for an object that is unknown or was
/// deleted, memory given back twice, and, at the end, a reference or a pinned array that was not given back. Pinned
/// arrays are copies next to an unreadable page.
class FakeJava {
 public:
  FakeJava();
  ~FakeJava() {
    for (const auto& [handle, object] : objects_)
      EXPECT_FALSE(object->isReference) << "a reference was not deleted: " << object->name;
    EXPECT_TRUE(pins_.empty()) << "an array was not released";
  }

  JNIEnv* env() { return &env_; }
  JavaVM* vm() { return &vm_; }

  /// What the test itself owns.
  jobject loader() { return loader_; }
  jbyteArray byteArray(const Bytes& content) { return static_cast<jbyteArray>(newObject("frame", content)); }
  jintArray intArray(const Bytes& content) { return static_cast<jintArray>(newObject("pixels", content)); }
  const Bytes& contentOf(jobject array) { return known(array).content; }

  /// Calls since the last time, as "Function object argument ...".
  Calls takeCalls() { return std::exchange(calls_, {}); }

  std::map<std::string, jint> results;  ///< of calls, as recorded, that do not succeed; those for an object give null
  Bytes file;                           ///< what the loader's stream delivers
  bool storesEnv = true;                ///< GetEnv stores the environment, whatever it returns

 private:
  struct Object {
    std::string name;
    Bytes content;
    bool isReference;  ///< to be deleted by native code
  };
  template <class Machine>
  static FakeJava& of(Machine* machine) {
    return *static_cast<FakeJava*>(machine->functions->reserved0);
  }

  std::string textOf(jobject object) { return known(object).name; }
  static std::string textOf(jint number) { return std::to_string(number); }
  static std::string textOf(const std::string& text) { return text; }
  static std::string textOf(jmethodID method) { return *reinterpret_cast<const std::string*>(method); }

  /// Returns the result that the test wants instead of success.
  template <class... Arguments>
  std::optional<jint> record(std::string call, Arguments... arguments) {
    (call.append(" ").append(textOf(arguments)), ...);
    calls_.push_back(call);
    const auto result = results.find(call);
    return result == results.end() ? std::nullopt : std::optional(result->second);
  }

  template <class... Arguments>
  jobject give(const std::string& name, const Bytes& content, const char* function, Arguments... arguments) {
    return record(function, arguments...) ? nullptr : newObject(name, content, true);
  }
  void take(const char* function, jobject object) {
    record(function, object);
    EXPECT_TRUE(known(object).isReference) << "deleted without being a reference: " << textOf(object);
    objects_.erase(object);
  }

  jobject newObject(const std::string& name, const Bytes& content = {}, bool isReference = false) {
    auto object = std::make_unique<Object>(Object{name, content, isReference});
    auto* handle = reinterpret_cast<jobject>(object.get());
    objects_[handle] = std::move(object);
    return handle;
  }
  Object& known(jobject object) {
    EXPECT_TRUE(objects_.contains(object)) << "an object that does not exist, or no longer";
    return *objects_.at(object);
  }

  jint read(Bytes& to, jint offset, jint length, std::optional<jint> result) {
    const auto left = static_cast<jint>(file.size()) - filePosition_;
    const jint returned = result.value_or(std::min(length, left));
    const jint count = std::clamp(returned, 0, std::min(length, left));
    std::copy_n(file.begin() + filePosition_, count, to.begin() + offset);
    filePosition_ += count;
    return returned;
  }

  template <class Array, class Element>
  static Element* pin(JNIEnv* env, Array array, jboolean* isCopy) {
    EXPECT_EQ(isCopy, nullptr);
    if (of(env).record("GetElements", array)) return nullptr;
    const Bytes& content = of(env).known(array).content;
    const auto guard = testing_support::Guard::kBehind;
    const auto [pin, isNew] = of(env).pins_.try_emplace(array, content.size(), guard, 0);
    EXPECT_TRUE(isNew) << "pinned twice";
    std::copy(content.begin(), content.end(), pin->second.data());
    return pin->second.template as<Element>();
  }
  template <class Array, class Element>
  static void unpin(JNIEnv* env, Array array, Element* elements, jint mode) {
    of(env).record("ReleaseElements", array);
    EXPECT_EQ(mode, 0) << "0: copy back and release";
    EXPECT_EQ(of(env).pins_.at(array).template as<Element>(), elements) << "released without being pinned";
    Bytes& content = of(env).known(array).content;
    std::copy_n(of(env).pins_.at(array).data(), content.size(), content.begin());
    of(env).pins_.erase(array);
  }

  JNINativeInterface_ functions_{};  // reserved0 is the machine
  JNIInvokeInterface_ vmFunctions_{};
  JNIEnv env_{&functions_};
  JavaVM vm_{&vmFunctions_};
  Calls calls_;
  std::map<jobject, std::unique_ptr<Object>> objects_;
  std::map<jobject, testing_support::GuardedBuffer> pins_;
  std::set<std::string> methods_;  // a method's id points into it
  jint filePosition_ = 0;
  jobject loader_ = newObject("loader");
};

inline FakeJava::FakeJava() {
  functions_.reserved0 = vmFunctions_.reserved0 = this;
  vmFunctions_.GetEnv = [](JavaVM* vm, void** env, jint version) {
    if (of(vm).storesEnv) *env = of(vm).env();
    return of(vm).record("GetEnv", version).value_or(JNI_OK);
  };
  functions_.FindClass = [](JNIEnv* env, const char* name) {
    // Local references of JNI_OnLoad end with it: they belong to the virtual machine.
    return of(env).record("FindClass", name) ? nullptr : static_cast<jclass>(of(env).newObject(name));
  };
  functions_.RegisterNatives = [](JNIEnv* env, jclass javaClass, const JNINativeMethod* /*methods*/, jint count) {
    return of(env).record("RegisterNatives", javaClass, count).value_or(JNI_OK);
  };
  functions_.NewWeakGlobalRef = [](JNIEnv* env, jobject object) -> jweak {
    return of(env).give("weak " + of(env).textOf(object), {}, "NewWeakGlobalRef", object);
  };
  functions_.DeleteWeakGlobalRef = [](JNIEnv* env, jweak object) { of(env).take("DeleteWeakGlobalRef", object); };
  functions_.DeleteLocalRef = [](JNIEnv* env, jobject object) { of(env).take("DeleteLocalRef", object); };
  functions_.GetObjectClass = [](JNIEnv* env, jobject object) {
    return static_cast<jclass>(of(env).give("class of " + of(env).textOf(object), {}, "GetObjectClass", object));
  };
  functions_.GetMethodID = [](JNIEnv* env, jclass javaClass, const char* name, const char* signature) {
    auto* method = const_cast<std::string*>(&*of(env).methods_.insert(std::string(name) + signature).first);
    return of(env).record("GetMethodID", javaClass, *method) ? nullptr : reinterpret_cast<jmethodID>(method);
  };
  functions_.NewStringUTF = [](JNIEnv* env, const char* text) {
    return static_cast<jstring>(of(env).give(text, {}, "NewStringUTF", text));
  };
  functions_.NewByteArray = [](JNIEnv* env, jsize size) {
    const Bytes content(static_cast<std::size_t>(std::max(size, 0)), 0xEE);
    return static_cast<jbyteArray>(of(env).give("array " + textOf(size), content, "NewByteArray", size));
  };
  functions_.CallObjectMethodV = [](JNIEnv* env, jobject object, jmethodID method, va_list arguments) {
    of(env).filePosition_ = 0;
    return of(env).give("stream", {}, "CallObjectMethod", object, method, va_arg(arguments, jobject));
  };
  functions_.CallIntMethodV = [](JNIEnv* env, jobject object, jmethodID method, va_list arguments) {
    auto* array = va_arg(arguments, jobject);
    const jint offset = va_arg(arguments, jint);
    const jint length = va_arg(arguments, jint);
    const std::optional<jint> result = of(env).record("CallIntMethod", object, method, array, offset, length);
    return of(env).read(of(env).known(array).content, offset, length, result);
  };
  functions_.CallVoidMethodV = [](JNIEnv* env, jobject object, jmethodID method, va_list /*arguments*/) {
    of(env).record("CallVoidMethod", object, method);
  };
  functions_.GetByteArrayElements = pin;
  functions_.GetIntArrayElements = pin;
  functions_.ReleaseByteArrayElements = unpin;
  functions_.ReleaseIntArrayElements = unpin;
}

}  // namespace bindings_tests

#endif
