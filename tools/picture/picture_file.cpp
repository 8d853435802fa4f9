/// See picture_file.h.
#include "tools/picture/picture_file.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "tools/io/messages.h"
#include "tools/picture/jpeg.h"
#include "tools/picture/png.h"

namespace vlvk::tool {

std::optional<PictureKind> kindOfContent(std::span<const std::uint8_t> file) {
  static constexpr std::uint8_t kPngStart[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  static constexpr std::uint8_t kJpegStart[] = {0xFF, 0xD8, 0xFF};
  const auto startsWith = [file](std::span<const std::uint8_t> start) {
    return file.size() >= start.size() && std::equal(start.begin(), start.end(), file.begin());
  };
  if (startsWith(kPngStart)) return PictureKind::kPng;
  if (startsWith(kJpegStart)) return PictureKind::kJpeg;
  return std::nullopt;
}

const char* nameOf(PictureKind kind) {
  return kind == PictureKind::kPng ? "PNG" : "JPEG";
}

PictureKind pictureKind(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (extension == ".png") return PictureKind::kPng;
  if (extension == ".jpg" || extension == ".jpeg") return PictureKind::kJpeg;
  throw Error("unknown kind of picture, the name must end in .png, .jpg or .jpeg");
}

Picture decodePicture(PictureKind kind, std::span<const std::uint8_t> file) {
  const std::optional<PictureKind> content = kindOfContent(file);
  if (content != kind) {
    std::string reason = std::string("not a ") + nameOf(kind) + " picture";
    if (content) reason += std::string(", it holds a ") + nameOf(*content);
    throw Error(reason);
  }
  return kind == PictureKind::kPng ? decodePng(file) : decodeJpeg(file);
}

std::vector<std::uint8_t> encodePicture(PictureKind kind, const Picture& picture, int quality) {
  return kind == PictureKind::kPng ? encodePng(picture) : encodeJpeg(picture, quality);
}

}  // namespace vlvk::tool
