/// See makeup_model.h.
#include "tests/engine/makeup_model.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

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

/// Weight of each pixel, 0 .. 64.
std::vector<int> skinWeights(const Image& image, bool ofPixels, int colors, const VlvkMask* mask) {
  const bool full =
      !ofPixels && colors % 2 == 1;  // distances from grey, and so from the centre, are 255 / 224 as large
  const float spread = full ? 255.0f / 224.0f : 1.0f;
  const Bytes curve = naive::skinCurve(1.5f, 64.0f * (spread * spread), 64);
  const auto weight = [&](int sample, int centre) {
    const int distance = std::abs(sample - centre);
    return distance < 64 ? int{curve[static_cast<std::size_t>(distance)]} : 0;
  };
  std::vector<int> weights;
  for (int i = 0; i < image.width * image.height; ++i) {
    const int x = i % image.width;
    const int y = i / image.width;
    const Pixel& pixel = image.at(x, y);
    const Pixel skin = ofPixels ? toYuv(pixel, image.blockMean(x, y), kLimited601) : convert(pixel, colors, full);
    int w = weight(skin[1], full ? 108 : 110) * weight(skin[2], full ? 159 : 155) / 64;
    if (mask != nullptr) {
      const long long row = (2LL * y + 1) * mask->height / (2LL * image.height);
      const long long column = (2LL * x + 1) * mask->width / (2LL * image.width);
      w = (w * mask->plane[row * mask->stride + column] + 127) / 255;
    }
    weights.push_back(w);
  }
  return weights;
}

constexpr float kFullLevels = 255.0f / 219.0f;

/// Constants of the formula, which shrink with the mean of luma where contrast is relative to it.
struct Formula {
  naive::FormulaConstants constants;
  bool isFull, isRelative;

  Formula(int half, int setting, int contrast, bool full)
      : constants(naive::formulaConstants(half, 600 * setting / 1000)),
        isFull(full),
        isRelative(contrast == VLVK_CONTRAST_RELATIVE) {
    const float levels = full ? kFullLevels : 1.0f;
    constants.bias *= levels * levels;
    constants.strength *= levels * levels;
  }

  /// In 130ths, from black, 16 of limited range, to 130.
  naive::FormulaConstants at(std::uint32_t lumaSum) const {
    if (!isRelative) return constants;
    const auto [inverseArea, bias, strength] = constants;
    const float mean = static_cast<float>(lumaSum) * inverseArea;
    const float root = std::sqrt(bias);
    const float share = bias / (130.0f * 130.0f);
    const float w = mean * (root * (219.0f / (255.0f * 130.0f))) + root * (16.0f / 130.0f);
    const float lit = std::min(isFull ? w * w : std::max(mean * mean * share, 256 * share), bias);
    const float nearest = strength / bias;  // that gives strength back, where a number does
    for (const float ratio : {nearest, std::nextafter(nearest, 0.0f), std::nextafter(nearest, 100.0f)}) {
      if (ratio * bias == strength) return {inverseArea, lit, lit * ratio};
    }
    return {inverseArea, lit, lit * nearest};
  }
};

/// Luma of `image`, which has that of `source`, goes to its mean as far as its weight says.
void smooth(Image& image, const Image& source, bool ofPixels, const Formula& formula, int half,
            const std::vector<int>& weights) {
  const int columns = (source.width + 15) / 16 * 16;
  Bytes luma;
  for (int y = 0; y < source.height; ++y) {
    for (int x = 0; x < columns; ++x) {
      const Pixel& pixel = source.at(x, y);
      luma.push_back(static_cast<Byte>(ofPixels ? toYuv(pixel, pixel, kFull601)[0] : pixel[0]));
    }
  }
  const naive::Rows rows{[&](long long y) { return luma.data() + y * columns; }, 0, source.height - 1};
  for (int y = 0; y < source.height; ++y) {
    const auto sums = naive::sumColumns(rows, y - half, y + half, columns, naive::ColumnWidth::k16Bits);
    const auto boxes = naive::scanColumns(sums, 1 - half, half + 1);
    for (int x = 0; x < source.width; ++x) {
      const auto at = static_cast<std::size_t>(y * source.width + x);
      const int w = weights[at];
      const Byte sample = luma[static_cast<std::size_t>(y * columns + x)];
      const auto i = static_cast<std::size_t>(x);
      const int mean = naive::smoothedPixel(boxes.sums[i], boxes.squares[i], sample, formula.at(boxes.sums[i]));
      const int gain = (sample * (64 - w) + mean * w) / 64 - sample;
      for (std::size_t c = 0; c < (ofPixels ? 3 : 1); ++c)
        image.pixels[at][c] = toByte(image.pixels[at][c] + gain);
    }
  }
}

