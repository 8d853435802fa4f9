/// The nine conversions between semi-planar YUV and 32-bit pixels, against the naive ones.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include <vlvk/rgb_to_yuv.h>
#include <vlvk/yuv_to_rgb.h>
#include "tests/naive/naive.h"
#include "tests/support/plane.h"
#include "tests/support/random_content.h"
#include "tests/support/target_test.h"

namespace {

using naive::ChromaOrder;
using naive::PixelOrder;
using testing_support::Content;
using testing_support::Guard;
using testing_support::Plane;
using testing_support::Random;
using testing_support::sameBytes;

struct Size {
  int width;
  int height;
};

std::ostream& operator<<(std::ostream& out, const Size& s) {
  return out << s.width << " x " << s.height;
}

// --- YUV to pixels -----------------------------------------------------------------------------------------------

/// A function with its naive counterpart, both in the first generation's argument order, and the rectangle it converts.
struct ToPixels {
  using Function = std::function<void(const std::uint8_t* y, int yStride, const std::uint8_t* uv, int uvStride,
                                      std::uint8_t* dst, int dstStride, int width, int height)>;
  const char* name;
  Function library;
  Function expected;
  Size (*converted)(Size);
  int widthStep;  // the widths it is meant for are multiples of this ...
  bool minimum;   // ... and it converts at least one block of 8 x 2
};

Size wholePairs(Size s) {
  return {s.width & ~1, s.height & ~1};
}
Size atLeastOneBlock(Size s) {
  return {std::max(s.width & ~1, 8), std::max(s.height & ~1, 2)};
}

template <typename Call>
ToPixels::Function secondOrder(Call call) {
  return
      [call](const std::uint8_t* y, int yStride, const std::uint8_t* uv, int uvStride, std::uint8_t* dst, int dstStride,
             int width, int height) { call(y, uv, dst, dstStride, width, height, yStride, uvStride); };
}

template <typename Naive>
ToPixels::Function ordered(Naive function, ChromaOrder chroma, PixelOrder pixels) {
  return
      [=](const std::uint8_t* y, int yStride, const std::uint8_t* uv, int uvStride, std::uint8_t* dst, int dstStride,
          int width, int height) { function(y, yStride, uv, uvStride, dst, dstStride, width, height, chroma, pixels); };
}

std::vector<ToPixels> allToPixels() {
  using enum ChromaOrder;
  using enum PixelOrder;
  return {{"VKNV21ToRGBA", VKNV21ToRGBA_NeonCall, ordered(naive::yuvToPixels, kVU, kRGBA), wholePairs, 1, false},
          {"VKNV21ToBGRA", VKNV21ToBGRA_NeonCall, ordered(naive::yuvToPixels, kVU, kBGRA), wholePairs, 1, false},
          {"VKNV12ToBGRA", VKNV12ToBGRA_NeonCall, ordered(naive::yuvToPixels, kUV, kBGRA), wholePairs, 1, false},
          {"VKNV21ToRGBA_V2", secondOrder(VKNV21ToRGBA_V2_NeonCall), ordered(naive::yuvToPixelsV2, kVU, kRGBA),
           atLeastOneBlock, 1, true},
          {"VKNV12ToBGRA_V2", secondOrder(VKNV12ToBGRA_V2_NeonCall), ordered(naive::yuvToPixelsV2, kUV, kBGRA),
           atLeastOneBlock, 1, true},
          {"NV212RGB_V2", secondOrder(NV212RGB_V2_NEON), naive::yuvToPixelsFourPairs, atLeastOneBlock, 8, true}};
}

class Conversions : public testing_support::TargetTest {
 protected:
  static void checkToPixels(const ToPixels& f, Size size, const Plane& luma, const Plane& chroma, int dstPadding,
                            Guard guard) {
    const Size converted = f.converted(size);
    const Plane pixels(4 * converted.width, converted.height, 4 * std::max(size.width, converted.width) + dstPadding,
                       guard);
    std::vector<std::uint8_t> expected = pixels.bytes();
    f.expected(luma.data(), luma.stride(), chroma.data(), chroma.stride(), expected.data(), pixels.stride(), size.width,
               size.height);
    f.library(luma.data(), luma.stride(), chroma.data(), chroma.stride(), pixels.data(), pixels.stride(), size.width,
              size.height);
    ASSERT_TRUE(sameBytes(pixels, expected)) << f.name << ' ' << size;
  }

