/// See frame_model.h.
#include "tests/frames/frame_model.h"

#include <algorithm>
#include <cstdint>

namespace model {
namespace {

// Full whitening, and the darkening that green gets in part even without whitening.
constexpr std::array<Byte, 256> kWhite = {
    0,   1,   3,   4,   5,   6,   8,   9,   10,  12,  13,  14,  15,  17,  18,  19,  21,  22,  23,  24,  26,  27,
    28,  30,  31,  32,  33,  35,  36,  37,  39,  40,  41,  42,  44,  45,  46,  48,  49,  50,  51,  53,  54,  55,
    57,  58,  59,  60,  62,  63,  64,  66,  67,  68,  69,  71,  72,  73,  75,  76,  77,  78,  80,  81,  82,  84,
    85,  86,  87,  89,  90,  91,  93,  94,  95,  96,  98,  99,  100, 102, 103, 104, 106, 107, 108, 109, 111, 112,
    113, 115, 116, 117, 118, 120, 121, 122, 124, 125, 126, 127, 129, 130, 131, 132, 134, 135, 136, 138, 139, 140,
    141, 142, 144, 145, 146, 147, 149, 150, 151, 152, 153, 155, 156, 157, 158, 159, 160, 162, 163, 164, 165, 166,
    167, 168, 169, 171, 172, 173, 174, 175, 176, 177, 178, 179, 180, 181, 182, 183, 185, 186, 187, 188, 189, 190,
    191, 192, 193, 194, 195, 196, 197, 197, 198, 199, 200, 201, 202, 203, 204, 205, 206, 207, 208, 208, 209, 210,
    211, 212, 213, 214, 214, 215, 216, 217, 218, 218, 219, 220, 221, 222, 222, 223, 224, 225, 225, 226, 227, 227,
    228, 229, 230, 230, 231, 232, 232, 233, 234, 234, 235, 235, 236, 237, 237, 238, 238, 239, 240, 240, 241, 241,
    242, 242, 243, 243, 244, 244, 245, 245, 246, 246, 247, 247, 247, 248, 248, 249, 249, 249, 250, 250, 251, 251,
    251, 252, 252, 252, 253, 253, 253, 253, 254, 254, 254, 255, 255, 255};
constexpr std::array<Byte, 256> kShade = {
    0,   1,   1,   2,   3,   3,   4,   4,   5,   6,   6,   7,   8,   8,   9,   10,  10,  11,  11,  12,  13,  13,
    14,  15,  15,  16,  17,  17,  18,  19,  19,  20,  21,  21,  22,  22,  23,  24,  24,  25,  26,  26,  27,  28,
    28,  29,  30,  31,  31,  32,  33,  33,  34,  35,  35,  36,  37,  37,  38,  39,  40,  40,  41,  42,  42,  43,
    44,  45,  45,  46,  47,  47,  48,  49,  50,  50,  51,  52,  53,  53,  54,  55,  56,  57,  57,  58,  59,  60,
    60,  61,  62,  63,  64,  65,  65,  66,  67,  68,  69,  69,  70,  71,  72,  73,  74,  75,  75,  76,  77,  78,
    79,  80,  81,  82,  82,  83,  84,  85,  86,  87,  88,  89,  90,  91,  92,  93,  94,  95,  96,  97,  98,  99,
    100, 101, 102, 103, 104, 105, 106, 107, 108, 109, 110, 111, 112, 113, 114, 115, 116, 117, 118, 119, 121, 122,
    123, 124, 125, 126, 127, 128, 130, 131, 132, 133, 134, 135, 137, 138, 139, 140, 141, 143, 144, 145, 146, 147,
    149, 150, 151, 152, 154, 155, 156, 157, 159, 160, 161, 162, 164, 165, 166, 168, 169, 170, 172, 173, 174, 175,
    177, 178, 179, 181, 182, 183, 185, 186, 187, 189, 190, 191, 193, 194, 195, 197, 198, 199, 201, 202, 204, 205,
    206, 208, 209, 210, 212, 213, 215, 216, 217, 219, 220, 221, 223, 224, 226, 227, 228, 230, 231, 233, 234, 235,
    237, 238, 240, 241, 242, 244, 245, 247, 248, 249, 251, 252, 254, 255};

/// 32-bit arithmetic of the settings: it wraps.
std::int32_t wrapped(std::int64_t x) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(x));
}

