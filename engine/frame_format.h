/// The formats of frames.
#ifndef VLVK_ENGINE_FRAME_FORMAT_H
#define VLVK_ENGINE_FRAME_FORMAT_H

#include <cstdint>

#include <vlvk/makeup.h>
#include "rows/pixel_orders.h"

namespace vlvk {

/// How the samples of a format lie in memory.
struct FrameFormat {
  VlvkFormat name;
  int planes;
  int pixelBytes;           ///< 4 or 3; 0: YUV 4:2:0
  PixelOrder pixelOrder;    ///< of pixels
  bool hasAlpha;            ///< pixels whose fourth byte is alpha
  ChromaOrder chromaOrder;  ///< of YUV with chroma pairs

  bool isYuv() const { return pixelBytes == 0; }
  bool hasChromaPairs() const { return planes == 2; }

  /// Bytes of a row and rows of a plane, for a frame of this size.
  std::int64_t rowBytes(int plane, int width) const {
    if (!isYuv()) return std::int64_t{pixelBytes} * width;
    if (plane == 0) return width;
    return (width + std::int64_t{1}) / 2 * (hasChromaPairs() ? 2 : 1);
  }
  int rows(int plane, int height) const { return plane == 0 ? height : height / 2 + height % 2; }
};

/// @return null for a number that is no VlvkFormat
const FrameFormat* frameFormat(std::int32_t name);

}  // namespace vlvk

#endif
