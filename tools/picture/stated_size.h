/// The size that a picture file states, read without its pixels.
#ifndef VLVK_TOOLS_PICTURE_STATED_SIZE_H
#define VLVK_TOOLS_PICTURE_STATED_SIZE_H

#include <cstdint>
#include <optional>
#include <string>

namespace vlvk::tool {

/// Pixels that the file claims to have, of HEIC and AVIF those of whole blocks. Nothing where its first megabyte does
/// not say so: another kind than PNG, JPEG or WebP, no regular file, or none at all.
std::optional<std::uint64_t> statedPixels(const std::string& path);

}  // namespace vlvk::tool

#endif
