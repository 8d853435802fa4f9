/// One number for a set of frames: what the engine makes of them is the same on every processor, with every compiler
/// and every target.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
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

// Content from arithmetic alone; the number must not hang on helpers that other tests may change.
int below(std::uint32_t& state, int count) {
  state = state * 1664525U + 1013904223U;
  return static_cast<int>((state >> 8) % static_cast<std::uint32_t>(count));
}

template <class Value>
Bytes plane(int stride, int height, Value value) {
  Bytes bytes;
  for (int i = 0; i < stride * height; ++i)
    bytes.push_back(static_cast<Byte>(std::clamp(value(i % stride, i / stride), 0, 255)));
  return bytes;
}

/// Slopes, one edge and noise.
Bytes drawLuma(std::uint32_t& state, int width, int height) {
  const int edge = below(state, width);
  const int contrast = below(state, 160);
  const int noise = 1 + below(state, 60);
  return plane(width, height, [&](int x, int y) {
    return 60 + (x < edge ? contrast : 0) + (x + 2 * y) / 4 % 50 + below(state, noise);
  });
}

class Golden : public testing_support::TargetTest {};

// Every size, kind and order; settings and thread counts take turns.
TEST_P(Golden, FramesHaveTheOneChecksum) {
  constexpr int kSizes[][2] = {{64, 48}, {33, 21}, {17, 70}, {128, 96},  {1, 1},
                               {8, 2},   {7, 9},   {50, 38}, {161, 119}, {320, 180}};
  constexpr int kThreads[] = {1, 2, 3, 4, 8};
  constexpr model::Settings kSettings[] = {{50, 1000, 20, 100}, {100, 1000, 8, 100},  {50, 600, 64, 100},
                                           {80, 300, 33, 0},    {-20, 10000, 9, 100}, {300, 1, INT_MAX, 100},
                                           {0, 1000, 16, 0}};
  std::uint32_t state = 1;
  const model::Resource resource{true, plane(2048, 512, [&](int, int) { return below(state, 256); })};
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
    state = static_cast<std::uint32_t>(i + 1) * 2654435761U | 1U;
    const int stride = 4 * width + below(state, 3) * 12;
    Bytes picture = drawLuma(state, width, height);
    if (bgra) {
      picture = plane(stride, height, [&, light = picture](int x, int y) {
        const int shade = x < 4 * width ? light[static_cast<std::size_t>(y * width + x / 4)] - 120 : 0;
        return std::array{125, 150, 200, 77}[static_cast<std::size_t>(x % 4)] + shade / 2 + below(state, 24);
      });
    }
    // Pairs that are skin more or less, and blocks of any colour.
    Bytes chroma = plane(width, bgra ? 0 : (height + 1) / 2, [&](int x, int y) {
      return (x / 16 + y / 8) % 4 == 3 ? below(state, 256)
                                       : ((x % 2 == 0) == rgbOrder ? 155 : 110) - 30 + below(state, 61);
    });
    Bytes pixels(toPixels ? static_cast<std::size_t>(stride * height) : 0, 0xC5);
    Byte* const out = toPixels ? pixels.data() : bgra ? picture.data() : nullptr;
    Byte* const in = picture.data();
    ASSERT_EQ(bgra ? filter.processBGRAVideo(in, width, height, stride, out, stride)
                   : filter.processVideo(in, width, chroma.data(), width, width, height, out, stride, rgbOrder),
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
