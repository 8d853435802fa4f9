/// JPEG pictures in memory to pixels and back.
#ifndef VLVK_TOOLS_PICTURE_JPEG_H
#define VLVK_TOOLS_PICTURE_JPEG_H

#include <cstdint>
#include <span>
#include <vector>

#include "tools/picture/picture.h"

namespace vlvk::tool {

/// Reads grey, YCbCr, RGB, CMYK and YCCK JPEGs, baseline and progressive. The result is upright. CMYK is converted by
/// the plain rule, without a colour profile. A picture with damaged or missing parts is refused, not shown half grey.
/// Throws Error with the reason alone.
Picture decodeJpeg(std::span<const std::uint8_t> file);

/// Writes YCbCr with chroma at full resolution. Transparent parts are shown over white, as JPEG has no alpha. Equal
/// pictures give equal bytes.
///
/// @param quality  1 to 100
std::vector<std::uint8_t> encodeJpeg(const Picture& picture, int quality);

}  // namespace vlvk::tool

#endif
