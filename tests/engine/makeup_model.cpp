/// See makeup_model.h.
#include "tests/engine/makeup_model.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

namespace makeup_model {
namespace {

struct Colorimetry {
  int black;
  int toRgb[5];     // luma, red of V, green of U and V, blue of U, in 64ths
  int toYuv[3][3];  // of red, green, blue, in 256ths
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

/// Y, U, V or red, green, blue; every pixel of a block has its chroma.
struct Pixel {
  int c[3];
  int alpha;
};

struct Image {
  int width, height;
  std::vector<Pixel> pixels;

  Pixel& at(int x, int y) {
    const int column = std::min(x, width - 1);
    return pixels[static_cast<std::size_t>(std::min(y, height - 1) * width + column)];
  }
};

int toByte(int value) {
  return std::clamp(value, 0, 255);
}

bool hasAlpha(int format) {
  return format == VLVK_RGBA || format == VLVK_BGRA;
}

/// Sample c of a pixel, 3 being alpha.
Byte* sampleAt(const VlvkFrame& frame, int c, int x, int y) {
  const auto row = [&](int plane, int line) { return frame.plane[plane] + std::ptrdiff_t{line} * frame.stride[plane]; };
  const bool isBgr = frame.format == VLVK_BGRA || frame.format == VLVK_BGRX || frame.format == VLVK_BGR;
  if (isPixels(frame.format)) return row(0, y) + rowBytes(frame.format, 0, x) + (isBgr && c < 3 ? 2 - c : c);
  if (c == 0) return row(0, y) + x;
  if (frame.format == VLVK_I420) return row(c, y / 2) + x / 2;
  return row(1, y / 2) + x / 2 * 2 + ((c == 2) == (frame.format == VLVK_NV12) ? 1 : 0);
}

Image read(const VlvkFrame& frame) {
  Image image{frame.width, frame.height, {}};
  for (int y = 0; y < frame.height; ++y) {
    for (int x = 0; x < frame.width; ++x) {
      const auto sample = [&](int c) { return int{*sampleAt(frame, c, x, y)}; };
      image.pixels.push_back({{sample(0), sample(1), sample(2)}, hasAlpha(frame.format) ? sample(3) : 255});
    }
  }
  return image;
}

void write(const VlvkFrame& frame, Image& image) {
  const int samples = isPixels(frame.format) ? rowBytes(frame.format, 0, 1) : 3;
  for (int y = frame.height - 1; y >= 0; --y) {
    for (int x = frame.width - 1; x >= 0; --x) {  // the upper left pixel of a block comes last
      const Pixel& pixel = image.at(x, y);
      const int alpha = hasAlpha(frame.format) ? pixel.alpha : 255;
      for (int c = 0; c < samples; ++c)
        *sampleAt(frame, c, x, y) = static_cast<Byte>(c < 3 ? pixel.c[c] : alpha);
    }
  }
}

int weighted(const int (&weights)[3], const Pixel& rgb, int offset) {
  return ((weights[0] * rgb.c[0] + weights[1] * rgb.c[1] + weights[2] * rgb.c[2] + 128) >> 8) + offset;
}

Pixel toRgb(const Pixel& yuv, int colors) {
  const auto& k = kColorimetries[colors].toRgb;
  const int luma = k[0] * (yuv.c[0] - kColorimetries[colors].black);
  const int u = yuv.c[1] - 128;
  const int v = yuv.c[2] - 128;
  int blue = luma + k[4] * u;
  if (colors == kLimited601 && blue > 32767) blue -= 65536;
  const auto channel = [](int sum) { return toByte((sum + 32) >> 6); };
  return {{channel(luma + k[1] * v), channel(luma + k[2] * u + k[3] * v), channel(blue)}, yuv.alpha};
}

/// Luma of a pixel, chroma of another.
Pixel toYuv(const Pixel& rgb, const Pixel& forChroma, int colors) {
  const Colorimetry& k = kColorimetries[colors];
  return {
      {weighted(k.toYuv[0], rgb, k.black), weighted(k.toYuv[1], forChroma, 128), weighted(k.toYuv[2], forChroma, 128)},
      255};
}

/// YUV of one colorimetry in another, in units of 1 / 16384.
Pixel convert(const Pixel& yuv, int from, int to) {
  const Colorimetry& a = kColorimetries[from];
  const Colorimetry& b = kColorimetries[to];
  int sums[3] = {};
  for (int i = 0; i < 3; ++i) {  // what one unit of Y, U or V alone becomes
    const double luma = i == 0 ? 1 / a.lumaLevels : 0;
    const double red = luma + (i == 2 ? 2 * (1 - a.red) / a.chromaLevels : 0);
    const double blue = luma + (i == 1 ? 2 * (1 - a.blue) / a.chromaLevels : 0);
    const double green = (luma - a.red * red - a.blue * blue) / (1 - a.red - a.blue);
    const double newLuma = b.red * red + b.blue * blue + (1 - b.red - b.blue) * green;
    const double weights[3] = {newLuma * b.lumaLevels, (blue - newLuma) / (2 * (1 - b.blue)) * b.chromaLevels,
                               (red - newLuma) / (2 * (1 - b.red)) * b.chromaLevels};
    for (int c = 0; c < 3; ++c)
      sums[c] += static_cast<int>(std::floor(weights[c] * 16384 + 0.5)) * (yuv.c[i] - (i == 0 ? a.black : 128));
  }
  const auto sample = [&](int c, int offset) { return toByte(((sums[c] + 8192) >> 14) + offset); };
  return {{sample(0, b.black), sample(1, 128), sample(2, 128)}, yuv.alpha};
}

Pixel blockMean(Image& image, int x, int y) {
  const int left = x / 2 * 2;
  const int top = y / 2 * 2;
  Pixel mean{{}, 255};
  for (int c = 0; c < 3; ++c) {
    const auto column = [&](int i) { return (image.at(i, top).c[c] + image.at(i, top + 1).c[c] + 1) / 2; };
    mean.c[c] = (column(left) + column(left + 1) + 1) / 2;
  }
  return mean;
}

/// Luma as it becomes, from luma and from chroma that shows skin.
std::vector<int> smoothed(Image& yuv, int radius, int level, bool fullLuma, bool fullChroma) {
  const int columns = (yuv.width + 15) / 16 * 16;
  std::vector<Byte> luma;
  for (int y = 0; y < yuv.height; ++y) {
    for (int x = 0; x < columns; ++x)
      luma.push_back(static_cast<Byte>(yuv.at(x, y).c[0]));
  }
  const long long half = (radius + 7) / 8 * 8 - 1;
  naive::FormulaConstants constants = naive::formulaConstants(half, level);
  const float levels = 255.0f / 219.0f;
  if (fullLuma) constants.bias *= levels * levels;
  if (fullLuma) constants.strength *= levels * levels;
  // The centre of skin in limited range, and 255 / 224 times as far from grey.
  const float spread = fullChroma ? 255.0f / 224.0f : 1.0f;
  const std::vector<Byte> curve = naive::skinCurve(1.5f, 64.0f * (spread * spread), 64);
  const auto weight = [&](int distance) { return distance < 64 ? int{curve[static_cast<std::size_t>(distance)]} : 0; };
  std::vector<int> result;
  for (int y = 0; y < yuv.height; ++y) {
    const auto box = naive::sumClampedRows(luma.data(), columns, yuv.height, y - half, y + half, columns);
    const auto boxes = naive::scanColumns({{box.sums.begin(), box.sums.end()}, box.squares}, 1 - half, half + 1);
    for (int x = 0; x < yuv.width; ++x) {
      const Pixel& pixel = yuv.at(x, y);
      const auto i = static_cast<std::size_t>(x);
      const int mean = naive::smoothedPixel(boxes.sums[i], boxes.squares[i], static_cast<Byte>(pixel.c[0]), constants);
      const int ofU = weight(std::abs(pixel.c[1] - (fullChroma ? 108 : 110)));
      const int w = ofU * weight(std::abs(pixel.c[2] - (fullChroma ? 159 : 155))) / 64;
      result.push_back((pixel.c[0] * (64 - w) + mean * w) / 64);
    }
  }
  return result;
}

void smooth(Image& image, const VlvkFrame& source, int radius, int level) {
  Image yuv = image;
  const bool ofPixels = isPixels(source.format);
  const int colors = colorsOf(source);
  const bool full = colors % 2 == 1;
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      Pixel& pixel = yuv.at(x, y);
      const Pixel skin = ofPixels ? toYuv(pixel, blockMean(image, x, y), kLimited601) : convert(pixel, colors, full);
      if (ofPixels) pixel.c[0] = toYuv(pixel, pixel, kFull601).c[0];
      pixel.c[1] = skin.c[1];
      pixel.c[2] = skin.c[2];
    }
  }
  const std::vector<int> luma = smoothed(yuv, radius, level, ofPixels || full, !ofPixels && full);
  for (std::size_t i = 0; i < luma.size(); ++i) {
    const int gain = luma[i] - yuv.pixels[i].c[0];
    for (int c = 0; c < (ofPixels ? 3 : 1); ++c)
      image.pixels[i].c[c] = toByte(image.pixels[i].c[c] + gain);
  }
}

void changeColors(Pixel& pixel, int whitening, const model::Curves& curves, const Byte* picture) {
  const auto digit = [&](int c) { return static_cast<std::size_t>(pixel.c[c] / 4); };
  if (picture != nullptr) {
    const Byte* entry = picture + ((digit(2) / 8 * 64 + digit(1)) * 512 + digit(2) % 8 * 64 + digit(0)) * 4;
    for (int c = 0; c < 3; ++c)
      pixel.c[c] = entry[2 - c];
  }
  for (std::size_t c = 0; c < 3 && whitening > 0; ++c)
    pixel.c[c] = curves[c][static_cast<std::size_t>(pixel.c[c])];
}

}  // namespace

