/// See frame_model.h.
#include "tests/frames/frame_model.h"

#include <algorithm>
#include <cstdint>

namespace model {
namespace {

/// A curve from 0 by what each entry is above the one before.
std::array<Byte, 256> curveOf(const char* steps) {
  std::array<Byte, 256> curve;
  int value = 0;
  std::generate(curve.begin(), curve.end(), [&] { return static_cast<Byte>(value += *steps++ - '0'); });
  return curve;
}

// Full whitening, and the darkening that green gets in part even without whitening.
const std::array<Byte, 256> kWhite = curveOf(
    "01211121121112112111211211121121112112111211211121121112112111211211121121112112112111211211121121112111"
    "21121111211121111211111211111112111111111111211111111111101111111111101111110111101111011101101110110110"
    "101101011010101010101010010100101001001000100100");
const std::array<Byte, 256> kShade = curveOf(
    "01011010110110110101101101101101101011011011011101101101101110110111011011101110111101110111110111101111"
    "11011111110111111111111111111111111111111111111121111111211111211112111121112111211121121121112112112112"
    "112112112121121121211211212112121121211212112121");

/// 32-bit arithmetic of the settings: it wraps.
std::int32_t wrapped(std::int64_t x) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(x));
}

Byte mix(std::int64_t k, int white, int plain) {
  return static_cast<Byte>(wrapped(k * white + (256 - k) * plain) >> 8);
}

/// The picture that maps every colour to itself: one tile of 64 x 64 for each blue.
Bytes neutralPicture() {
  Bytes picture;
  for (int i = 0; i < 512 * 512; ++i) {
    for (const int channel : {i / 512 / 64 * 8 + i % 512 / 64, i / 512 % 64, i % 64, 63})
      picture.push_back(static_cast<Byte>((channel * 255 * 2 + 63) / (63 * 2)));
  }
  return picture;
}

void adjustPixel(const Tables& tables, const Settings& settings, bool rgbOrder, Byte* pixel) {
  Byte& red = pixel[rgbOrder ? 0 : 2];
  Byte& blue = pixel[rgbOrder ? 2 : 0];
  if (settings.colorAdjust > 0) {
    const std::size_t entry =
        std::size_t{blue} / 4 * 16384 + std::size_t{pixel[1]} / 4 * 256 + std::size_t{red} / 4 * 4;
    std::copy_n(&tables.colors[entry], 4, pixel);
    return;
  }
  pixel[1] = tables.curves[1][pixel[1]];
  if (settings.whiten <= 0) return;
  red = tables.curves[0][red];
  blue = tables.curves[2][blue];
  pixel[3] = 255;
}

}  // namespace

Curves toneCurves(int whiten) {
  Curves curves;
  const std::int64_t k = wrapped(std::int64_t{whiten} * 256) / 100;
  for (int i = 0; i < 256; ++i) {
    const auto at = static_cast<std::size_t>(i);
    const int j = (233 * i + 23 * ((kShade[at] + i) / 2)) / 256;
    curves[0][at] = curves[2][at] = mix(k, kWhite[at], i);
    curves[1][at] = mix(k, kWhite[static_cast<std::size_t>(j)], j);
  }
  return curves;
}

Tables buildTables(const Bytes& picture, int whiten, bool rgbOrder) {
  Tables tables{toneCurves(whiten), {}};
  static const Bytes neutral = neutralPicture();
  Bytes whole = neutral;
  std::copy(picture.begin(), picture.end(), whole.begin());
  tables.colors.resize(kPictureSize, 255);
  for (std::size_t i = 0; i < kPictureSize; i += 4) {
    const std::size_t block = i / 16384;
    const Byte* source = &whole[((block / 8 * 64 + i / 256 % 64) * 512 + block % 8 * 64 + i / 4 % 64) * 4];
    tables.colors[i + (rgbOrder ? 2 : 0)] = tables.curves[0][source[0]];
    tables.colors[i + 1] = tables.curves[1][source[1]];
    tables.colors[i + (rgbOrder ? 0 : 2)] = tables.curves[0][source[2]];
  }
  return tables;
}

