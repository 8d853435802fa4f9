/// Row loop of the colour table. Included by rows/all_rows.h.

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "rows/pixel_orders.h"
#include "simd/channel_curves.h"

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

/// See RowLoops::applyCurves. The last pixels of a row that are fewer than an operation takes go through a block of
/// their own.
template <AlphaRule kAlpha>
inline void applyCurves(const std::uint8_t* source, std::uint8_t* destination, int columns,
                        const ChannelCurves& curves) {
  constexpr int kBlock = 4 * kCurvedPixels;
  for (; columns >= kCurvedPixels; columns -= kCurvedPixels, source += kBlock, destination += kBlock)
    storeCurved<kAlpha == kOpaque>(destination, source, curves);
  if (columns <= 0) return;
  std::uint8_t rest[kBlock] = {};
  std::memcpy(rest, source, 4 * static_cast<std::size_t>(columns));
  storeCurved<kAlpha == kOpaque>(rest, rest, curves);
  std::memcpy(destination, rest, 4 * static_cast<std::size_t>(columns));
}

}  // namespace vlvk::VLVK_TARGET
