/// HEIC and AVIF pictures in memory to pixels.
#ifndef VLVK_TOOLS_PICTURE_HEIF_H
#define VLVK_TOOLS_PICTURE_HEIF_H

#include <cstdint>
#include <span>

#include "tools/picture/picture.h"

namespace vlvk::tool {

/// Reads the primary picture of a HEIF file, HEVC (HEIC) or AV1 (AVIF). The pixels are upright: the file's own rotation
/// and mirroring are applied, and its EXIF orientation says nothing. More than 8 bits are rounded to 8. HDR transfer
/// (PQ, HLG) is refused, as the result would be far too dark. Throws Error with the reason alone.
Picture decodeHeif(std::span<const std::uint8_t> file, Notes* notes = nullptr);

}  // namespace vlvk::tool

#endif
