/// See rgb_to_yuv.h.
#include <vlvk/rgb_to_yuv.h>

#include <algorithm>
#include <cstddef>

#include "rows/colorimetry.h"
#include "rows/pixel_orders.h"
#include "rows/row_loops.h"

namespace {

using vlvk::ChromaOrder;
using vlvk::PixelOrder;

constexpr vlvk::RgbToYuv kWeights = vlvk::kRgbToYuv[vlvk::kBt601Limited];
constexpr int kBlack = vlvk::lumaOffset(vlvk::kBt601Limited);

/// One sample of the columns that no row loop covers; it is truncated, not rounded.
template <PixelOrder kPixels>
unsigned char tailSample(const unsigned char* pixel, const vlvk::RgbWeights& weights, int offset) {
  const int red = pixel[kPixels == vlvk::kRgba ? 0 : 2];
  const int blue = pixel[kPixels == vlvk::kRgba ? 2 : 0];
  const int sum = weights.red * red + weights.green * pixel[1] + weights.blue * blue;
  return static_cast<unsigned char>((sum >> vlvk::kRgbToYuvBits) + offset);
}

template <PixelOrder kPixels>
void convertTailLuma(const unsigned char* pixels, unsigned char* luma, int begin, int end) {
  for (int c = begin; c < end; ++c) {
    luma[c] = tailSample<kPixels>(pixels + 4 * static_cast<std::ptrdiff_t>(c), kWeights.luma, kBlack);
  }
}

template <ChromaOrder kChroma, PixelOrder kPixels>
void convertTailChroma(const unsigned char* pixels, unsigned char* chroma, int begin, int end) {
  constexpr int kU = kChroma == vlvk::kVThenU ? 1 : 0;
  for (int c = begin; c < end; c += 2) {
    const unsigned char* pixel = pixels + 4 * static_cast<std::ptrdiff_t>(c);
    chroma[c + kU] = tailSample<kPixels>(pixel, kWeights.u, vlvk::kChromaOffset);
    chroma[c + 1 - kU] = tailSample<kPixels>(pixel, kWeights.v, vlvk::kChromaOffset);
  }
}

/// Blocks of 16 columns go through the row loops, the rest pixel by pixel.
template <ChromaOrder kChroma, PixelOrder kPixels>
void convertFrame(const unsigned char* pixels, std::ptrdiff_t pixelStride, unsigned char* luma,
                  std::ptrdiff_t lumaStride, unsigned char* chroma, std::ptrdiff_t chromaStride, int width,
                  int height) {
  const auto rowLoop = vlvk::rowLoops().pixelsToYuv[vlvk::kBt601Limited][kChroma][kPixels];
  const int columns = std::max(width, 0) & ~1;
  const int blocks = columns & ~15;
  if (columns == 0) return;
  for (int pair = 0; pair < height / 2; ++pair) {
    rowLoop(pixels, pixels + pixelStride, luma, luma + lumaStride, chroma, blocks);
    convertTailChroma<kChroma, kPixels>(pixels, chroma, blocks, columns);
    convertTailLuma<kPixels>(pixels, luma, blocks, columns);
    convertTailLuma<kPixels>(pixels + pixelStride, luma + lumaStride, blocks, columns);
    pixels += 2 * pixelStride;
    luma += 2 * lumaStride;
    chroma += chromaStride;
  }
}

}  // namespace

void VKRGBAToNV21_NeonCall(const unsigned char* src, int srcStride, unsigned char* yPlane, int yStride,
                           unsigned char* uvPlane, int uvStride, int width, int height) {
  convertFrame<vlvk::kVThenU, vlvk::kRgba>(src, srcStride, yPlane, yStride, uvPlane, uvStride, width, height);
}

void VKBGRAToNV21_NeonCall(const unsigned char* src, int srcStride, unsigned char* yPlane, int yStride,
                           unsigned char* uvPlane, int uvStride, int width, int height) {
  convertFrame<vlvk::kVThenU, vlvk::kBgra>(src, srcStride, yPlane, yStride, uvPlane, uvStride, width, height);
}

void VKBGRAToNV12_NeonCall(const unsigned char* src, int srcStride, unsigned char* yPlane, int yStride,
                           unsigned char* uvPlane, int uvStride, int width, int height) {
  convertFrame<vlvk::kUThenV, vlvk::kBgra>(src, srcStride, yPlane, yStride, uvPlane, uvStride, width, height);
}
