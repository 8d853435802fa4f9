/// See lut_picture.h.
#include "tools/table/lut_picture.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "resource/color_picture.h"
#include "tools/io/messages.h"
#include "tools/table/color_cube.h"

namespace vlvk::tool {
namespace {

constexpr int kMaxHaldLevel = 16;  // 256 levels a channel, all that 8 bits have

// Between RGBA and the engine's order, either way.
void copyRedAndBlueExchanged(const std::uint8_t* from, std::uint8_t* to) {
  to[0] = from[2];
  to[1] = from[1];
  to[2] = from[0];
  to[3] = 255;
}

std::string sizeOf(const Picture& picture) {
  return std::to_string(picture.width) + " x " + std::to_string(picture.height);
}

// 0: the size is that of no HALD picture.
int haldLevel(const Picture& picture) {
  for (int level = 2; level <= kMaxHaldLevel; ++level) {
    const int side = level * level * level;
    if (picture.width == side && picture.height == side) return level;
  }
  return 0;
}

bool hasLookupSize(const Picture& picture) {
  return picture.width == kColorPictureSide && picture.height == kColorPictureSide;
}

TableLayout layoutBySize(const Picture& picture) {
  if (hasLookupSize(picture)) {
    throw Error(
        "512 x 512 pixels may be a lookup picture or a HALD picture of level 8: say which with --table-layout lookup "
        "or "
        "--table-layout hald (of `table convert`: --in-layout)");
  }
  if (haldLevel(picture) == 0) {
    throw Error(
        "a lookup picture has 512 x 512 pixels and a HALD picture 64 x 64, 512 x 512, 1728 x 1728 or the like, "
        "this one " +
        sizeOf(picture));
  }
  return TableLayout::kHald;
}

void refuseTransparency(const Picture& picture) {
  if (!picture.hasAlpha) return;
  const std::uint8_t* pixels = picture.row(0);
  const std::size_t bytes = picture.rowBytes() * static_cast<std::size_t>(picture.height);
  for (std::size_t i = 3; i < bytes; i += 4) {
    if (pixels[i] != 255) throw Error("a colour table has no transparent pixels");
  }
}

std::vector<std::uint8_t> tableOfLookup(const Picture& picture) {
  if (!hasLookupSize(picture)) throw Error("a lookup picture has 512 x 512 pixels, this one " + sizeOf(picture));
  refuseTransparency(picture);
  std::vector<std::uint8_t> table(kColorPictureSize);
  for (std::size_t i = 0; i < kColorPictureSize; i += 4)
    copyRedAndBlueExchanged(picture.row(0) + i, table.data() + i);
  return table;
}

// Pixels follow each other in the order of a cube's nodes.
std::vector<std::uint8_t> tableOfHald(const Picture& picture) {
  const int level = haldLevel(picture);
  if (level == 0) {
    throw Error("a HALD picture of level L has L^3 x L^3 pixels, L being 2 to 16, this one " + sizeOf(picture));
  }
  refuseTransparency(picture);
  const std::uint8_t* pixels = picture.row(0);
  const auto count = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
  ColorCube cube;
  cube.nodes.size = level * level;
  cube.nodes.values.reserve(count * 3);
  for (std::size_t i = 0; i < count * 4; i += 4) {
    for (std::size_t c = 0; c < 3; ++c)
      cube.nodes.values.push_back(static_cast<float>(pixels[i + c]) / 255);
  }
  return pictureOfCube(cube);
}

}  // namespace

std::vector<std::uint8_t> tableOfPicture(const Picture& picture, std::optional<TableLayout> layout) {
  const TableLayout known = layout ? *layout : layoutBySize(picture);
  return known == TableLayout::kLookup ? tableOfLookup(picture) : tableOfHald(picture);
}

Picture pictureOfTable(std::span<const std::uint8_t> table, TableLayout layout) {
  Picture picture(kColorPictureSide, kColorPictureSide);
  for (int i = 0; i < kTableColors; ++i) {
    const auto pixel = static_cast<std::size_t>(i) * 4;
    copyRedAndBlueExchanged(table.data() + (layout == TableLayout::kLookup ? pixel : pictureOffset(i)),
                            picture.row(0) + pixel);
  }
  return picture;
}

}  // namespace vlvk::tool
