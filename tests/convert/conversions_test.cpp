/// The nine conversions between semi-planar YUV and 32-bit pixels, against the naive ones.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include <vlvk/rgb_to_yuv.h>
#include <vlvk/yuv_to_rgb.h>
#include "tests/naive/naive.h"
#include "tests/support/plane.h"
#include "tests/support/target_test.h"

namespace {

using naive::ChromaOrder;
using naive::PixelOrder;
using Family = naive::ToPixels;
using namespace testing_support;

struct Size {
  int width, height;
};

Size wholePairs(Size s) {
  return {s.width & ~1, s.height & ~1};
}

int randomPadding(Random& random) {
  return random.pick({0, 0, 1, 3, 16, 29});
}

/// A function with all strides after their planes, and what it makes of which chroma.
struct ToPixels {
  const char* name;
  decltype(&VKNV21ToRGBA_NeonCall) library;
  ChromaOrder chroma;
  PixelOrder pixels;
  Family family;

  /// The widths that it is meant for are multiples of this.
  int widthStep() const { return family == Family::kFourPairs ? 8 : 1; }
  /// The rectangle that it converts.
  Size converted(Size s) const {
    return family == Family::kPlain ? wholePairs(s) : Size{std::max(s.width & ~1, 8), std::max(s.height & ~1, 2)};
  }
};

template <decltype(&VKNV21ToRGBA_V2_NeonCall) kFunction>
void reordered(const std::uint8_t* y, int yStride, const std::uint8_t* uv, int uvStride, std::uint8_t* dst,
               int dstStride, int width, int height) {
  kFunction(y, uv, dst, dstStride, width, height, yStride, uvStride);
}

using enum ChromaOrder;
using enum PixelOrder;
constexpr ToPixels kToPixels[] = {{"VKNV21ToRGBA", VKNV21ToRGBA_NeonCall, kVU, kRGBA, Family::kPlain},
                                  {"VKNV21ToBGRA", VKNV21ToBGRA_NeonCall, kVU, kBGRA, Family::kPlain},
                                  {"VKNV12ToBGRA", VKNV12ToBGRA_NeonCall, kUV, kBGRA, Family::kPlain},
                                  {"VKNV21ToRGBA_V2", reordered<VKNV21ToRGBA_V2_NeonCall>, kVU, kRGBA, Family::kV2},
                                  {"VKNV12ToBGRA_V2", reordered<VKNV12ToBGRA_V2_NeonCall>, kUV, kBGRA, Family::kV2},
                                  {"NV212RGB_V2", reordered<NV212RGB_V2_NEON>, kUV, kBGRA, Family::kFourPairs}};

class Conversions : public TargetTest {
 protected:
  static void checkToPixels(const ToPixels& f, Size size, const Plane& luma, const Plane& chroma, int dstPadding,
                            Guard guard) {
    const auto [width, height] = f.converted(size);
    const Plane pixels(4 * width, height, 4 * std::max(size.width, width) + dstPadding, guard);
    std::vector<std::uint8_t> expected = pixels.bytes();
    naive::yuvToPixels(luma.data(), luma.stride(), chroma.data(), chroma.stride(), expected.data(), pixels.stride(),
                       size.width, size.height, f.chroma, f.pixels, f.family);
    f.library(luma.data(), luma.stride(), chroma.data(), chroma.stride(), pixels.data(), pixels.stride(), size.width,
              size.height);
    ASSERT_TRUE(sameBytes(pixels, expected)) << f.name << ", " << size.width << " x " << size.height;
  }

