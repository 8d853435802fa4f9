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

/// See RowLoops::applyCurves.
template <AlphaRule kAlpha>
inline void applyCurves(const std::uint8_t* source, std::uint8_t* destination, int columns,
                        const ChannelCurves& curves) {
  for (int i = 0; i < columns; ++i, source += 4, destination += 4) {
    std::uint8_t pixel[4];
    std::memcpy(pixel, source, 4);
    pixel[0] = curves.first[pixel[0]];
    pixel[1] = curves.second[pixel[1]];
    pixel[2] = curves.third[pixel[2]];
    if constexpr (kAlpha == kOpaque) pixel[3] = 255;
    std::memcpy(destination, pixel, 4);
  }
}

}  // namespace vlvk::VLVK_TARGET
