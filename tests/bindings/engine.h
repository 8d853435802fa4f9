/// An engine behind its handle, and a filter that stands next to it as the measure of what the engine does.
#ifndef VLVK_TESTS_BINDINGS_ENGINE_H
#define VLVK_TESTS_BINDINGS_ENGINE_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/makeup_entry_points.h>
#include "bindings/engine_handle.h"
#include "tests/bindings/fake_jni.h"
#include "tests/support/random_content.h"

namespace bindings_tests {

/// Lives from makeup_Init to makeup_Uninit, and takes the filter down that the latter leaves behind.
class Engine {
 public:
  explicit Engine(FakeJava& java)
      : handle(makeup_Init(java.env(), nullptr, java.loader())), filter(vlvk::engineOf(handle)->filter), java_(java) {}
  ~Engine() {
    makeup_Uninit(java_.env(), nullptr, handle);
    std::free(filter->nv12Scratch);  // the filter leaves this one to its host
    delete filter;
  }
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  const jlong handle;
  CFastEdgePreserved* const filter;

 private:
  FakeJava& java_;
};

/// What an engine's filter is made of, without an engine.
class DirectFilter final : public IBeautyResourceLoader {
 public:
  /// @param picture  payload of "adjust.vlk"; null: there is no such resource
  explicit DirectFilter(const Bytes* picture) : filter(4, this), picture_(picture) {}

  int getResFromName(const char* /*name*/, unsigned char* dst) override {
    if (picture_ == nullptr) return -1;
    std::copy(picture_->begin(), picture_->end(), dst);
    return 0;
  }

  /// An NV21 frame whose chroma follows its luma.
  int process(unsigned char* frame, int width, int height, unsigned char* out = nullptr, int outStride = 0) {
    unsigned char* chroma = frame + std::ptrdiff_t{width} * height;
    return filter.processVideo(frame, width, chroma, width, width, height, out, outStride, true);
  }

  CFastEdgePreserved filter;

 private:
  const Bytes* picture_;
};

inline Bytes noise(std::size_t size, std::uint32_t seed) {
  testing_support::Random random(seed);
  Bytes bytes;
  bytes.reserve(size + 1);  // an empty frame has an address too
  bytes.resize(size);
  std::generate(bytes.begin(), bytes.end(), [&] { return random.byte(); });
  return bytes;
}

/// A colour picture in which neighbouring colours land far apart, so that a wrong pixel shows.
inline const Bytes& noisePicture() {
  static const Bytes picture = noise(1048576, 7);
  return picture;
}

/// The factors of its header.
inline const Bytes& pictureFactors() {
  static const Bytes factors{0, 8, 0, 0, 0, 2, 0, 0};
  return factors;
}

/// An NV21 frame of random luma and mostly skin colours.
inline Bytes skinFrame(int width, int height, std::uint32_t seed) {
  const std::size_t luma = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  const std::size_t chroma = static_cast<std::size_t>(width) * static_cast<std::size_t>((height + 1) / 2);
  Bytes frame = noise(luma + chroma, seed);
  testing_support::Random random(seed + 1);
  testing_support::fill(testing_support::Content::kSkinPairs, frame.data() + luma, static_cast<int>(chroma), 1, 0,
                        random);
  return frame;
}

}  // namespace bindings_tests

#endif