/// Of the pixels that share a pair of chroma, 0 .. 256.
int blockWeight(const Image& image, const std::vector<int>& weights, int x, int y) {
  const auto at = [&](int column, int row) {
    const int place = std::min(row, image.height - 1) * image.width + std::min(column, image.width - 1);
    return weights[static_cast<std::size_t>(place)];
  };
  return at(x & ~1, y & ~1) + at(x | 1, y & ~1) + at(x & ~1, y | 1) + at(x | 1, y | 1);
}

/// The same of the chroma of blocks, in boxes of luma; pixels gain what their chroma gains. What is far from the mean
/// is left alone.
void evenTone(Image& image, const Image& source, bool ofPixels, const Formula& formula, int half, int amount,
              const std::vector<int>& weights) {
  const float levels = formula.isFull ? 255.0f / 224.0f : 1.0f;
  const float farthest = 12 * 12 * (levels * levels);
  const int columns = (source.width + 15) / 16 * 8;
  const int rowCount = (source.height + 1) / 2;
  std::array<Bytes, 3> planes;
  std::vector<int> blockWeights;
  for (int i = 0; i < columns * rowCount; ++i) {
    int luma = 2;
    for (const auto& [x, y] : {std::pair{0, 0}, {1, 0}, {0, 1}, {1, 1}}) {
      const int column = std::min(i % columns * 2 + x, source.width - 1);
      const int row = std::min(i / columns * 2 + y, source.height - 1);
      const Pixel& pixel = source.at(column, row);
      luma += ofPixels ? toYuv(pixel, pixel, kLimited601)[0] : pixel[0];
    }
    const int x = i % columns * 2;
    const int y = i / columns * 2;
    const Pixel chroma = ofPixels ? toYuv({}, source.blockMean(x, y), kLimited601) : source.at(x, y);
    const int samples[] = {luma / 4, chroma[1], chroma[2]};
    for (std::size_t p = 0; p < 3; ++p)
      planes[p].push_back(static_cast<Byte>(samples[p]));
    blockWeights.push_back(blockWeight(source, weights, x, y));
  }
  std::array<naive::Statistics, 3> boxes;
  for (std::size_t p = 0; p < 3; ++p) {
    const naive::Rows rows{[&](long long y) { return planes[p].data() + y * columns; }, 0, rowCount - 1};
    boxes[p] = naive::boxStatistics(rows, columns, rowCount, half, naive::ColumnWidth::k16Bits);
  }
  const auto evened = [&](std::size_t p, std::size_t i) {
    const auto [inverseArea, bias, strength] = formula.at(boxes[0].sums[i]);
    const auto mean = [&, n = inverseArea](std::size_t k) { return static_cast<float>(boxes[k].sums[i]) * n; };
    const auto distance = [&](std::size_t k) { return mean(k) - static_cast<float>(planes[k][i]); };
    const float squareOfMean = mean(0) * mean(0);
    const float variance = static_cast<float>(boxes[0].squares[i]) * inverseArea - squareOfMean;
    const float u = distance(1) * distance(1);
    const float v = distance(2) * distance(2);
    const float far = (u + v) * naive::reciprocalEstimate(bias * (farthest / formula.constants.bias));
    const float near = std::max(1 - far, 0.0f);
    const float likeLuma = 16 * strength * naive::reciprocalEstimate(variance + bias + 16 * strength);
    const float part = likeLuma * (near * near * (static_cast<float>(amount) / 1000));
    const float step = distance(p) * part;
    const int moved = static_cast<int>(static_cast<float>(planes[p][i]) + step + 0.5f);
    return (planes[p][i] * (256 - blockWeights[i]) + moved * blockWeights[i] + 128) / 256;
  };
  for (int i = 0; i < source.width * source.height; ++i) {
    const auto block = static_cast<std::size_t>(i / source.width / 2 * columns + i % source.width / 2);
    Pixel& pixel = image.pixels[static_cast<std::size_t>(i)];
    const int u = evened(1, block);
    const int v = evened(2, block);
    const auto& k = kColorimetries[kLimited601].toRgb;
    const int gains[] = {u - planes[1][block], v - planes[2][block]};
    const int sums[] = {k[1] * gains[1], k[2] * gains[0] + k[3] * gains[1], k[4] * gains[0]};
    for (std::size_t c = 0; c < 3 && ofPixels; ++c)
      pixel[c] = toByte(pixel[c] + ((sums[c] + 32) >> 6));
    if (!ofPixels) pixel = {pixel[0], u, v, pixel[3]};
  }
}

