/// A Java virtual machine that only records: what native code asks of it, and whether everything it hands out comes
/// back.
#ifndef VLVK_TESTS_BINDINGS_FAKE_JNI_H
#define VLVK_TESTS_BINDINGS_FAKE_JNI_H

#include <jni.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/guarded_buffer.h"

namespace bindings_tests {

using Bytes = std::vector<std::uint8_t>;
using Calls = std::vector<std::string>;

/// A virtual machine with one thread, and a loader object whose method loadFromName gives a stream of `file`.
///
/// Any function but those of the engine's protocol fails the test, and so does an object that is unknown or was
/// deleted, memory given back twice, and, at the end, a reference or a pinned array that was not given back. Pinned
/// arrays are copies next to an unreadable page.
class FakeJava {
 public:
  FakeJava();
  ~FakeJava();
  FakeJava(const FakeJava&) = delete;
  FakeJava& operator=(const FakeJava&) = delete;

  JNIEnv* env() { return &env_.env; }
  JavaVM* vm() { return &vm_.vm; }

  /// What the test itself owns.
  jobject loader() { return loader_; }
  jbyteArray byteArray(const Bytes& content) { return static_cast<jbyteArray>(newObject("frame", content)); }
  jintArray intArray(const Bytes& content) { return static_cast<jintArray>(newObject("pixels", content)); }
  const Bytes& contentOf(jobject array) { return known(array).content; }

  /// Calls since the last time, as "Function object argument ...".
  Calls takeCalls() { return std::exchange(calls_, {}); }

  std::set<std::string> failing;         ///< calls, as recorded, that give null or JNI_ERR
  Bytes file;                            ///< what the loader's stream delivers
  std::vector<jint> readResults;         ///< of the next reads; later ones deliver all they are asked for, or -1
  jint getEnvResult = JNI_OK;            ///< of GetEnv
  bool storesEnv = true;                 ///< GetEnv stores the environment, whatever it returns
  jint registerResult = JNI_OK;          ///< of RegisterNatives
  std::vector<JNINativeMethod> natives;  ///< what was registered

 private:
  struct Object {
    std::string name;
    Bytes content;
  };
  struct Pin {
    jobject array;
    testing_support::GuardedBuffer buffer;
  };
  // Native code gets the first members; the fake finds itself behind them.
  struct Env {
    JNIEnv env;
    FakeJava* java;
  };
  struct Vm {
    JavaVM vm;
    FakeJava* java;
  };

  static FakeJava& of(JNIEnv* env);
  void fillEnvTable();
  void fillVmTable();

  bool passes(const std::string& call);
  jobject newObject(const std::string& name, const Bytes& content = {});
  jobject newReference(const std::string& call, const std::string& name, const Bytes& content = {});
  Object& known(jobject object);
  const std::string& nameOf(jobject object) { return known(object).name; }
  void deleteReference(const char* function, jobject object);
  jmethodID methodId(jclass javaClass, const char* name, const char* signature);
  jint read(jobject array, jint offset, jint length);
  void* pin(const char* function, jobject array);
  void unpin(const char* function, jobject array, void* elements, jint mode);

  Env env_{};
  Vm vm_{};
  JNINativeInterface_ functions_;
  JNIInvokeInterface_ vmFunctions_;
  Calls calls_;
  std::map<jobject, std::unique_ptr<Object>> objects_;
  std::set<jobject> references_;
  std::vector<std::unique_ptr<Pin>> pins_;
  std::set<std::string> methods_;  // a method's id points into it
  std::size_t filePosition_ = 0;
  jobject loader_;
};

/// A resource file with these eight bytes of factors and a payload, scrambled.
Bytes resourceFile(const Bytes& factors, const Bytes& payload);

}  // namespace bindings_tests

#endif