  /// Noise in planes that end with the last byte the function may read.
  static void checkToPixels(const ToPixels& f, Size size, Guard guard, Random& random) {
    const Size converted = f.converted(size);
    const int lumaWidth = std::max(size.width, converted.width);
    const int lumaHeight = std::max(size.height, converted.height);
    const auto padding = [&random] { return random.pick({0, 0, 1, 3, 16, 29}); };
    Plane luma(lumaWidth, lumaHeight, lumaWidth + padding(), guard, Content::kNoise, random);
    Plane chroma(converted.width, converted.height / 2, converted.width + padding(), guard, Content::kNoise, random);
    luma.makeReadOnly();
    chroma.makeReadOnly();
    checkToPixels(f, size, luma, chroma, padding(), guard);
  }
};

TEST_P(Conversions, ToPixelsOfAllSizes) {
  Random random(61);
  for (const ToPixels& f : allToPixels()) {
    const bool blocksOnly = f.widthStep == 8;
    for (int width = f.minimum ? 8 : 0; width <= 83; width += f.widthStep) {
      for (int height = f.minimum ? 2 : 0; height <= 7; ++height) {
        for (const Guard guard : {Guard::kBehind, Guard::kBefore}) {
          checkToPixels(f, {width, height}, guard, random);
          ASSERT_FALSE(HasFatalFailure());
        }
      }
    }
    if (!f.minimum) continue;
    // Below the smallest size one block is converted all the same. One row pair: NV212RGB steps by width - 8 otherwise.
    for (int width = 0; width <= 7; ++width) {
      for (int height = 0; height <= (blocksOnly ? 3 : 5); ++height) {
        checkToPixels(f, {width, height}, Guard::kBehind, random);
        checkToPixels(f, {8, height}, Guard::kBefore, random);
        ASSERT_FALSE(HasFatalFailure());
      }
    }
  }
}

TEST_P(Conversions, ToPixelsOfHeightsAndWidthsThatConvertNothing) {
  const Plane nothing(0, 0, 0);
  for (const ToPixels& f : allToPixels()) {
    if (f.minimum) continue;
    for (const Size size : {Size{64, -3}, Size{64, 1}, Size{1, 64}, Size{0, 64}}) {
      f.library(nothing.data(), 64, nothing.data(), 64, nothing.data(), 256, size.width, size.height);
    }
  }
}

// All luma values with chroma in steps, the whole range in which blue wraps included: in whole groups of 16 columns,
// and in 14 columns, which the first generation converts without wrapping.
TEST_P(Conversions, ToPixelsOfAllColours) {
  std::vector<int> values = {1, 2, 63, 64, 127, 129};
  for (int i = 0; i < 240; i += 8)
    values.push_back(i);
  for (int i = 240; i < 256; ++i)
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
      const int y = i / perRow;
      for (int k = 0; k < 4; ++k)
        luma.row(2 * y + k / 2)[x + k % 2] = static_cast<std::uint8_t>(4 * (block % 64) + k);
      chroma.row(y)[x] = static_cast<std::uint8_t>(values[static_cast<std::size_t>(block / 64 / count)]);
      chroma.row(y)[x + 1] = static_cast<std::uint8_t>(values[static_cast<std::size_t>(block / 64 % count)]);
    }
    for (const ToPixels& f : allToPixels()) {
      if (width % f.widthStep != 0) continue;
      checkToPixels(f, {width, 2 * rows}, luma, chroma, 0, Guard::kBehind);
      ASSERT_FALSE(HasFatalFailure());
    }
  }
}

// --- Pixels to YUV -----------------------------------------------------------------------------------------------

struct ToYuv {
  const char* name;
  decltype(&VKRGBAToNV21_NeonCall) library;
  PixelOrder pixels;
  ChromaOrder chroma;
};

constexpr ToYuv kToYuv[] = {{"VKRGBAToNV21", VKRGBAToNV21_NeonCall, PixelOrder::kRGBA, ChromaOrder::kVU},
                            {"VKBGRAToNV21", VKBGRAToNV21_NeonCall, PixelOrder::kBGRA, ChromaOrder::kVU},
                            {"VKBGRAToNV12", VKBGRAToNV12_NeonCall, PixelOrder::kBGRA, ChromaOrder::kUV}};

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
  ASSERT_TRUE(sameBytes(luma, expectedLuma)) << f.name << " luma, " << size;
  ASSERT_TRUE(sameBytes(chroma, expectedChroma)) << f.name << " chroma, " << size;
}

TEST_P(Conversions, ToYuvOfAllSizes) {
  Random random(62);
  for (const ToYuv& f : kToYuv) {
    for (int width = 0; width <= 83; ++width) {
      for (int height = 0; height <= 7; ++height) {
        for (const Guard guard : {Guard::kBehind, Guard::kBefore}) {
          const Size converted = wholePairs({width, height});
          const auto padding = [&random] { return random.pick({0, 0, 1, 3, 16, 29}); };
          Plane pixels(4 * converted.width, converted.height, 4 * width + padding(), guard, Content::kNoise, random);
          pixels.makeReadOnly();
          checkToYuv(f, {width, height}, pixels, padding(), padding(), guard);
          ASSERT_FALSE(HasFatalFailure());
        }
      }
    }
    const Plane nothing(0, 0, 0);
    for (const Size size : {Size{64, -3}, Size{64, 1}, Size{1, 64}, Size{0, 64}}) {
      f.library(nothing.data(), 256, nothing.data(), 64, nothing.data(), 64, size.width, size.height);
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
      std::uint8_t* pixel = pixels.row(i / perRow * 2) + 8 * (i % perRow);
      pixel[0] = static_cast<std::uint8_t>(i % 52 * 5);
      pixel[1] = static_cast<std::uint8_t>(i / 52 % 52 * 5);
      pixel[2] = static_cast<std::uint8_t>(i / 52 / 52 * 5);
    }
    for (const ToYuv& f : kToYuv) {
      checkToYuv(f, {width, 2 * rows}, pixels, 0, 0, Guard::kBehind);
      ASSERT_FALSE(HasFatalFailure());
    }
  }
}

VLVK_TEST_ALL_TARGETS(Conversions);

}  // namespace
