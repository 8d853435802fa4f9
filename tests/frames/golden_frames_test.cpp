/// One number for a set of frames: what the engine makes of them is the same on every processor, with every compiler
/// and every target.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdint>

#include "tests/frames/frame_rig.h"
#include "tests/support/target_test.h"

namespace {

using model::Byte;
using model::Bytes;

// Never changes, unless what the engine makes of a frame is meant to change, or the set below. Then it is the number
// that the failing test prints, provided that the frames of frame_test equal the model.
constexpr std::uint64_t kGolden = 0x68F3EC3365CB8364U;

/// Content from arithmetic alone; the number must not hang on helpers that other tests may change.
class Generator {
 public:
  explicit Generator(std::size_t seed) : state_(static_cast<std::uint32_t>(seed) * 2654435761U | 1U) {}

  int below(int count) {
    state_ = state_ * 1664525U + 1013904223U;
    return static_cast<int>((state_ >> 8) % static_cast<std::uint32_t>(count));
  }

  /// `height` rows of `stride` bytes.
  template <class Value>
  Bytes plane(int stride, int height, Value value) {
    Bytes bytes;
    for (int i = 0; i < stride * height; ++i)
      bytes.push_back(static_cast<Byte>(std::clamp(value(i % stride, i / stride), 0, 255)));
    return bytes;
  }

  /// Slopes, one edge and noise.
  Bytes luma(int width, int height) {
    const int edge = below(width);
    const int contrast = below(160);
    const int noise = 1 + below(60);
    return plane(width, height, [=, this](int x, int y) {
      return 60 + (x < edge ? contrast : 0) + (x + 2 * y) / 4 % 50 + below(noise);
    });
  }

  /// Pairs that are skin more or less, and blocks of any colour.
  Bytes chroma(int width, int height, bool rgbOrder) {
    return plane(width, (height + 1) / 2, [=, this](int x, int y) {
      return (x / 16 + y / 8) % 4 == 3 ? below(256) : ((x % 2 == 0) == rgbOrder ? 155 : 110) - 30 + below(61);
    });
  }

  Bytes bgra(int width, int height, int stride) {
    return plane(stride, height, [=, this, light = luma(width, height)](int i, int y) {
      constexpr int kSkin[] = {125, 150, 200, 77};
      const int shade = i < 4 * width ? light[static_cast<std::size_t>(y * width + i / 4)] - 120 : 0;
      return kSkin[i % 4] + shade / 2 + below(24);
    });
  }

 private:
  std::uint32_t state_;
};

class Golden : public testing_support::TargetTest {};

// Every size, kind and order; settings and thread counts take turns.
TEST_P(Golden, FramesHaveTheOneChecksum) {
  constexpr int kSizes[][2] = {{64, 48}, {33, 21}, {17, 70}, {128, 96},  {1, 1},
                               {8, 2},   {7, 9},   {50, 38}, {161, 119}, {320, 180}};
  constexpr int kThreads[] = {1, 2, 3, 4, 8};
  constexpr model::Settings kSettings[] = {{},
                                           {.whiten = 100, .radius = 8},
                                           {.soften = 600, .radius = 64},
                                           {.whiten = 80, .soften = 300, .radius = 33, .colorAdjust = 0},
                                           {.whiten = -20, .soften = 10000, .radius = 9},
                                           {.whiten = 300, .soften = 1, .radius = INT_MAX},
                                           {.whiten = 0, .radius = 16, .colorAdjust = 0}};
  Generator colors(0);
  const model::Resource resource{true, colors.plane(2048, 512, [&](int, int) { return colors.below(256); })};
  frame_rig::Loader loader(&resource);
  frame_rig::Filter filter(1, &loader);
  std::uint64_t checksum = 0xCBF29CE484222325U;  // FNV-1a
  for (std::size_t i = 0; i < 6 * std::size(kSizes); ++i) {
    filter.put(kSettings[i % 7]);
    filter.threadCount = kThreads[i % 5];
    const auto [width, height] = kSizes[i / 6];
    const bool rgbOrder = i % 6 == 0 || i % 6 == 2;
    const bool bgra = i % 6 >= 4;
    const bool toPixels = i % 6 >= 2 && i % 6 <= 4;
    Generator random(i + 1);
    const int stride = 4 * width + random.below(3) * 12;
    Bytes picture = bgra ? random.bgra(width, height, stride) : random.luma(width, height);
    Bytes chroma = bgra ? Bytes{} : random.chroma(width, height, rgbOrder);
    Bytes pixels(toPixels ? static_cast<std::size_t>(stride * height) : 0, 0xC5);
    Byte* const out = toPixels ? pixels.data() : bgra ? picture.data() : nullptr;
    ASSERT_EQ(
        bgra ? filter.processBGRAVideo(picture.data(), width, height, stride, out, stride)
             : filter.processVideo(picture.data(), width, chroma.data(), width, width, height, out, stride, rgbOrder),
        0);
    for (const Bytes& plane : {picture, chroma, pixels}) {
      for (const Byte byte : plane)
        checksum = (checksum ^ byte) * 0x100000001B3U;
    }
  }
  EXPECT_EQ(checksum, kGolden) << "the checksum is 0x" << std::hex << checksum;
}

VLVK_TEST_ALL_TARGETS(Golden);

}  // namespace
