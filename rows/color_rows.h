/// Row loop of the colour table. Included by rows/all_rows.h.

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "rows/channel_curves.h"
#include "rows/pixel_orders.h"

namespace vlvk::VLVK_TARGET {

/// See RowLoops::lookUpColors. The indices are formed in vectors; the table is larger than any register, so its entries
/// are loads of their own.
template <AlphaRule kAlpha, PixelOrder kPixels>
inline void lookUpColors(const std::uint8_t* source, std::uint8_t* destination, int columns,
                         const std::uint8_t* table) {
  constexpr int kRed = kPixels == kRgba ? 0 : 2;
  for (; columns > 0; columns -= 16) {
    std::uint32_t indices[16];
    storeColorIndices<kRed, 2 - kRed>(indices, loadPixels16(source));
    for (int i = 0; i < 16; ++i) {
      const std::uint8_t alpha = source[4 * i + 3];
      std::memcpy(destination + 4 * i, table + 4 * static_cast<std::size_t>(indices[i]), 4);
      if constexpr (kAlpha == kKeepAlpha) destination[4 * i + 3] = alpha;
    }
    source += 64;
    destination += 64;
  }
}

/// See RowLoops::applyCurves. A pixel is one load and one store, as a little-endian word: its first byte is the lowest.
template <AlphaRule kAlpha>
inline void applyCurves(const std::uint8_t* source, std::uint8_t* destination, int columns,
                        const ChannelCurves& curves) {
  const std::uint8_t* first = curves.first;
  const std::uint8_t* second = curves.second;
  const std::uint8_t* third = curves.third;
  for (int i = 0; i < columns; ++i, source += 4, destination += 4) {
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, source, sizeof pixel);
    const std::uint32_t alpha = kAlpha == kOpaque ? 0xFF000000U : pixel & 0xFF000000U;
    pixel = first[pixel & 0xFFU] | std::uint32_t{second[(pixel >> 8U) & 0xFFU]} << 8U |
            std::uint32_t{third[(pixel >> 16U) & 0xFFU]} << 16U | alpha;
    std::memcpy(destination, &pixel, sizeof pixel);
  }
}

}  // namespace vlvk::VLVK_TARGET
