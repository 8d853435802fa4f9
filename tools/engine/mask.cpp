/// See mask.h.
#include "tools/engine/mask.h"

#include <cstddef>

#include "tools/engine/beautify.h"

namespace vlvk::tool {
namespace {

// The middle of a pixel decides.
std::size_t nearest(int position, int from, int to) {
  return static_cast<std::size_t>((2 * std::int64_t{position} + 1) * to / (2 * std::int64_t{from}));
}

}  // namespace

std::uint8_t Mask::at(int x, int y, int frameWidth, int frameHeight) const {
  return values[nearest(y, frameHeight, height) * static_cast<std::size_t>(width) + nearest(x, frameWidth, width)];
}

Mask turnedBack(const Mask& mask, int quarters, bool mirrored) {
  if (quarters % 4 == 0 && !mirrored) return mask;
  const bool swapsSides = quarters % 2 != 0;
  Mask back{swapsSides ? mask.height : mask.width, swapsSides ? mask.width : mask.height, {}};
  back.values.reserve(mask.values.size());
  for (int y = 0; y < back.height; ++y) {
    for (int i = 0; i < back.width; ++i) {
      const int x = mirrored ? back.width - 1 - i : i;
      const int columns[] = {x, back.height - 1 - y, back.width - 1 - x, y};
      const int rows[] = {y, x, back.height - 1 - y, back.width - 1 - x};
      back.values.push_back(mask.at(columns[quarters % 4], rows[quarters % 4], mask.width, mask.height));
    }
  }
  return back;
}

Mask maskOf(const Picture& picture) {
  Mask mask{picture.width, picture.height, nv21Of(picture, VLVK_FULL)};
  mask.values.resize(static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height));  // luma only
  if (!picture.hasAlpha) return mask;
  const std::uint8_t* alpha = picture.pixels.get() + 3;
  for (std::uint8_t& value : mask.values) {
    value = static_cast<std::uint8_t>((value * *alpha + 127) / 255);
    alpha += 4;
  }
  return mask;
}

}  // namespace vlvk::tool
