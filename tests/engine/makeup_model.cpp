/// See makeup_model.h.
#include "tests/engine/makeup_model.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace makeup_model {
namespace {

using model::Byte;
using model::Bytes;
using Pixel = std::array<int, 4>;  // Y, U, V or red, green, blue; alpha

/// In 64ths: luma, red of V, green of U and V, blue of U; in 256ths: Y, U, V of red, green, blue. The definition.
struct Colorimetry {
  int black, toRgb[5], toYuv[3][3];
  double red, blue, lumaLevels, chromaLevels;
};
constexpr Colorimetry kColorimetries[] = {
    {16, {75, 102, -25, -52, 129}, {{66, 129, 25}, {-38, -74, 112}, {112, -94, -18}}, 0.299, 0.114, 219, 224},
    {0, {64, 90, -22, -46, 113}, {{77, 150, 29}, {-43, -84, 127}, {127, -106, -21}}, 0.299, 0.114, 255, 255},
    {16, {75, 115, -14, -34, 135}, {{47, 157, 16}, {-26, -86, 112}, {112, -102, -10}}, 0.2126, 0.0722, 219, 224},
    {0, {64, 101, -12, -30, 119}, {{54, 183, 19}, {-29, -98, 127}, {127, -115, -12}}, 0.2126, 0.0722, 255, 255}};
constexpr int kLimited601 = 0;
constexpr int kFull601 = 1;

int colorsOf(const VlvkFrame& frame) {
  return (frame.matrix == VLVK_BT709 ? 2 : 0) + (frame.range == VLVK_FULL ? 1 : 0);
}

int toByte(int value) {
  return std::clamp(value, 0, 255);
}

bool hasAlpha(int format) {
  return format == VLVK_RGBA || format == VLVK_BGRA;
}

Byte* sampleAt(const VlvkFrame& frame, int c, int x, int y) {
  const auto row = [&](int plane, int line) { return frame.plane[plane] + std::ptrdiff_t{line} * frame.stride[plane]; };
  const bool isBgr = frame.format == VLVK_BGRA || frame.format == VLVK_BGRX || frame.format == VLVK_BGR;
  if (isPixels(frame.format)) return row(0, y) + rowBytes(frame.format, 0, x) + (isBgr && c < 3 ? 2 - c : c);
  if (c == 0) return row(0, y) + x;
  if (frame.format == VLVK_I420) return row(c, y / 2) + x / 2;
  return row(1, y / 2) + x / 2 * 2 + ((c == 2) == (frame.format == VLVK_NV12) ? 1 : 0);
}

struct Image {
  int width, height;
  std::vector<Pixel> pixels;

  explicit Image(const VlvkFrame& frame) : width(frame.width), height(frame.height) {
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        const auto sample = [&](int c) { return int{*sampleAt(frame, c, x, y)}; };
        pixels.push_back({sample(0), sample(1), sample(2), hasAlpha(frame.format) ? sample(3) : 255});
      }
    }
  }

  /// Beyond its end a row or column repeats its last pixel.
  const Pixel& at(int x, int y) const {
    return pixels[static_cast<std::size_t>(std::min(y, height - 1) * width + std::min(x, width - 1))];
  }

  Pixel blockMean(int x, int y) const {
    const auto column = [&](int i, std::size_t c) { return (at(i, y & ~1)[c] + at(i, y | 1)[c] + 1) / 2; };
    const auto mean = [&](std::size_t c) { return (column(x & ~1, c) + column(x | 1, c) + 1) / 2; };
    return {mean(0), mean(1), mean(2), 255};
  }

  void write(const VlvkFrame& frame) const {
    const int samples = isPixels(frame.format) ? rowBytes(frame.format, 0, 1) : 3;
    for (int y = height - 1; y >= 0; --y) {
      for (int x = width - 1; x >= 0; --x) {  // the upper left pixel of a block comes last
        for (int c = 0; c < samples; ++c) {
          const int value = c < 3 || hasAlpha(frame.format) ? at(x, y)[static_cast<std::size_t>(c)] : 255;
          *sampleAt(frame, c, x, y) = static_cast<Byte>(value);
        }
      }
    }
  }
};

