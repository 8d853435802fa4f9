/// Orders of chroma samples and of the bytes of 32-bit pixels.
#ifndef VLVK_ROWS_PIXEL_ORDERS_H
#define VLVK_ROWS_PIXEL_ORDERS_H

namespace vlvk {

/// Order of the two bytes of a chroma pair: NV21 stores V then U, NV12 U then V.
enum ChromaOrder { kVThenU, kUThenV };

/// Order of the colour bytes of a pixel in memory; the fourth byte is alpha.
enum PixelOrder { kRgba, kBgra };

/// Which columns a chroma pair of a row pair belongs to.
enum ChromaSpread {
  kPairsInPlace,  ///< pair i to columns 2 * i and 2 * i + 1
  kFoursTwice     ///< in each block of 8 columns, the block's four pairs to columns 0 .. 3 and again to 4 .. 7
};

/// What becomes of a pixel's fourth byte.
enum AlphaRule { kKeepAlpha, kOpaque };

inline constexpr int kChromaOrders = 2;
inline constexpr int kPixelOrders = 2;
inline constexpr int kAlphaRules = 2;

}  // namespace vlvk

#endif
