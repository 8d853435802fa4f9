/// WebP pictures in memory to pixels and back.
#ifndef VLVK_TOOLS_PICTURE_WEBP_H
#define VLVK_TOOLS_PICTURE_WEBP_H

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "tools/picture/picture.h"

namespace vlvk::tool {

/// Reads lossy and lossless WebP, with or without transparency, but no animation; the pixels are as stored, not yet
/// upright. Throws Error with the reason alone.
Picture decodeWebp(std::span<const std::uint8_t> file, Notes* notes = nullptr);

/// Writes WebP with the transparency of the picture: without loss, unless a quality is asked for or the picture comes
/// of a file with loss. Equal pictures give equal bytes. Throws Error for a side of more than 16383 pixels.
///
/// @param quality  1 to 100; without: at least kDefaultQuality, or as the JPEG that the picture comes of
std::vector<std::uint8_t> encodeWebp(const Picture& picture, std::optional<int> quality = {}, Notes* notes = nullptr);

}  // namespace vlvk::tool

#endif