Pixel toRgb(const Pixel& yuv, int colors) {
  const auto& [black, k, toYuv, kr, kb, lumaLevels, chromaLevels] = kColorimetries[colors];
  const int luma = k[0] * (yuv[0] - black);
  const int u = yuv[1] - 128;
  const int v = yuv[2] - 128;
  int blue = luma + k[4] * u;
  if (colors == kLimited601 && blue > 32767) blue -= 65536;
  const auto channel = [](int sum) { return toByte((sum + 32) >> 6); };
  return {channel(luma + k[1] * v), channel(luma + k[2] * u + k[3] * v), channel(blue), yuv[3]};
}

/// Luma of a pixel, chroma of another.
Pixel toYuv(const Pixel& rgb, const Pixel& forChroma, int colors) {
  const auto weighted = [&](int i, const Pixel& p) {
    const auto& k = kColorimetries[colors].toYuv[i];
    return ((k[0] * p[0] + k[1] * p[1] + k[2] * p[2] + 128) >> 8) + (i == 0 ? kColorimetries[colors].black : 128);
  };
  return {weighted(0, rgb), weighted(1, forChroma), weighted(2, forChroma), 255};
}

/// YUV of one colorimetry in another, in units of 1 / 16384.
Pixel convert(const Pixel& yuv, int from, int to) {
  const Colorimetry& a = kColorimetries[from];
  const Colorimetry& b = kColorimetries[to];
  int sums[3] = {};
  for (std::size_t i = 0; i < 3; ++i) {  // what one unit of Y, U or V alone becomes
    const double luma = i == 0 ? 1 / a.lumaLevels : 0;
    const double red = luma + (i == 2 ? 2 * (1 - a.red) / a.chromaLevels : 0);
    const double blue = luma + (i == 1 ? 2 * (1 - a.blue) / a.chromaLevels : 0);
    const double green = (luma - a.red * red - a.blue * blue) / (1 - a.red - a.blue);
    const double newLuma = b.red * red + b.blue * blue + (1 - b.red - b.blue) * green;
    const double weights[] = {newLuma * b.lumaLevels, (blue - newLuma) / (2 - 2 * b.blue) * b.chromaLevels,
                              (red - newLuma) / (2 - 2 * b.red) * b.chromaLevels};
    for (int c = 0; c < 3; ++c)
      sums[c] += static_cast<int>(std::floor(weights[c] * 16384 + 0.5)) * (yuv[i] - (i == 0 ? a.black : 128));
  }
  const auto sample = [&](int c, int offset) { return toByte(((sums[c] + 8192) >> 14) + offset); };
  return {sample(0, b.black), sample(1, 128), sample(2, 128), yuv[3]};
}

