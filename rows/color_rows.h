/// Row loop of the colour table. Included by rows/all_rows.h.

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "rows/pixel_orders.h"

namespace vlvk::VLVK_TARGET {

/// See RowLoops::lookUpColors. The indices are formed in vectors; the table is larger than any register, so its entries
/// are loads of their own.
template <PixelOrder kPixels>
inline void lookUpColors(const std::uint8_t* source, std::uint8_t* destination, int columns,
                         const std::uint8_t* table) {
  constexpr int kRed = kPixels == kRgba ? 0 : 2;
  for (; columns > 0; columns -= 16) {
    std::uint32_t indices[16];
    storeColorIndices<kRed, 2 - kRed>(indices, loadPixels16(source));
    source += 64;
    for (int i = 0; i < 16; ++i)
      std::memcpy(destination + 4 * i, table + 4 * static_cast<std::size_t>(indices[i]), 4);
    destination += 64;
  }
}

}  // namespace vlvk::VLVK_TARGET
