/// Picture files, their kind told by the extension of their name.
#ifndef VLVK_TOOLS_PICTURE_PICTURE_FILE_H
#define VLVK_TOOLS_PICTURE_PICTURE_FILE_H

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "tools/picture/picture.h"

namespace vlvk::tool {

/// Of a JPEG: no difference to the eye.
inline constexpr int kDefaultQuality = 92;

enum class PictureKind { kPng, kJpeg };

/// .png, .jpg or .jpeg in any case. Throws Error for other names.
PictureKind pictureKind(const std::string& path);

/// What the first bytes of a file tell; nothing: no picture of these kinds.
std::optional<PictureKind> kindOfContent(std::span<const std::uint8_t> file);

/// "PNG" or "JPEG".
const char* nameOf(PictureKind kind);

/// Reads a picture, upright. Throws Error, which names `path` as given.
Picture readPicture(const std::string& path);

/// Writes a picture; see writeFile.
///
/// @param quality  1 to 100, JPEG only
void writePicture(const std::string& path, const Picture& picture, int quality = kDefaultQuality);

}  // namespace vlvk::tool

#endif