void smooth(Image& image, bool ofPixels, int colors, int radius, int level) {
  const int columns = (image.width + 15) / 16 * 16;
  const bool full = colors % 2 == 1;
  Bytes luma;
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < columns; ++x) {
      const Pixel& pixel = image.at(x, y);
      luma.push_back(static_cast<Byte>(ofPixels ? toYuv(pixel, pixel, kFull601)[0] : pixel[0]));
    }
  }
  const long long half = (radius + 7) / 8 * 8 - 1;
  naive::FormulaConstants constants = naive::formulaConstants(half, level);
  const float contrast = ofPixels || full ? 255.0f / 219.0f : 1.0f;
  constants.bias *= contrast * contrast;
  constants.strength *= contrast * contrast;
  const bool fullChroma = !ofPixels && full;  // distances from grey, and so from the centre, are 255 / 224 as large
  const float spread = fullChroma ? 255.0f / 224.0f : 1.0f;
  const Bytes curve = naive::skinCurve(1.5f, 64.0f * (spread * spread), 64);
  const auto weight = [&](int sample, int centre) {
    const int distance = std::abs(sample - centre);
    return distance < 64 ? int{curve[static_cast<std::size_t>(distance)]} : 0;
  };
  const naive::Rows rows{[&](long long y) { return luma.data() + y * columns; }, 0, image.height - 1};
  Image result = image;
  for (int y = 0; y < image.height; ++y) {
    const auto sums = naive::sumColumns(rows, y - half, y + half, columns, naive::ColumnWidth::k16Bits);
    const auto boxes = naive::scanColumns(sums, 1 - half, half + 1);
    for (int x = 0; x < image.width; ++x) {
      const Pixel& pixel = image.at(x, y);
      const Pixel skin = ofPixels ? toYuv(pixel, image.blockMean(x, y), kLimited601) : convert(pixel, colors, full);
      const int w = weight(skin[1], fullChroma ? 108 : 110) * weight(skin[2], fullChroma ? 159 : 155) / 64;
      const Byte sample = luma[static_cast<std::size_t>(y * columns + x)];
      const auto i = static_cast<std::size_t>(x);
      const int mean = naive::smoothedPixel(boxes.sums[i], boxes.squares[i], sample, constants);
      const int gain = (sample * (64 - w) + mean * w) / 64 - sample;
      for (std::size_t c = 0; c < (ofPixels ? 3 : 1); ++c)
        result.pixels[static_cast<std::size_t>(y * image.width + x)][c] = toByte(pixel[c] + gain);
    }
  }
  image = result;
}

void changeColors(Pixel& pixel, int whitening, const model::Curves& curves, const Byte* picture) {
  const auto digit = [&](std::size_t c) { return static_cast<std::size_t>(pixel[c] / 4); };
  if (picture != nullptr) {
    const Byte* entry = picture + ((digit(2) / 8 * 64 + digit(1)) * 512 + digit(2) % 8 * 64 + digit(0)) * 4;
    std::reverse_copy(entry, entry + 3, pixel.begin());
  }
  for (std::size_t c = 0; c < 3 && whitening > 0; ++c)
    pixel[c] = curves[c][static_cast<std::size_t>(pixel[c])];
}

}  // namespace

bool isPixels(int format) {
  return format >= VLVK_RGBA;
}

int rowBytes(int format, std::size_t plane, int width) {
  if (plane > 0 && (isPixels(format) || (plane == 2 && format != VLVK_I420))) return 0;
  if (plane == 0) return width * (!isPixels(format) ? 1 : format >= VLVK_RGB ? 3 : 4);
  return (width + 1) / 2 * (format == VLVK_I420 ? 1 : 2);
}

void process(const VlvkFrame& source, const VlvkFrame& target, const VlvkSettings& settings, const Byte* picture) {
  Image image(source);
  const bool fromPixels = isPixels(source.format);
  const bool toPixels = isPixels(target.format);
  const bool byPixels = fromPixels || toPixels || settings.whitening > 0 || picture != nullptr;
  const int level = 600 * settings.softening / 1000;
  if (level > 0 && settings.radius > 0) smooth(image, fromPixels, colorsOf(source), settings.radius, level);
  const model::Curves curves = model::toneCurves(settings.whitening);
  for (Pixel& pixel : image.pixels) {
    if (!fromPixels)
      pixel = byPixels ? toRgb(pixel, colorsOf(source)) : convert(pixel, colorsOf(source), colorsOf(target));
    if (byPixels) changeColors(pixel, settings.whitening, curves, picture);
  }
  Image result = image;
  for (int i = 0; i < image.width * image.height && byPixels && !toPixels; ++i) {
    Pixel& pixel = result.pixels[static_cast<std::size_t>(i)];
    const Pixel mean = image.blockMean(i % image.width, i / image.width);
    pixel = toYuv(pixel, fromPixels ? mean : pixel, colorsOf(target));
  }
  result.write(target);
}

}  // namespace makeup_model