Byte mix(std::int64_t k, int white, int plain) {
  return static_cast<Byte>(wrapped(k * white + (256 - k) * plain) >> 8);
}

/// The neutral picture with the payload over its beginning.
Bytes pictureOf(const Resource& resource) {
  Bytes picture = neutralPicture();
  std::copy(resource.payload.begin(), resource.payload.end(), picture.begin());
  return picture;
}

}  // namespace

const Bytes& neutralPicture() {
  static const Bytes picture = [] {
    Bytes made(kPictureSize);
    const auto channel = [](int index) { return static_cast<Byte>((index * 255 * 2 + 63) / (63 * 2)); };
    for (int row = 0; row < kPictureSide; ++row) {
      for (int column = 0; column < kPictureSide; ++column) {
        Byte* pixel = &made[static_cast<std::size_t>(row * kPictureSide + column) * 4];
        pixel[0] = channel(row / 64 * 8 + column / 64);
        pixel[1] = channel(row % 64);
        pixel[2] = channel(column % 64);
        pixel[3] = 255;
      }
    }
    return made;
  }();
  return picture;
}

Tables buildTables(const Bytes& picture, int whiten, bool rgbOrder) {
  Tables tables;
  const std::int64_t k = wrapped(std::int64_t{whiten} * 256) / 100;
  for (int i = 0; i < 256; ++i) {
    const auto at = static_cast<std::size_t>(i);
    const int j = (233 * i + 23 * ((kShade[at] + i) / 2)) / 256;
    tables.curves[0][at] = tables.curves[2][at] = mix(k, kWhite[at], i);
    tables.curves[1][at] = mix(k, kWhite[static_cast<std::size_t>(j)], j);
  }
  tables.colors.resize(kPictureSize);
  for (std::size_t block = 0; block < 64; ++block) {
    for (std::size_t v = 0; v < 64; ++v) {
      for (std::size_t u = 0; u < 64; ++u) {
        const Byte* source = &picture[((block / 8 * 64 + v) * kPictureSide + block % 8 * 64 + u) * 4];
        Byte* entry = &tables.colors[block * 16384 + v * 256 + u * 4];
        entry[rgbOrder ? 2 : 0] = tables.curves[0][source[0]];
        entry[1] = tables.curves[1][source[1]];
        entry[rgbOrder ? 0 : 2] = tables.curves[0][source[2]];
        entry[3] = 255;
      }
    }
  }
  return tables;
}

Mapping mappingFor(int whiten, int colorAdjust) {
  if (colorAdjust > 0) return Mapping::kTable;
  return whiten > 0 ? Mapping::kCurves : Mapping::kGreenOnly;
}

void adjustPixel(const Tables& tables, Mapping mapping, bool rgbOrder, Byte* pixel) {
  Byte& red = pixel[rgbOrder ? 0 : 2];
  Byte& blue = pixel[rgbOrder ? 2 : 0];
  if (mapping == Mapping::kTable) {
    const std::size_t entry =
        std::size_t{blue} / 4 * 16384 + std::size_t{pixel[1]} / 4 * 256 + std::size_t{red} / 4 * 4;
    std::copy_n(&tables.colors[entry], 4, pixel);
    return;
  }
  pixel[1] = tables.curves[1][pixel[1]];
  if (mapping == Mapping::kGreenOnly) return;
  red = tables.curves[0][red];
  blue = tables.curves[2][blue];
  pixel[3] = 255;
}

long long halfSizeFor(int radius) {
  if (radius <= 0) return -1;
  return std::min((radius + 7LL) / 8 * 8, 0x7FFFFFF8LL) - 1;
}

