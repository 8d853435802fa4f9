/// Byte orders of chroma pairs and of 32-bit pixels.
#ifndef VLVK_ROWS_PIXEL_ORDERS_H
#define VLVK_ROWS_PIXEL_ORDERS_H

namespace vlvk {

/// Order of the two bytes of a chroma pair: NV21 stores V then U, NV12 U then V.
enum ChromaOrder { kVThenU, kUThenV };

/// Order of the colour bytes of a pixel in memory; the fourth byte is alpha.
enum PixelOrder { kRgba, kBgra };

inline constexpr int kChromaOrders = 2;
inline constexpr int kPixelOrders = 2;

}  // namespace vlvk

#endif
