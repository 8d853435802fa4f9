/// JPEG pictures in memory to pixels and back.
#ifndef VLVK_TOOLS_PICTURE_JPEG_H
#define VLVK_TOOLS_PICTURE_JPEG_H

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "tools/picture/picture.h"

namespace vlvk::tool {

/// Reads grey, YCbCr, RGB, CMYK and YCCK JPEGs, baseline and progressive; the pixels are as stored, not yet upright.
/// CMYK is converted by the plain rule, without a colour profile. A picture with damaged or missing parts is refused,
/// not shown half grey. Throws Error with the reason alone.
Picture decodeJpeg(std::span<const std::uint8_t> file, Notes* notes = nullptr);

/// Writes YCbCr. Chroma has the full resolution unless the picture comes of a JPEG with less, and scans are progressive
/// if that one's were. Transparent parts are shown over white, as JPEG has no alpha. Equal pictures give equal bytes.
///
/// @param quality  1 to 100; without: that of the JPEG that the picture comes of, and at least kDefaultQuality
std::vector<std::uint8_t> encodeJpeg(const Picture& picture, std::optional<int> quality = {}, Notes* notes = nullptr);

}  // namespace vlvk::tool

#endif
