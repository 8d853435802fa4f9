/// From a file name to a decoder, and back from pixels to a file.
#include "tools/picture/picture_file.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <vector>

#include "tools/io/error.h"
#include "tools/io/input_file.h"
#include "tools/io/output_file.h"
#include "tools/picture/jpeg_file.h"
#include "tools/picture/png_file.h"

namespace vlvk::tool {
namespace {

constexpr std::size_t kMaxFileSize = std::size_t{1} << 30;

Picture decode(PictureKind kind, std::span<const std::uint8_t> file) {
  const std::optional<PictureKind> content = kindOfContent(file);
  if (content != kind) {
    std::string reason = std::string("not a ") + nameOf(kind) + " picture";
    if (content) reason += std::string(", it holds a ") + nameOf(*content);
    throw Error(reason);
  }
  return kind == PictureKind::kPng ? decodePng(file) : decodeJpeg(file);
}

}  // namespace

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
  throw Error(path, "unknown kind of picture, the name must end in .png, .jpg or .jpeg");
}

Picture readPicture(const std::string& path) {
  const PictureKind kind = pictureKind(path);
  const std::vector<std::uint8_t> file = readFile(path, kMaxFileSize);
  try {
    return decode(kind, file);
  } catch (const Error& error) {
    throw Error(path, error.what());
  }
}

void writePicture(const std::string& path, const Picture& picture, int quality) {
  const bool png = pictureKind(path) == PictureKind::kPng;
  std::vector<std::uint8_t> file;
  try {
    file = png ? encodePng(picture) : encodeJpeg(picture, quality);
  } catch (const Error& error) {
    throw Error(path, error.what());
  }
  writeFile(path, file);
}

}  // namespace vlvk::tool
