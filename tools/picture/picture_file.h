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

/// kHeif is HEIC and AVIF, and only read.
enum class PictureKind { kPng, kJpeg, kWebp, kHeif };

/// By the extension, in any case: .png; .jpg, .jpeg, .jpe, .jfif; .webp; .heic, .heif, .hif, .avif. Throws Error for
/// other names.
PictureKind pictureKind(const std::string& path);

/// The same of a file to be written. Throws Error for a kind that is only read, too.
PictureKind writtenKind(const std::string& path);

/// What the first bytes of a file show; nothing: no picture of these kinds.
std::optional<PictureKind> kindOfContent(std::span<const std::uint8_t> file);

/// "PNG", "JPEG", "WebP", "HEIC or AVIF".
const char* nameOf(PictureKind kind);

/// The pixels of a file, upright, and what else a result should keep of it. Throws Error, a bare reason, where its
/// content is none or of another kind, or damaged; damaged metadata is only dropped.
///
/// @param notes  gets what was dropped; null: not wanted
Picture decodePicture(PictureKind kind, std::span<const std::uint8_t> file, Notes* notes = nullptr);

/// The bytes of a file with the metadata, resolution and profile that the picture came with, made to fit it: upright,
/// of its size, without thumbnails.
///
/// @param quality  of lossy coding, 1 to 100, which it also asks for in a WebP; without: as the kinds of files have it
/// @param notes    gets what did not fit; null: not wanted
std::vector<std::uint8_t> encodePicture(PictureKind kind, const Picture& picture, std::optional<int> quality = {},
                                        Notes* notes = nullptr);

}  // namespace vlvk::tool

#endif
