/// An engine and its handle, and what a filter without an engine does, as the measure of what the engine does.
#ifndef VLVK_TESTS_BINDINGS_ENGINE_H
#define VLVK_TESTS_BINDINGS_ENGINE_H

#include <cstdlib>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/makeup_entry_points.h>
#include "bindings/engine_handle.h"
#include "tests/bindings/fake_jni.h"
#include "tests/support/random_content.h"

namespace bindings_tests {

/// Handles hold 32 bits of an address: all of it, or not.
inline constexpr bool kHandleIsNarrow = sizeof(void*) > sizeof(std::int32_t);

/// Lives from makeup_Init to makeup_Uninit, and takes the filter down that the latter leaves.
struct Engine {
  explicit Engine(FakeJava& machine)
      : java(machine),
        handle(makeup_Init(java.env(), nullptr, java.loader())),
        filter(vlvk::engineOf(handle)->filter) {}
  ~Engine() {
    makeup_Uninit(java.env(), nullptr, handle);
    std::free(filter->nv12Scratch);  // the filter leaves this one to its host
    delete filter;
  }

  FakeJava& java;
  const jlong handle;
  CFastEdgePreserved* const filter;
};

inline Bytes noise(std::size_t size, std::uint32_t seed) {
  testing_support::Random random(seed);
  Bytes bytes(size + 1);
  std::generate(bytes.begin(), bytes.end(), [&] { return random.byte(); });
  bytes.pop_back();  // an empty frame has an address too
  return bytes;
}

/// An NV21 frame of random luma and mostly skin colours.
inline Bytes skinFrame(int width, int height, std::uint32_t seed) {
  const int luma = width * height;
  const int chroma = width * ((height + 1) / 2);
  Bytes frame = noise(static_cast<std::size_t>(luma + chroma), seed);
  testing_support::Random random(seed + 1);
  testing_support::fill(testing_support::Content::kSkinPairs, frame.data() + luma, chroma, 1, 0, random);
  return frame;
}

/// A resource file with these factors and a payload, scrambled.
inline Bytes resourceFile(const std::array<std::uint8_t, 8>& factors, const Bytes& payload) {
  Bytes file(12 + payload.size(), 'x');
  std::copy(factors.begin(), factors.end(), file.begin() + 4);
  for (std::size_t i = 0; i < payload.size(); ++i)
    file[12 + i] = payload[std::min(i ^ 1, payload.size() - 1)] ^ 0x5A;
  return file;
}

/// A colour picture in which neighbouring colours land far apart, so that a wrong pixel shows.
inline const Bytes kPicture = noise(1048576, 7);
inline const Bytes kPictureFile = resourceFile({0, 8, 0, 0, 0, 2, 0, 0}, kPicture);

/// Processes a frame whose chroma follows its luma with a new filter and that picture.
inline void processDirectly(Bytes& frame, int width, int height, unsigned char* out = nullptr, int outStride = 0) {
  struct : IBeautyResourceLoader {
    int getResFromName(const char* /*name*/, unsigned char* dst) override {
      std::copy(kPicture.begin(), kPicture.end(), dst);
      return 0;
    }
  } loader;
  CFastEdgePreserved filter(4, &loader);
  unsigned char* chroma = frame.data() + width * height;
  EXPECT_EQ(filter.processVideo(frame.data(), width, chroma, width, width, height, out, outStride, true), 0);
}

}  // namespace bindings_tests

#endif
