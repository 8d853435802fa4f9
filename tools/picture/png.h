/// PNG pictures in memory to pixels and back.
#ifndef VLVK_TOOLS_PICTURE_PNG_H
#define VLVK_TOOLS_PICTURE_PNG_H

#include <cstdint>
#include <span>
#include <vector>

#include "tools/picture/picture.h"

namespace vlvk::tool {

/// Reads every kind of PNG: grey, palette and true colour, 1 to 16 bits (16 are rounded to 8), interlaced, with or
/// without transparency; the pixels are as stored, not yet upright. Throws Error with the reason alone.
Picture decodePng(std::span<const std::uint8_t> file, Notes* notes = nullptr);

/// Writes 8-bit RGB, or RGBA if the picture has alpha. Equal pictures give equal bytes.
std::vector<std::uint8_t> encodePng(const Picture& picture, Notes* notes = nullptr);

}  // namespace vlvk::tool

#endif
