/// See naive.h. Speed is nowhere a concern; being obviously right is.
#include "tests/naive/naive.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>

namespace naive {
namespace {

/// Calls use(i, times) for the indices first .. last clamped to low .. high: index i stands for `times` of them.
template <class Use>
void forClamped(long long first, long long last, long long low, long long high, Use use) {
  for (long long i = std::clamp(first, low, high); i <= std::clamp(last, low, high); ++i) {
    const long long from = i == low ? first : std::max(first, i);
    const long long to = i == high ? last : std::min(last, i);
    use(i, static_cast<std::uint32_t>(to - from + 1));
  }
}

/// The low byte of the quotient rounded half up, out of range as ARM converts to a signed integer.
Byte roundedToByte(float quotient) {
  if (std::isnan(quotient)) return 0;
  const double limited = std::clamp(static_cast<double>(quotient) + 0.5, -2147483648.0, 2147483647.0);
  return static_cast<Byte>(static_cast<std::int64_t>(limited) & 0xFF);
}

}  // namespace

float reciprocalEstimate(float x) {
  if (std::isnan(x)) return std::bit_cast<float>(0x7FC00000u);
  const auto bits = std::bit_cast<std::uint32_t>(x);
  const int exponent = static_cast<int>((bits >> 23) & 0xFF);
  const int fraction = static_cast<int>(bits & 0x7FFFFF);
  float magnitude = INFINITY;
  if (exponent >= 253) {
    magnitude = 0.0f;
  } else if (exponent > 0) {
    // 1 / x for the middle of the class of fractions that x lies in, to the nearest of 256 steps, in integers.
    const int q = 256 + fraction / 32768;
    const int s = ((1 << 19) / (2 * q + 1) + 1) / 2;
    magnitude = std::ldexp(static_cast<float>(s), 253 - exponent - 127 - 8);
  }
  return std::signbit(x) ? -magnitude : magnitude;
}

std::uint32_t toUnsigned(float x) {
  if (!(x > 0.0f)) return 0;
  if (x >= 4294967296.0f) return 0xFFFFFFFFu;
  return static_cast<std::uint32_t>(x);
}

FormulaConstants formulaConstants(long long halfSize, int level) {
  const int k = static_cast<int>(level * 0.6);  // 0.6 of an int always fits an int
  const auto thousandths = static_cast<std::int32_t>(600000u - 600u * static_cast<std::uint32_t>(k));
  const double side = 2.0 * static_cast<double>(halfSize) + 1.0;
  return {static_cast<float>(1.0 / (side * side)), static_cast<float>(static_cast<double>(thousandths) / 1000.0 * 0.2),
          static_cast<float>(k)};
}

Byte smoothedPixel(std::uint32_t S, std::uint32_t Q, Byte x, const FormulaConstants& constants) {
  const auto [N, A, K] = constants;
  const float m = static_cast<float>(S) * N;
  const float meanOfSquares = static_cast<float>(Q) * N;
  const float squareOfMean = m * m;
  const float a = (meanOfSquares - squareOfMean) + A;
  const float ownShare = static_cast<float>(x) * a;
  const float meanShare = m * K;
  return static_cast<Byte>(toUnsigned((ownShare + meanShare) * reciprocalEstimate(a + K)) & 0xFF);
}

Byte smoothedPixel(std::uint32_t S, std::uint32_t Q, Byte x, long long halfSize, int level) {
  return smoothedPixel(S, Q, x, formulaConstants(halfSize, level));
}

Statistics sumColumns(const Rows& rows, long long first, long long last, int columns, ColumnWidth width) {
  const auto count = static_cast<std::size_t>(columns);
  Statistics column{std::vector<std::uint32_t>(count), std::vector<std::uint32_t>(count)};
  forClamped(first, last, rows.first, rows.last, [&](long long i, std::uint32_t times) {
    const Byte* row = rows.at(i);
    for (std::size_t x = 0; x < count; ++x) {
      column.sums[x] += times * row[x];
      column.squares[x] += times * row[x] * row[x];
    }
  });
  for (std::uint32_t& sum : column.sums) {
    if (width == ColumnWidth::k16Bits) sum &= 0xFFFF;
  }
  return column;
}

Statistics scanColumns(const Statistics& columns, long long first, long long last) {
  const auto count = static_cast<long long>(columns.sums.size());
  Statistics boxes;
  for (long long j = 0; j < count; ++j) {
    std::uint32_t S = 0;
    std::uint32_t Q = 0;
    forClamped(j + first, j + last, 0, count - 1, [&](long long i, std::uint32_t times) {
      S += times * columns.sums[static_cast<std::size_t>(i)];
      Q += times * columns.squares[static_cast<std::size_t>(i)];
    });
    boxes.sums.push_back(S);
    boxes.squares.push_back(Q);
  }
  return boxes;
}

Statistics boxStatistics(const Rows& rows, int columns, int count, int halfSize, ColumnWidth width) {
  Statistics plane;
  for (int y = 0; y < count; ++y) {
    const Statistics column = sumColumns(rows, y - halfSize, y + halfSize, columns, width);
    const Statistics boxes = scanColumns(column, -halfSize, halfSize);
    plane.sums.insert(plane.sums.end(), boxes.sums.begin(), boxes.sums.end());
    plane.squares.insert(plane.squares.end(), boxes.squares.begin(), boxes.squares.end());
  }
  return plane;
}

std::vector<Byte> smoothRow(const Statistics& columns, const Byte* source, long long halfSize, int level) {
  const Statistics boxes = scanColumns(columns, 1 - halfSize, halfSize + 1);
  const FormulaConstants constants = formulaConstants(halfSize, level);
  std::vector<Byte> row;
  for (std::size_t j = 0; j < boxes.sums.size(); ++j)
    row.push_back(smoothedPixel(boxes.sums[j], boxes.squares[j], source[j], constants));
  return row;
}

std::vector<Byte> smoothPlane(const Byte* luma, int width, int height, int stride, long long halfSize, int level) {
  const Rows rows{[=](long long row) { return luma + row * stride; }, 0, height - 1};
  std::vector<Byte> result;
  for (long long y = 0; y < height; ++y) {
    const Statistics columns = sumColumns(rows, y - halfSize, y + halfSize, width & ~7, ColumnWidth::k16Bits);
    const std::vector<Byte> row = smoothRow(columns, rows.at(y), halfSize, level);
    result.insert(result.end(), row.begin(), row.end());
    result.insert(result.end(), rows.at(y) + row.size(), rows.at(y) + width);
  }
  return result;
}

Byte referencePixel(std::uint32_t S, std::uint32_t Q, Byte x, int radius, int strength) {
  const auto N = static_cast<float>((2 * radius + 1) * (2 * radius + 1));
  const auto K = static_cast<float>(strength);
  const float m = static_cast<float>(S) / N;
  const float meanOfSquares = static_cast<float>(Q) / N;
  const float squareOfMean = m * m;
  float v = meanOfSquares - squareOfMean;
  if (v < 0.0f) v = 0.0f;
  const float ownShare = static_cast<float>(x) * v;
  const float meanShare = m * K;
  return roundedToByte((ownShare + meanShare) / (v + K));
}

Byte blendedStatistics(std::uint32_t third, std::uint32_t fourth, Byte x, int column, int width, int radius,
                       int level) {
  const auto [N, A, K] = formulaConstants(radius, level);
  const bool wholeGroup = column < width / 8 * 8;
  const bool swapped = wholeGroup && column % 8 < 4;
  const float m = static_cast<float>(swapped ? fourth : third) * N;
  const float s = static_cast<float>(swapped ? third : fourth) * N;
  const float squareOfMean = m * m;
  const float a = wholeGroup ? (s + A) - squareOfMean : (s - squareOfMean) + A;
  const float ownShare = static_cast<float>(x) * a;
  const float meanShare = m * K;
  const float numerator = ownShare + meanShare;
  const float denominator = a + K;
  if (!wholeGroup) return roundedToByte(numerator / denominator);
  return static_cast<Byte>(toUnsigned(numerator * reciprocalEstimate(denominator)) & 0xFF);
}

int skinPlateau(float a, float b) {
  const double root = std::sqrt(static_cast<double>(b));
  const float s = root < 12.0 ? static_cast<float>(root) : 12.0f;
  const float product = s * a;
  const double n = static_cast<double>(product) + 0.5;
  return n < 255.0 ? static_cast<int>(n) : 255;
}

std::vector<Byte> skinCurve(float a, float b, int entries, int step) {
  const int plateau = skinPlateau(a, b) / step;
  std::vector<Byte> curve;
  for (int i = 0; i < entries; ++i) {
    const int k = (i - plateau) * step;
    const float exponent = -static_cast<float>(k * k) / (b * 4.0f);
    const double fallOff = b == 0.0f ? 0.0 : std::exp(static_cast<double>(exponent));
    curve.push_back(i < plateau ? 64 : static_cast<Byte>(64.0 * fallOff));
  }
  return curve;
}

int interleavedPosition48(int i) {
  return i < 32 ? 4 * (i % 8) + i / 8 : 32 + 2 * (i % 8) + (i - 32) / 8;
}

void blend(const Byte* unsmoothed, const Byte* smoothed, Byte* destination, int stride, const Byte* chroma,
           int chromaStride, int width, int height, const std::vector<Byte>& curve, int centre0, int centre1) {
  for (int y = 0; y < height / 2 * 2; ++y) {
    for (int x = 0; x < width / 2 * 2; ++x) {
      const bool tail = x >= width / 8 * 8;
      if (tail && x % 2 == 1) continue;
      const auto weight = [&](int sample, int centre) {
        const int distance = std::abs(sample - (centre & 0xFF));
        if (!tail) return distance < 48 ? static_cast<int>(curve[static_cast<std::size_t>(distance)]) : 0;
        if (distance >= 32) return distance <= 63 ? distance : 0;
        return static_cast<int>(curve[static_cast<std::size_t>(distance)]);
      };
      const Byte* pair = chroma + static_cast<std::ptrdiff_t>(y / 2) * chromaStride + x / 2 * 2;
      const int w = weight(pair[0], centre0) * weight(pair[1], centre1) / 64;
      const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(y) * stride + x;
      destination[at] = static_cast<Byte>((unsmoothed[at] * (64 - w) + smoothed[at] * w) / 64);
    }
  }
}

Rgb yuvToPixel(int Y, int U, int V, bool wrapBlue) {
  const int luma = 75 * (Y - 16);
  const int red = luma + 102 * (V - 128);
  const int green = luma - 25 * (U - 128) - 52 * (V - 128);
  int blue = luma + 129 * (U - 128);
  if (wrapBlue && blue >= 32768) blue -= 65536;
  const auto channel = [](int sum) { return static_cast<Byte>(std::clamp((sum + 32) >> 6, 0, 255)); };
  return {channel(red), channel(green), channel(blue)};
}

void yuvToPixels(const Byte* y, int yStride, const Byte* uv, int uvStride, Byte* dst, int dstStride, int width,
                 int height, ChromaOrder chroma, PixelOrder pixels, ToPixels family) {
  const bool fours = family == ToPixels::kFourPairs;
  const int leastRows = family == ToPixels::kPlain ? 0 : 2;
  const int step = fours ? 8 : 2;
  for (std::ptrdiff_t row = 0; row < std::max(height / 2 * 2, leastRows); ++row) {
    for (int x = 0; x < std::max(width / step * step, 4 * leastRows); ++x) {
      const int pair = fours ? x / 8 * 8 + x % 4 * 2 : x / 2 * 2;
      const Byte* at = uv + row / 2 * uvStride + pair;
      const bool uFirst = chroma == ChromaOrder::kUV;
      const bool wraps = family == ToPixels::kPlain ? x < width / 16 * 16 : family == ToPixels::kV2;
      const Rgb p = yuvToPixel(y[row * yStride + x], at[uFirst ? 0 : 1], at[uFirst ? 1 : 0], wraps);
      const bool redFirst = pixels == PixelOrder::kRGBA;
      const Byte bytes[] = {redFirst ? p.r : p.b, p.g, redFirst ? p.b : p.r, 255};
      std::copy_n(bytes, 4, dst + row * dstStride + 4 * x);
    }
  }
}

Yuv pixelToYuv(int R, int G, int B, bool rounded) {
  const auto scaled = [rounded](int sum, int offset) {
    return static_cast<Byte>(((rounded ? sum + 128 : sum) >> 8) + offset);
  };
  return {scaled(66 * R + 129 * G + 25 * B, 16), scaled(-38 * R - 74 * G + 112 * B, 128),
          scaled(112 * R - 94 * G - 18 * B, 128)};
}

void pixelsToYuv(const Byte* src, int srcStride, Byte* y, int yStride, Byte* uv, int uvStride, int width, int height,
                 PixelOrder pixels, ChromaOrder chroma) {
  for (std::ptrdiff_t row = 0; row < height / 2 * 2; ++row) {
    for (int x = 0; x < width / 2 * 2; ++x) {
      const Byte* p = src + row * srcStride + 4 * x;
      const bool rgba = pixels == PixelOrder::kRGBA;
      const Yuv value = pixelToYuv(p[rgba ? 0 : 2], p[1], p[rgba ? 2 : 0], x < width / 16 * 16);
      y[row * yStride + x] = value.y;
      if (row % 2 == 1 || x % 2 == 1) continue;
      Byte* pair = uv + row / 2 * uvStride + x;
      pair[0] = chroma == ChromaOrder::kVU ? value.v : value.u;
      pair[1] = chroma == ChromaOrder::kVU ? value.u : value.v;
    }
  }
}

}  // namespace naive
