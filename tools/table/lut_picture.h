/// Colour tables as pictures that a person can edit.
#ifndef VLVK_TOOLS_TABLE_LUT_PICTURE_H
#define VLVK_TOOLS_TABLE_LUT_PICTURE_H

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "tools/picture/picture.h"

namespace vlvk::tool {

/// Where in a picture a colour stands.
enum class TableLayout {
  kLookup,  ///< as in the engine's own picture, see resource/color_picture.h
  kHald,    ///< level L: L^3 x L^3 pixels for L^2 levels a channel, pixel after pixel, red fastest and blue slowest
};

/// The engine's picture for one of either layout.
///
/// @param layout  without: as the size has it. 512 x 512 pixels are the size of both and then refused.
///
/// Throws Error with the reason alone where size or transparency do not suit.
std::vector<std::uint8_t> tableOfPicture(const Picture& picture, std::optional<TableLayout> layout);

/// The engine's picture in either layout, without loss; as HALD of level 8.
Picture pictureOfTable(std::span<const std::uint8_t> table, TableLayout layout);

}  // namespace vlvk::tool

#endif
