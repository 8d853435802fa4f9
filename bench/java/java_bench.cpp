/// The Java classes against the handle, on the same memory, with the same settings, table and one thread: ratios.
///
///     vlvk_java_bench [--size=WIDTHxHEIGHT]... [options of Google Benchmark]
///
/// `native_by_native` is the handle against itself, on memory of its own each: how far a ratio can be trusted.
/// `pack_and_process` is the way by an array: the planes packed by Nv21, and what process(byte[]) does, in four bands.
#include <benchmark/benchmark.h>
#include <jni.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <vector>

#include <vlvk/makeup.h>
#include "bench/compare.h"
#include "bench/options.h"
#include "resource/color_picture.h"
#include "resource/resource_file.h"
#include "tools/engine/skin_frame.h"

namespace vlvk_bench {
namespace {

constexpr int kRadius = 20;   // that of arrays, which FrameBench.java has too
constexpr int kPadding = 64;  // of a camera's rows
constexpr int kWarmUp = 60;   // frames that let the machine compile the classes

JNIEnv* startJava() {
  char classPath[] = "-Djava.class.path=" VLVK_BENCH_CLASS_PATH;
  char library[] = "-Dcom.velmira.VKMakeup.library=" VLVK_BENCH_LIBRARY;
  JavaVMOption options[] = {{classPath, nullptr}, {library, nullptr}};
  JavaVMInitArgs arguments{JNI_VERSION_1_8, 2, options, JNI_FALSE};
  JavaVM* vm = nullptr;
  void* env = nullptr;
  return JNI_CreateJavaVM(&vm, &env, &arguments) == JNI_OK ? static_cast<JNIEnv*>(env) : nullptr;
}

/// An adjust.vlk that changes no colour.
std::vector<std::uint8_t> neutralTable() {
  std::vector<std::uint8_t> picture(vlvk::kColorPictureSize);
  vlvk::fillNeutralPicture(picture.data());
  std::vector<std::uint8_t> file(vlvk::kResourceHeaderSize + vlvk::kColorPictureSize);
  file[5] = 8;  // 2048 bytes a row
  file[9] = 2;  // 512 rows
  vlvk::scrambleResource(picture.data(), vlvk::kColorPictureSize, file.data() + vlvk::kResourceHeaderSize);
  return file;
}

/// A camera's frame and pixels, which native code and Java work on alike.
class Frames {
 public:
  Frames(JNIEnv* env, Size size)
      : env_(env),
        size_(size),
        stride_(size.width + kPadding),
        scene_(vlvk::tool::skinFrame(size.width, size.height)),
        camera_(static_cast<std::size_t>(stride_) * static_cast<std::size_t>(rows())),
        pixels_(size.pixels() * 4) {
    restore();
    jclass type = env->FindClass("FrameBench");
    jmethodID make = env->GetMethodID(type, "<init>", "(Ljava/nio/ByteBuffer;Ljava/nio/ByteBuffer;III[B)V");
    const std::vector<std::uint8_t> table = neutralTable();
    const auto tableSize = static_cast<jsize>(table.size());
    jbyteArray file = env->NewByteArray(tableSize);
    env->SetByteArrayRegion(file, 0, tableSize, reinterpret_cast<const jbyte*>(table.data()));
    java_ = env->NewObject(type, make, buffer(camera_), buffer(pixels_), stride_, size.width, size.height, file);
    VlvkSettings settings;
    vlvkSettingsInit(&settings, sizeof settings);
    settings.threads = 1;
    settings.contrast = VLVK_CONTRAST_ABSOLUTE;
    settings.radius = kRadius;
    vlvkMakeupCreate(&makeup_, &settings);
    vlvkMakeupSetTable(makeup_, table.data(), table.size());
  }
  Frames(const Frames&) = delete;
  Frames& operator=(const Frames&) = delete;
  ~Frames() { vlvkMakeupDestroy(makeup_); }

  void restore() {
    for (int y = 0; y < rows(); ++y) {
      std::copy_n(scene_.begin() + static_cast<std::ptrdiff_t>(y) * size_.width, size_.width,
                  camera_.begin() + static_cast<std::ptrdiff_t>(y) * stride_);
    }
  }

  jmethodID method(const char* name) { return env_->GetMethodID(env_->GetObjectClass(java_), name, "()V"); }

  bool callJava(jmethodID method) {
    env_->CallVoidMethod(java_, method);
    if (env_->ExceptionCheck() == JNI_FALSE) return true;
    env_->ExceptionDescribe();
    return false;
  }

  bool callNative(bool toPixels) {
    unsigned char* luma = camera_.data();
    unsigned char* chroma = luma + static_cast<std::ptrdiff_t>(stride_) * size_.height;
    const auto [width, height] = size_;
    const VlvkFrame camera = {sizeof camera, VLVK_NV21, VLVK_BT601,     VLVK_LIMITED,
                              width,         height,    {luma, chroma}, {stride_, stride_}};
    const VlvkFrame screen = {sizeof screen, VLVK_RGBA, 0, 0, width, height, {pixels_.data()}, {4 * width}};
    return vlvkMakeupProcess(makeup_, &camera, toPixels ? &screen : &camera, nullptr) == VLVK_OK;
  }

 private:
  int rows() const { return size_.height + size_.height / 2; }
  jobject buffer(std::vector<std::uint8_t>& bytes) {
    return env_->NewDirectByteBuffer(bytes.data(), static_cast<jlong>(bytes.size()));
  }

  JNIEnv* env_;
  Size size_;
  int stride_;
  std::vector<std::uint8_t> scene_;
  std::vector<std::uint8_t> camera_;
  std::vector<std::uint8_t> pixels_;
  jobject java_ = nullptr;  // a local reference of the thread that runs all benchmarks
  VlvkMakeup* makeup_ = nullptr;
};

void addJavaBenchmarks(JNIEnv* env, Size size) {
  const auto java = [=](const char* name) {
    return [=]() -> Contender {
      auto frames = std::make_shared<Frames>(env, size);
      jmethodID method = frames->method(name);
      for (int i = 0; i < kWarmUp; ++i)
        frames->callJava(method);
      return {[=] { return frames->callJava(method); }, [=] { frames->restore(); }};
    };
  };
  const auto native = [=](bool toPixels) {
    return [=]() -> Contender {
      auto frames = std::make_shared<Frames>(env, size);
      return {[=] { return frames->callNative(toPixels); }, [=] { frames->restore(); }};
    };
  };
  const auto add = [&](const std::string& name, const auto& first, const auto& second) {
    compare("java/" + name + "/" + size.name(), first, second);
  };
  add("native_by_native_in_place", native(false), native(false));
  add("native_by_native_to_pixels", native(true), native(true));
  add("in_place_by_native", java("inPlace"), native(false));
  add("to_pixels_by_native", java("toPixels"), native(true));
  add("pack_by_in_place", java("pack"), java("inPlace"));
  add("pack_and_process_by_in_place", java("packAndProcess"), java("inPlace"));
}

}  // namespace
}  // namespace vlvk_bench

int main(int argc, char** argv) {
  using namespace vlvk_bench;
  const std::vector<Size> sizes = takeSizes(&argc, argv);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  JNIEnv* env = startJava();
  if (env == nullptr) {
    std::fprintf(stderr, "vlvk_java_bench: no virtual machine could be started\n");
    return 1;
  }
  for (const Size size : sizes)
    addJavaBenchmarks(env, size);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
