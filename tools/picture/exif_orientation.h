/// The orientation that cameras note in EXIF data instead of turning the pixels.
#ifndef VLVK_TOOLS_PICTURE_EXIF_ORIENTATION_H
#define VLVK_TOOLS_PICTURE_EXIF_ORIENTATION_H

#include <cstdint>
#include <span>

namespace vlvk::tool {

/// @param tiff  EXIF data from its byte order mark ("II" or "MM") on; may be damaged in any way
/// @return 1 to 8; 1, upright, where there is no usable entry
int exifOrientation(std::span<const std::uint8_t> tiff);

}  // namespace vlvk::tool

#endif
