/// See yuv_to_rgb.h.
#include <vlvk/yuv_to_rgb.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "rows/colorimetry.h"
#include "rows/pixel_orders.h"
#include "rows/row_loops.h"

namespace {

using vlvk::ChromaOrder;
using vlvk::ChromaSpread;
using vlvk::PixelOrder;

constexpr unsigned char kOpaque = 255;

unsigned char clampedChannel(int sum) {
  constexpr int kHalf = 1 << (vlvk::kYuvToRgbBits - 1);
  return static_cast<unsigned char>(std::clamp((sum + kHalf) >> vlvk::kYuvToRgbBits, 0, 255));
}

/// How the blue sum is kept.
enum BlueSum { kExact, kWrapTo16Bits };

/// One pixel, for the columns that no row loop covers.
template <PixelOrder kPixels, BlueSum kBlue>
void writePixel(unsigned char* pixel, int y, int u, int v) {
  constexpr vlvk::YuvToRgb k = vlvk::kYuvToRgb[vlvk::kBt601Limited];
  const int luma = k.luma * (y - vlvk::lumaOffset(vlvk::kBt601Limited));
  const int cb = u - vlvk::kChromaOffset;
  const int cr = v - vlvk::kChromaOffset;
  const int blueSum = luma + k.blueU * cb;
  const unsigned char red = clampedChannel(luma + k.redV * cr);
  const unsigned char blue = clampedChannel(kBlue == kExact ? blueSum : static_cast<std::int16_t>(blueSum));
  pixel[0] = kPixels == vlvk::kRgba ? red : blue;
  pixel[1] = clampedChannel(luma + k.greenU * cb + k.greenV * cr);
  pixel[2] = kPixels == vlvk::kRgba ? blue : red;
  pixel[3] = kOpaque;
}

/// The planes and strides of one call.
struct Planes {
  const unsigned char* luma;
  std::ptrdiff_t lumaStride;
  const unsigned char* chroma;
  std::ptrdiff_t chromaStride;
  unsigned char* pixels;
  std::ptrdiff_t pixelStride;

  void nextRowPair() {
    luma += 2 * lumaStride;
    chroma += chromaStride;
    pixels += 2 * pixelStride;
  }
};

template <ChromaOrder kChroma, PixelOrder kPixels, BlueSum kBlue, ChromaSpread kSpread = vlvk::kPairsInPlace>
void convertTailRow(const unsigned char* luma, const unsigned char* chroma, unsigned char* pixels, int begin, int end) {
  for (int c = begin; c < end; ++c) {
    const int pair = kSpread == vlvk::kPairsInPlace ? c & ~1 : (c & ~7) + 2 * (c & 3);
    const unsigned char first = chroma[pair];
    const unsigned char second = chroma[pair + 1];
    writePixel<kPixels, kBlue>(pixels + 4 * static_cast<std::ptrdiff_t>(c), luma[c],
                               kChroma == vlvk::kVThenU ? second : first, kChroma == vlvk::kVThenU ? first : second);
  }
}

using TailRow = void (*)(const unsigned char* luma, const unsigned char* chroma, unsigned char* pixels, int begin,
                         int end);

/// Converts row pairs of an even number of columns: blocks of 16 by the row loop, the rest pixel by pixel.
void convertRowPairs(Planes planes, int columns, int rowPairs, vlvk::RowLoops::YuvToPixels rowLoop,
                     TailRow convertTailRow) {
  const int blocks = columns & ~15;
  if (columns == 0) return;
  for (int pair = 0; pair < rowPairs; ++pair) {
    const unsigned char* luma1 = planes.luma + planes.lumaStride;
    unsigned char* pixels1 = planes.pixels + planes.pixelStride;
    rowLoop(planes.luma, luma1, planes.chroma, planes.pixels, pixels1, blocks);
    convertTailRow(planes.luma, planes.chroma, planes.pixels, blocks, columns);
    convertTailRow(luma1, planes.chroma, pixels1, blocks, columns);
    planes.nextRowPair();
  }
}

/// Without the _V2: nothing below one row pair, exact tail.
template <ChromaOrder kChroma, PixelOrder kPixels>
void convertFrame(const Planes& planes, int width, int height) {
  convertRowPairs(planes, std::max(width, 0) & ~1, std::max(height, 0) / 2,
                  vlvk::rowLoops().yuvToPixels[vlvk::kBt601Limited][kChroma][kPixels],
                  convertTailRow<kChroma, kPixels, kExact>);
}

/// With the _V2: at least one row pair and one block of 8, wrapping everywhere.
template <ChromaOrder kChroma, PixelOrder kPixels>
void convertFrameV2(const Planes& planes, int width, int height) {
  convertRowPairs(planes, std::max(width & ~1, 8), std::max(height / 2, 1),
                  vlvk::rowLoops().yuvToPixels[vlvk::kBt601Limited][kChroma][kPixels],
                  convertTailRow<kChroma, kPixels, kWrapTo16Bits>);
}

}  // namespace

void VKNV21ToRGBA_NeonCall(const unsigned char* yPlane, int yStride, const unsigned char* uvPlane, int uvStride,
                           unsigned char* dst, int dstStride, int width, int height) {
  convertFrame<vlvk::kVThenU, vlvk::kRgba>({yPlane, yStride, uvPlane, uvStride, dst, dstStride}, width, height);
}

void VKNV21ToBGRA_NeonCall(const unsigned char* yPlane, int yStride, const unsigned char* uvPlane, int uvStride,
                           unsigned char* dst, int dstStride, int width, int height) {
  convertFrame<vlvk::kVThenU, vlvk::kBgra>({yPlane, yStride, uvPlane, uvStride, dst, dstStride}, width, height);
}

void VKNV12ToBGRA_NeonCall(const unsigned char* yPlane, int yStride, const unsigned char* uvPlane, int uvStride,
                           unsigned char* dst, int dstStride, int width, int height) {
  convertFrame<vlvk::kUThenV, vlvk::kBgra>({yPlane, yStride, uvPlane, uvStride, dst, dstStride}, width, height);
}

void VKNV21ToRGBA_V2_NeonCall(const unsigned char* yPlane, const unsigned char* uvPlane, unsigned char* dst,
                              int dstStride, int width, int height, int yStride, int uvStride) {
  convertFrameV2<vlvk::kVThenU, vlvk::kRgba>({yPlane, yStride, uvPlane, uvStride, dst, dstStride}, width, height);
}

void VKNV12ToBGRA_V2_NeonCall(const unsigned char* yPlane, const unsigned char* uvPlane, unsigned char* dst,
                              int dstStride, int width, int height, int yStride, int uvStride) {
  convertFrameV2<vlvk::kUThenV, vlvk::kBgra>({yPlane, yStride, uvPlane, uvStride, dst, dstStride}, width, height);
}

void NV212RGB_V2_NEON(const unsigned char* yPlane, const unsigned char* uvPlane, unsigned char* dst, int dstStride,
                      int width, int height, int yStride, int uvStride) {
  convertRowPairs({yPlane, yStride, uvPlane, uvStride, dst, dstStride}, std::max(width & ~7, 8),
                  std::max(height / 2, 1), vlvk::rowLoops().nv12ToBgraFoursTwice,
                  convertTailRow<vlvk::kUThenV, vlvk::kBgra, kExact, vlvk::kFoursTwice>);
}
