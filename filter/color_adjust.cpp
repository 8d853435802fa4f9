/// Colour adjustment of a band: colour table, tone curves, or the green curve alone.
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <vlvk/CFastEdgePreserved.h>
#include "rows/pixel_orders.h"
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

template <vlvk::PixelOrder kOrder>
void mapThroughTable(const PixelRows& band, const unsigned char* table) {
  if (band.width <= 0) return;
  const auto lookUpColors = vlvk::rowLoops().lookUpColors[vlvk::kOpaque][kOrder];
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

template <vlvk::PixelOrder kOrder>
void mapThroughCurves(const PixelRows& band, const CFastEdgePreserved& filter) {
  const bool rgba = kOrder == vlvk::kRgba;
  const vlvk::ChannelCurves curves = vlvk::prepareCurves(
      rgba ? filter.toneCurve0 : filter.toneCurve2, filter.toneCurve1, rgba ? filter.toneCurve2 : filter.toneCurve0);
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

template <vlvk::PixelOrder kOrder>
void adjustBand(const CFastEdgePreserved& filter, const MakeupParam& p) {
  if (filter.colorTable == nullptr) return;
  const bool apart = p.inPlace && p.variant == 1;
  const PixelRows band{p.outPlane, p.outStride, apart ? p.dstPlane : p.outPlane, apart ? p.dstStride : p.outStride,
                       p.width,    p.rows};
  if (p.colorAdjustIntensity > 0) {
    mapThroughTable<kOrder>(band, filter.colorTable);
  } else if (p.whitenIntensity > 0) {
    mapThroughCurves<kOrder>(band, filter);
  } else if (apart) {
    mapGreenApart(band, filter.toneCurve1);
  } else {
    mapGreen(band, filter.toneCurve1);
  }
}

}  // namespace

void CFastEdgePreserved::colorAdjustRGBA(MakeupParam* p) {
  adjustBand<vlvk::kRgba>(*this, *p);
}

void CFastEdgePreserved::colorAdjustBGRA(MakeupParam* p) {
  adjustBand<vlvk::kBgra>(*this, *p);
}