  /// Noise in planes that end with the last byte the function may read.
  static void checkToPixels(const ToPixels& f, Size size, Guard guard, Random& random) {
    const auto [width, height] = f.converted(size);
    const int lumaWidth = std::max(size.width, width);
    const int lumaHeight = std::max(size.height, height);
    const Plane luma(lumaWidth, lumaHeight, lumaWidth + randomPadding(random), guard, Content::kNoise, random);
    const Plane chroma(width, height / 2, width + randomPadding(random), guard, Content::kNoise, random);
    checkToPixels(f, size, luma, chroma, randomPadding(random), guard);
  }
};

TEST_P(Conversions, ToPixelsOfAllSizes) {
  Random random(61);
  for (const ToPixels& f : kToPixels) {
    const bool plain = f.family == Family::kPlain;
    for (int width = plain ? 0 : 8; width <= 83 && !HasFatalFailure(); width += f.widthStep()) {
      for (int height = plain ? -3 : 2; height <= 7; ++height) {
        for (const Guard guard : {Guard::kBehind, Guard::kBefore})
          checkToPixels(f, {width, height}, guard, random);
      }
    }
    // Below the smallest size one block is converted all the same. NV212RGB_V2 is meant for one row pair then.
    for (int width = 0; !plain && width <= 7 && !HasFatalFailure(); ++width) {
      for (int height = 0; height <= (f.widthStep() == 8 ? 3 : 5); ++height) {
        checkToPixels(f, {width, height}, Guard::kBehind, random);
        checkToPixels(f, {8, height}, Guard::kBefore, random);
      }
    }
  }
}

// All luma values with chroma in steps, the whole range in which blue wraps included: in whole groups of 16 columns,
// and in 14 columns, which those without _V2 convert without wrapping.
TEST_P(Conversions, ToPixelsOfAllColours) {
  std::vector<int> values = {1, 2, 63, 64, 127, 129};
  for (int i = 0; i < 256; i += i < 240 ? 8 : 1)
    values.push_back(i);
  const auto count = static_cast<int>(values.size());
  const int blocks = count * count * 64;  // of 2 x 2 pixels: 64 hold all luma values
  for (const int width : {1024, 14}) {
    const int perRow = width / 2;
    const int rows = (blocks + perRow - 1) / perRow;
    const Plane luma(width, 2 * rows, width);
    const Plane chroma(width, rows, width);
    for (int i = 0; i < perRow * rows; ++i) {
      const int block = std::min(i, blocks - 1);
      const std::ptrdiff_t x = 2 * (i % perRow);
      for (int k = 0; k < 4; ++k)
        luma.row(i / perRow * 2 + k / 2)[x + k % 2] = static_cast<std::uint8_t>(4 * (block % 64) + k);
      std::uint8_t* pair = chroma.row(i / perRow) + x;
      pair[0] = static_cast<std::uint8_t>(values[static_cast<std::size_t>(block / 64 / count)]);
      pair[1] = static_cast<std::uint8_t>(values[static_cast<std::size_t>(block / 64 % count)]);
    }
    for (const ToPixels& f : kToPixels) {
      if (width % f.widthStep() != 0) continue;
      ASSERT_NO_FATAL_FAILURE(checkToPixels(f, {width, 2 * rows}, luma, chroma, 0, Guard::kBehind));
    }
  }
}

struct ToYuv {
  const char* name;
  decltype(&VKRGBAToNV21_NeonCall) library;
  PixelOrder pixels;
  ChromaOrder chroma;
};

constexpr ToYuv kToYuv[] = {{"VKRGBAToNV21", VKRGBAToNV21_NeonCall, kRGBA, kVU},
                            {"VKBGRAToNV21", VKBGRAToNV21_NeonCall, kBGRA, kVU},
                            {"VKBGRAToNV12", VKBGRAToNV12_NeonCall, kBGRA, kUV}};

void checkToYuv(const ToYuv& f, Size size, const Plane& pixels, int lumaPadding, int chromaPadding, Guard guard) {
  const Size converted = wholePairs(size);
  const Plane luma(converted.width, converted.height, size.width + lumaPadding, guard);
  const Plane chroma(converted.width, converted.height / 2, size.width + chromaPadding, guard);
  std::vector<std::uint8_t> expectedLuma = luma.bytes();
  std::vector<std::uint8_t> expectedChroma = chroma.bytes();
  naive::pixelsToYuv(pixels.data(), pixels.stride(), expectedLuma.data(), luma.stride(), expectedChroma.data(),
                     chroma.stride(), size.width, size.height, f.pixels, f.chroma);
  f.library(pixels.data(), pixels.stride(), luma.data(), luma.stride(), chroma.data(), chroma.stride(), size.width,
            size.height);
  ASSERT_TRUE(sameBytes(luma, expectedLuma)) << f.name << " luma";
  ASSERT_TRUE(sameBytes(chroma, expectedChroma)) << f.name << " chroma";
}

TEST_P(Conversions, ToYuvOfAllSizes) {
  Random random(62);
  for (const ToYuv& f : kToYuv) {
    for (int width = 0; width <= 83 && !HasFatalFailure(); ++width) {
      for (int height = -3; height <= 7; ++height) {
        for (const Guard guard : {Guard::kBehind, Guard::kBefore}) {
          const Plane pixels(4 * (width & ~1), height & ~1, 4 * width + randomPadding(random), guard, Content::kNoise,
                             random);
          checkToYuv(f, {width, height}, pixels, randomPadding(random), randomPadding(random), guard);
        }
      }
    }
  }
}

// Colours in steps of 5, each as the upper left pixel of a block whose other pixels have other colours and any alpha:
// in rounded columns (1024 wide) and in truncated ones (14 wide).
TEST_P(Conversions, ToYuvOfAllColours) {
  Random random(63);
  constexpr int kColours = 52 * 52 * 52;
  for (const int width : {1024, 14}) {
    const int perRow = width / 2;
    const int rows = (kColours + perRow - 1) / perRow;
    const Plane pixels(4 * width, 2 * rows, 4 * width, Guard::kBehind, Content::kNoise, random);
    for (int i = 0; i < std::min(kColours, perRow * rows); ++i) {
      const int colour[] = {i % 52 * 5, i / 52 % 52 * 5, i / 52 / 52 * 5};
      std::copy_n(colour, 3, pixels.row(i / perRow * 2) + 8 * (i % perRow));
    }
    for (const ToYuv& f : kToYuv)
      ASSERT_NO_FATAL_FAILURE(checkToYuv(f, {width, 2 * rows}, pixels, 0, 0, Guard::kBehind));
  }
}

VLVK_TEST_ALL_TARGETS(Conversions);

}  // namespace