void adjustBand(const Tables& tables, const Settings& settings, bool rgbOrder, int width, int rows, Byte* pixels,
                int stride, Byte* apart, int apartStride) {
  const bool greenAlone = settings.colorAdjust <= 0 && settings.whiten <= 0;
  for (std::ptrdiff_t y = 0; y < rows; ++y) {
    for (int x = 0; x < width; ++x) {
      Byte* pixel = pixels + y * stride + 4 * x;
      const std::array<Byte, 4> before = {pixel[0], pixel[1], pixel[2], pixel[3]};
      adjustPixel(tables, settings, rgbOrder, pixel);
      for (int i = 0; apart != nullptr && i < 4; i += greenAlone ? 2 : 1) {
        apart[y * apartStride + 4 * x + i] = pixel[i];
        pixel[i] = before[static_cast<std::size_t>(i)];
      }
    }
  }
}

void Filter::put(const Settings& settings) {
  dirty_ |= settings.whiten != settings_.whiten || settings.colorAdjust != settings_.colorAdjust;
  settings_ = settings;
}

void Filter::makeTables(bool rgbOrder) {
  dirty_ |= rgbOrder != rgbOrder_;
  rgbOrder_ = rgbOrder;
  loads_ += dirty_;
  if (dirty_ && !resource_->present) {
    tables_.reset();
  } else if (dirty_ || !tables_) {
    static const Bytes none;
    tables_ = buildTables(dirty_ ? resource_->payload : none, settings_.whiten, rgbOrder);
  }
  dirty_ = false;
}

/// Smoothed luma mixed into the unsmoothed by skin weight.
Bytes Filter::beautified(const Bytes& y, const Byte* uv, int uvStride, int width, int height, bool rgbOrder) const {
  const int level = wrapped(std::int64_t{600} * settings_.soften) / 1000;
  if (settings_.radius <= 0 || level <= 0) return y;
  const long long halfSize = std::min((settings_.radius + 7LL) / 8 * 8, 0x7FFFFFF8LL) - 1;
  static const std::vector<Byte> curve = naive::skinCurve(1.5f, 64.0f, 48);
  const int u = 110;
  const int v = 155;
  Bytes mixed = naive::smoothPlane(y.data(), width, height, width, halfSize, level);
  naive::blend(y.data(), mixed.data(), mixed.data(), width, uv, uvStride, width, height, curve, rgbOrder ? v : u,
               rgbOrder ? u : v);
  return mixed;
}

void Filter::processVideo(Byte* y, int yStride, Byte* uv, int uvStride, int width, int height, Byte* out, int outStride,
                          bool rgbOrder) {
  const auto chromaOrder = rgbOrder ? naive::ChromaOrder::kVU : naive::ChromaOrder::kUV;
  const auto pixelOrder = rgbOrder ? naive::PixelOrder::kRGBA : naive::PixelOrder::kBGRA;
  makeTables(rgbOrder);
  Bytes luma;
  for (int row = 0; width > 0 && row < height; ++row)
    luma.insert(luma.end(), y + row * yStride, y + row * yStride + width);
  const Bytes mixed = beautified(luma, uv, uvStride, width, height, rgbOrder);
  smoothedFrames_ += mixed != luma;
  Bytes pixels(out == nullptr ? luma.size() * 4 : 0);
  Byte* const to = out == nullptr ? pixels.data() : out;
  const int stride = out == nullptr ? width * 4 : outStride;
  naive::yuvToPixels(mixed.data(), width, uv, uvStride, to, stride, width, height, chromaOrder, pixelOrder);
  if (tables_) adjustBand(*tables_, settings_, rgbOrder, width, height, to, stride);
  if (out == nullptr) {
    naive::pixelsToYuv(to, stride, y, yStride, uv, uvStride, width, height, pixelOrder, chromaOrder);
  }
}

void Filter::processBgra(const Byte* bgra, int width, int height, int stride, Byte* out, int outStride) {
  Bytes y(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  Bytes uv(y.size() / 2 + 1);
  naive::pixelsToYuv(bgra, stride, y.data(), width, uv.data(), width & ~1, width, height, naive::PixelOrder::kBGRA,
                     naive::ChromaOrder::kUV);
  // The odd last column and row have no samples of their own: they take those of their neighbours.
  if (width % 2 == 1 && width > 1) {
    for (std::size_t end = static_cast<std::size_t>(width); end <= y.size(); end += static_cast<std::size_t>(width)) {
      y[end - 1] = y[end - 2];
    }
  }
  if (height % 2 == 1 && height > 1) std::copy_n(y.end() - 2 * width, width, y.end() - width);
  processVideo(y.data(), width, uv.data(), width & ~1, width, height, out, outStride, false);
}

}  // namespace model