void changeColors(Pixel& pixel, const VlvkSettings& settings, int weight, const model::Curves& curves,
                  const Byte* picture) {
  const auto digit = [&](std::size_t c) { return static_cast<std::size_t>(pixel[c] / 4); };
  if (picture != nullptr) {
    const Byte* entry = picture + ((digit(2) / 8 * 64 + digit(1)) * 512 + digit(2) % 8 * 64 + digit(0)) * 4;
    std::reverse_copy(entry, entry + 3, pixel.begin());
  }
  for (std::size_t c = 0; c < 3 && settings.whitening > 0; ++c)
    pixel[c] = (pixel[c] * (64 - weight) + curves[c][static_cast<std::size_t>(pixel[c])] * weight) / 64;
}

int reachOf(const VlvkSettings& settings, const Image& image) {
  const int shorter = std::min(image.width, image.height);
  const int radius = settings.radius != VLVK_RADIUS_AUTO ? settings.radius
                     : shorter > 2160                    ? 128
                                                         : std::clamp(shorter / 30, 8, 64);
  return (radius + 7) / 8 * 8;
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

void process(const VlvkFrame& source, const VlvkFrame& target, const VlvkSettings& settings, const Byte* picture,
             const VlvkMask* mask) {
  Image image(source);
  const bool fromPixels = isPixels(source.format);
  const bool toPixels = isPixels(target.format);
  const bool byPixels = fromPixels || toPixels || settings.whitening > 0 || picture != nullptr;
  const int colors = colorsOf(source);
  const std::vector<int> weights = skinWeights(image, fromPixels, colors, mask);
  const Image unchanged = image;
  const int reach = reachOf(settings, image);
  const bool full = colors % 2 == 1;
  if (600 * settings.softening / 1000 > 0 && reach > 0) {
    const Formula formula(reach - 1, settings.softening, settings.contrast, fromPixels || full);
    smooth(image, unchanged, fromPixels, formula, reach - 1, weights);
  }
  if (settings.evenTone > 0 && reach > 0) {
    const Formula formula(reach / 2 - 1, 1000, settings.contrast, !fromPixels && full);
    evenTone(image, unchanged, fromPixels, formula, reach / 2 - 1, settings.evenTone, weights);
  }
  const model::Curves curves = model::toneCurves(settings.whitening);
  const bool ofSkin = settings.whitenArea == VLVK_WHITEN_SKIN;
  const bool mixesYuv = ofSkin && settings.whitening > 0 && !fromPixels && !toPixels && picture == nullptr;
  const Image before = image;
  for (std::size_t i = 0; i < image.pixels.size(); ++i) {
    Pixel& pixel = image.pixels[i];
    if (!fromPixels) pixel = byPixels ? toRgb(pixel, colors) : convert(pixel, colors, colorsOf(target));
    if (byPixels) changeColors(pixel, settings, ofSkin && !mixesYuv ? weights[i] : 64, curves, picture);
  }
  Image result = image;
  for (int i = 0; i < image.width * image.height && byPixels && !toPixels; ++i) {
    const int x = i % image.width;
    const int y = i / image.width;
    const auto place = static_cast<std::size_t>(i);
    Pixel& pixel = result.pixels[place];
    pixel = toYuv(pixel, fromPixels ? image.blockMean(x, y) : image.at(x & ~1, y & ~1), colorsOf(target));
    if (!mixesYuv) continue;
    const Pixel old = convert(before.pixels[place], colors, colorsOf(target));
    const int weight = blockWeight(before, weights, x, y);
    pixel[0] = (old[0] * (64 - weights[place]) + pixel[0] * weights[place]) / 64;
    for (std::size_t c = 1; c < 3; ++c)
      pixel[c] = (old[c] * (256 - weight) + pixel[c] * weight + 128) / 256;
  }
  result.write(target);
}

}  // namespace makeup_model
