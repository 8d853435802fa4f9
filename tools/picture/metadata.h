/// What a picture file says about its pixels: which way is up, and what the colours mean.
#ifndef VLVK_TOOLS_PICTURE_METADATA_H
#define VLVK_TOOLS_PICTURE_METADATA_H

#include <cstdint>
#include <span>

namespace vlvk::tool {

/// The orientation that cameras note in EXIF data instead of turning the pixels.
///
/// @param tiff  EXIF data from its byte order mark ("II" or "MM") on; may be damaged in any way
/// @return 1 to 8; 1, upright, where there is no usable entry
int exifOrientation(std::span<const std::uint8_t> tiff);

/// Whether an ICC profile describes RGB. A grey or CMYK profile is wrong for the converted pixels.
bool isRgbProfile(std::span<const std::uint8_t> profile);

}  // namespace vlvk::tool

#endif
