/// One number for a set of frames: what the engine makes of them is the same on every processor, with every compiler
/// and every target.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <vector>

#include "tests/frames/frame_support.h"
#include "tests/support/target_test.h"

namespace frame_tests {
namespace {

using model::Bytes;
using model::Settings;

// Never changes, unless what the engine makes of a frame is meant to change, or the set below. Then it is the number
// that the failing test prints, provided that the frames of frame_test equal the model.
constexpr std::uint64_t kGolden = 0x68F3EC3365CB8364U;

/// Content of frames from arithmetic alone; the number must not hang on helpers that other tests may change.
class Generator {
 public:
  explicit Generator(std::uint32_t seed) : state_(seed * 2654435761U | 1U) {}

  int below(int count) {
    state_ = state_ * 1664525U + 1013904223U;
    return static_cast<int>((state_ >> 8) % static_cast<std::uint32_t>(count));
  }

 private:
  std::uint32_t state_;
};

model::Byte clamped(int value) {
  return static_cast<model::Byte>(std::clamp(value, 0, 255));
}

/// Slopes, one edge and noise.
Bytes lumaOf(int width, int height, Generator& random) {
  const int edge = random.below(width);
  const int contrast = random.below(160);
  const int noise = 1 + random.below(60);
  Bytes luma;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x)
      luma.push_back(clamped(60 + (x < edge ? contrast : 0) + (x + 2 * y) / 4 % 50 + random.below(noise)));
  }
  return luma;
}

/// Pairs that are skin more or less, and blocks of any colour.
Bytes chromaOf(int width, int height, bool rgbOrder, Generator& random) {
  Bytes chroma;
  for (int y = 0; y < (height + 1) / 2; ++y) {
    for (int x = 0; x < width; ++x) {
      const int skin = (x % 2 == 0) == rgbOrder ? 155 : 110;
      const bool anyColor = (x / 16 + y / 8) % 4 == 3;
      chroma.push_back(anyColor ? clamped(random.below(256)) : clamped(skin - 30 + random.below(61)));
    }
  }
  return chroma;
}

Bytes bgraOf(int width, int height, int stride, Generator& random) {
  constexpr int kSkin[] = {125, 150, 200, 77};
  const Bytes light = lumaOf(width, height, random);
  Bytes pixels(static_cast<std::size_t>(stride) * static_cast<std::size_t>(height));
  for (int y = 0; y < height; ++y) {
    for (int i = 0; i < stride; ++i) {
      const int shade = i < 4 * width ? light[static_cast<std::size_t>(y * width + i / 4)] - 120 : 0;
      pixels[static_cast<std::size_t>(y * stride + i)] = clamped(kSkin[i % 4] + shade / 2 + random.below(24));
    }
  }
  return pixels;
}

const model::Resource& picture() {
  static const model::Resource resource = [] {
    model::Resource made{true, Bytes(model::kPictureSize)};
    Generator random(0);
    for (auto& byte : made.payload)
      byte = clamped(random.below(256));
    return made;
  }();
  return resource;
}

struct GoldenFrame {
  Kind kind;
  bool rgbOrder;
  int width, height, threads;
  Settings settings;
  int outStride = 0;
  Bytes planes[3] = {};  ///< luma or pixels, chroma, out

  bool isBgra() const { return kind == Kind::kBgra || kind == Kind::kBgraOntoItself; }

  void fill(std::uint32_t seed) {
    Generator random(seed);
    outStride = 4 * width + random.below(3) * 12;
    planes[0] = isBgra() ? bgraOf(width, height, outStride, random) : lumaOf(width, height, random);
    planes[1] = isBgra() ? Bytes{} : chromaOf(width, height, rgbOrder, random);
    const bool hasOut = kind == Kind::kToPixels || kind == Kind::kBgra;
    planes[2].assign(hasOut ? static_cast<std::size_t>(outStride) * static_cast<std::size_t>(height) : 0, 0xC5);
  }

  /// Where the pixels go, null for a frame in place.
  model::Byte* out() {
    if (kind == Kind::kBgraOntoItself) return planes[0].data();
    return kind == Kind::kInPlace ? nullptr : planes[2].data();
  }

  int run(CFastEdgePreserved& filter) {
    filter.put_whitenIntensity(settings.whiten);
    filter.put_softenSkinIntensity(settings.soften);
    filter.put_colorAdjustIntensity(settings.colorAdjust);
    filter.radius = settings.radius;
    filter.threadCount = threads;
    if (isBgra()) return filter.processBGRAVideo(planes[0].data(), width, height, outStride, out(), outStride);
    return filter.processVideo(planes[0].data(), width, planes[1].data(), width, width, height, out(), outStride,
                               rgbOrder);
  }
};

/// Every size with every kind and order; settings and thread counts take turns.
std::vector<GoldenFrame> goldenFrames() {
  constexpr int kMost = std::numeric_limits<int>::max();
  constexpr struct {
    int width, height;
  } kSizes[] = {{64, 48}, {33, 21}, {17, 70}, {128, 96}, {1, 1}, {8, 2}, {7, 9}, {50, 38}, {161, 119}, {320, 180}};
  constexpr struct {
    Kind kind;
    bool rgbOrder;
  } kWays[] = {{Kind::kInPlace, true},   {Kind::kInPlace, false}, {Kind::kToPixels, true},
               {Kind::kToPixels, false}, {Kind::kBgra, false},    {Kind::kBgraOntoItself, false}};
  constexpr Settings kSettings[] = {{},
                                    {.whiten = 100, .radius = 8},
                                    {.soften = 600, .radius = 64},
                                    {.whiten = 80, .soften = 300, .radius = 33, .colorAdjust = 0},
                                    {.whiten = -20, .soften = 10000, .radius = 9},
                                    {.whiten = 300, .soften = 1, .radius = kMost},
                                    {.whiten = 0, .radius = 16, .colorAdjust = 0}};
  constexpr int kThreads[] = {1, 2, 3, 4, 8};
  std::vector<GoldenFrame> frames;
  for (const auto& [width, height] : kSizes) {
    for (const auto& [kind, rgbOrder] : kWays) {
      const std::size_t i = frames.size();
      frames.push_back({kind, rgbOrder, width, height, kThreads[i % 5], kSettings[i % 7]});
      frames.back().fill(static_cast<std::uint32_t>(i) + 1);
    }
  }
  return frames;
}

/// FNV-1a.
class Checksum {
 public:
  void add(const Bytes& bytes) {
    for (const std::uint8_t byte : bytes)
      value_ = (value_ ^ byte) * 0x100000001B3U;
  }
  std::uint64_t value() const { return value_; }

 private:
  std::uint64_t value_ = 0xCBF29CE484222325U;
};

class Golden : public testing_support::TargetTest {};

TEST_P(Golden, FramesHaveTheOneChecksum) {
  std::vector<GoldenFrame> frames = goldenFrames();
  Loader loader(&picture());
  CFastEdgePreserved filter(1, &loader);
  Checksum checksum;
  for (GoldenFrame& frame : frames) {
    ASSERT_EQ(frame.run(filter), 0) << frame.width << " x " << frame.height;
    for (const Bytes& plane : frame.planes)
      checksum.add(plane);
  }
  std::free(filter.nv12Scratch);  // which the filter leaves to its host
  EXPECT_EQ(checksum.value(), kGolden) << "the checksum is 0x" << std::hex << checksum.value();
}

VLVK_TEST_ALL_TARGETS(Golden);

}  // namespace
}  // namespace frame_tests
