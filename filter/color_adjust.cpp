/// See color_adjust.h.
#include "filter/color_adjust.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "rows/row_loops.h"

namespace {

using MakeupParam = CFastEdgePreserved::MakeupParam;

/// A pixel as a little-endian word: the first byte in memory is the lowest.
std::uint32_t loadPixel(const unsigned char* from) {
  std::uint32_t pixel = 0;
  std::memcpy(&pixel, from, sizeof pixel);
  return pixel;
}

void storePixel(unsigned char* to, std::uint32_t pixel) {
  std::memcpy(to, &pixel, sizeof pixel);
}

std::uint32_t withGreen(std::uint32_t pixel, const unsigned char* curve) {
  return (pixel & 0xFFFF00FFU) | std::uint32_t{curve[(pixel >> 8U) & 0xFFU]} << 8U;
}

/// Where a band's pixels come from and go to; both may be the same.
struct PixelRows {
  unsigned char* source;
  std::ptrdiff_t sourceStride;
  unsigned char* destination;
  std::ptrdiff_t destinationStride;
  int width;
  int rows;

  template <class RowFunction>
  void forEachRow(RowFunction rowFunction) const {
    for (std::ptrdiff_t y = 0; y < rows; ++y) {
      rowFunction(source + y * sourceStride, destination + y * destinationStride);
    }
  }
};

/// The middle channel alone.
void mapGreen(const PixelRows& band, const unsigned char* curve) {
  band.forEachRow([&](const unsigned char* source, unsigned char* destination) {
    for (std::ptrdiff_t i = 0; i < 4 * static_cast<std::ptrdiff_t>(band.width); i += 4) {
      storePixel(destination + i, withGreen(loadPixel(source + i), curve));
    }
  });
}

void mapThroughTable(const PixelRows& band, vlvk::PixelOrder order, const unsigned char* table) {
  if (band.width <= 0) return;
  const auto lookUpColors = vlvk::rowLoops().lookUpColors[vlvk::kOpaque][order];
  const int blocks = band.width & ~15;
  const std::ptrdiff_t blockBytes = 4 * static_cast<std::ptrdiff_t>(blocks);
  const auto restBytes = 4 * static_cast<std::size_t>(band.width - blocks);
  band.forEachRow([&](const unsigned char* source, unsigned char* destination) {
    lookUpColors(source, destination, blocks, table);
    if (restBytes == 0) return;
    unsigned char rest[64] = {};  // the row loop takes 16 pixels at a time
    std::memcpy(rest, source + blockBytes, restBytes);
    lookUpColors(rest, rest, 16, table);
    std::memcpy(destination + blockBytes, rest, restBytes);
  });
}

void mapThroughCurves(const PixelRows& band, const vlvk::ChannelCurves& curves) {
  band.forEachRow([&](const unsigned char* source, unsigned char* destination) {
    vlvk::rowLoops().applyCurves[vlvk::kOpaque](source, destination, band.width, curves);
  });
}

/// Green curve into a separate destination: the curve value goes to the source, the outer channels to the destination.
void mapGreenApart(const PixelRows& band, const unsigned char* curve) {
  band.forEachRow([&](unsigned char* source, unsigned char* destination) {
    for (std::ptrdiff_t i = 0; i < 4 * static_cast<std::ptrdiff_t>(band.width); i += 4) {
      destination[i] = source[i];
      destination[i + 2] = source[i + 2];
      source[i + 1] = curve[source[i + 1]];
    }
  });
}

}  // namespace

std::optional<vlvk::ChannelCurves> vlvk::curvesFor(const CFastEdgePreserved& filter, const MakeupParam& p,
                                                   PixelOrder order) {
  if (filter.colorTable == nullptr || p.colorAdjustIntensity > 0 || p.whitenIntensity <= 0) return std::nullopt;
  const bool rgba = order == kRgba;
  return prepareCurves(rgba ? filter.toneCurve0 : filter.toneCurve2, filter.toneCurve1,
                       rgba ? filter.toneCurve2 : filter.toneCurve0);
}

void vlvk::adjustColors(const CFastEdgePreserved& filter, const MakeupParam& p, PixelOrder order,
                        const std::optional<ChannelCurves>& curves) {
  if (filter.colorTable == nullptr) return;
  const bool apart = p.inPlace && p.variant == 1;
  const PixelRows band{p.outPlane, p.outStride, apart ? p.dstPlane : p.outPlane, apart ? p.dstStride : p.outStride,
                       p.width,    p.rows};
  if (p.colorAdjustIntensity > 0) {
    mapThroughTable(band, order, filter.colorTable);
  } else if (curves.has_value()) {
    mapThroughCurves(band, *curves);
  } else if (apart) {
    mapGreenApart(band, filter.toneCurve1);
  } else {
    mapGreen(band, filter.toneCurve1);
  }
}

void CFastEdgePreserved::colorAdjustRGBA(MakeupParam* p) {
  vlvk::adjustColors(*this, *p, vlvk::kRgba, vlvk::curvesFor(*this, *p, vlvk::kRgba));
}

void CFastEdgePreserved::colorAdjustBGRA(MakeupParam* p) {
  vlvk::adjustColors(*this, *p, vlvk::kBgra, vlvk::curvesFor(*this, *p, vlvk::kBgra));
}