int softenLevelFor(int soften) {
  return wrapped(std::int64_t{600} * soften) / 1000;
}

Bytes beautifiedLuma(const Bytes& y, const Byte* uv, int uvStride, int width, int height, bool rgbOrder,
                     const Settings& settings) {
  const long long halfSize = halfSizeFor(settings.radius);
  const int level = softenLevelFor(settings.soften);
  if (halfSize < 0 || level <= 0) return y;
  static const std::vector<Byte> curve = naive::skinCurve(1.5f, 64.0f, 48);
  const int u = 110;
  const int v = 155;
  Bytes mixed = naive::smoothPlane(y.data(), width, height, width, halfSize, level);
  naive::blend(y.data(), mixed.data(), mixed.data(), width, uv, uvStride, width, height, curve, rgbOrder ? v : u,
               rgbOrder ? u : v);
  return mixed;
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
  } else if (dirty_) {
    tables_ = buildTables(pictureOf(*resource_), settings_.whiten, rgbOrder);
  } else if (!tables_) {
    tables_ = buildTables(neutralPicture(), settings_.whiten, rgbOrder);
  }
  dirty_ = false;
}

void Filter::render(const Bytes& y, const Byte* uv, int uvStride, int width, int height, bool rgbOrder, Byte* out,
                    int outStride) {
  makeTables(rgbOrder);
  const Bytes luma = beautifiedLuma(y, uv, uvStride, width, height, rgbOrder, settings_);
  smoothedFrames_ += luma != y;
  naive::yuvToPixels(luma.data(), width, uv, uvStride, out, outStride, width, height,
                     rgbOrder ? naive::ChromaOrder::kVU : naive::ChromaOrder::kUV,
                     rgbOrder ? naive::PixelOrder::kRGBA : naive::PixelOrder::kBGRA);
  if (!tables_) return;
  const Mapping mapping = mappingFor(settings_.whiten, settings_.colorAdjust);
  for (std::ptrdiff_t row = 0; row < height; ++row) {
    for (int x = 0; x < width; ++x)
      adjustPixel(*tables_, mapping, rgbOrder, out + row * outStride + 4 * x);
  }
}

void Filter::processVideo(Bytes& y, Bytes& uv, int width, int height, Byte* out, int outStride, bool rgbOrder) {
  if (out != nullptr) {
    render(y, uv.data(), width, width, height, rgbOrder, out, outStride);
    return;
  }
  Bytes pixels(y.size() * 4);
  render(y, uv.data(), width, width, height, rgbOrder, pixels.data(), width * 4);
  naive::pixelsToYuv(pixels.data(), width * 4, y.data(), width, uv.data(), width, width, height,
                     rgbOrder ? naive::PixelOrder::kRGBA : naive::PixelOrder::kBGRA,
                     rgbOrder ? naive::ChromaOrder::kVU : naive::ChromaOrder::kUV);
}

void Filter::processBgra(const Byte* bgra, int width, int height, int stride, Byte* out, int outStride) {
  Bytes y(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  Bytes uv(y.size() / 2 + 1);
  const int uvStride = width / 2 * 2;
  naive::pixelsToYuv(bgra, stride, y.data(), width, uv.data(), uvStride, width, height, naive::PixelOrder::kBGRA,
                     naive::ChromaOrder::kUV);
  // The odd last column and row have no samples of their own: they take those of their neighbours.
  if (width % 2 == 1 && width > 1) {
    for (std::size_t end = static_cast<std::size_t>(width); end <= y.size(); end += static_cast<std::size_t>(width)) {
      y[end - 1] = y[end - 2];
    }
  }
  if (height % 2 == 1 && height > 1) std::copy_n(y.end() - 2 * width, width, y.end() - width);
  Bytes nowhere(y.size() * 4);
  render(y, uv.data(), uvStride, width, height, false, out == nullptr ? nowhere.data() : out,
         out == nullptr ? width * 4 : outStride);
}

}  // namespace model