bool isPixels(int format) {
  return format >= VLVK_RGBA;
}

int rowBytes(int format, int plane, int width) {
  if (isPixels(format)) return plane > 0 ? 0 : width * (format >= VLVK_RGB ? 3 : 4);
  if (plane == 0) return width;
  if (format == VLVK_I420) return (width + 1) / 2;
  return plane == 1 ? (width + 1) / 2 * 2 : 0;
}

int rowsOf(int format, int plane, int height) {
  if (rowBytes(format, plane, 1) == 0) return 0;
  return plane == 0 ? height : (height + 1) / 2;
}

void process(const VlvkFrame& source, const VlvkFrame& target, const VlvkSettings& settings, const Byte* picture) {
  Image image = read(source);
  const bool fromPixels = isPixels(source.format);
  const bool toPixels = isPixels(target.format);
  const int level = 600 * settings.softening / 1000;
  if (level > 0 && settings.radius > 0) smooth(image, source, settings.radius, level);
  if (!fromPixels && !toPixels && settings.whitening == 0 && picture == nullptr) {
    if (colorsOf(source) != colorsOf(target)) {
      for (Pixel& pixel : image.pixels)
        pixel = convert(pixel, colorsOf(source), colorsOf(target));
    }
    write(target, image);
    return;
  }
  const model::Curves curves = model::toneCurves(settings.whitening);
  for (Pixel& pixel : image.pixels) {
    if (!fromPixels) pixel = toRgb(pixel, colorsOf(source));
    changeColors(pixel, settings.whitening, curves, picture);
  }
  Image result = image;
  for (int y = 0; y < image.height && !toPixels; ++y) {
    for (int x = 0; x < image.width; ++x) {
      const Pixel& pixel = image.at(x, y);
      result.at(x, y) = toYuv(pixel, fromPixels ? blockMean(image, x, y) : pixel, colorsOf(target));
    }
  }
  write(target, result);
}

}  // namespace makeup_model
