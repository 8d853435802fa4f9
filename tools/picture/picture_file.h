/// Picture files: their kind, which the extension of a name states, and their bytes to pixels and back.
#ifndef VLVK_TOOLS_PICTURE_PICTURE_FILE_H
#define VLVK_TOOLS_PICTURE_PICTURE_FILE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tools/picture/picture.h"

namespace vlvk::tool {

/// Bytes of the largest file that is read.
inline constexpr std::size_t kMaxPictureFile = std::size_t{1} << 30;

/// Of a JPEG: no difference to the eye.
inline constexpr int kDefaultQuality = 92;

enum class PictureKind { kPng, kJpeg };

/// .png, .jpg or .jpeg in any case. Throws Error for other names.
PictureKind pictureKind(const std::string& path);

/// What the first bytes of a file show; nothing: no picture of these kinds.
std::optional<PictureKind> kindOfContent(std::span<const std::uint8_t> file);

/// "PNG" or "JPEG".
const char* nameOf(PictureKind kind);

/// The pixels of a file, upright. Throws Error, a bare reason, where its content is none or of another kind.
Picture decodePicture(PictureKind kind, std::span<const std::uint8_t> file);

/// The bytes of a file.
///
/// @param quality  1 to 100, JPEG only
std::vector<std::uint8_t> encodePicture(PictureKind kind, const Picture& picture, int quality = kDefaultQuality);

}  // namespace vlvk::tool

#endif
