/// See picture_file.h.
#include "tools/picture/picture_file.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iterator>
#include <string_view>
#include <utility>

#include "tools/io/messages.h"
#ifdef VLVK_WITH_HEIF
#include "tools/picture/heif.h"
#endif
#include "tools/picture/jpeg.h"
#include "tools/picture/metadata.h"
#include "tools/picture/png.h"
#include "tools/picture/webp.h"

namespace vlvk::tool {
namespace {

using namespace std::string_view_literals;

struct Extension {
  std::string_view text;
  PictureKind kind;
};

constexpr Extension kExtensions[] = {{".png", PictureKind::kPng},   {".jpg", PictureKind::kJpeg},
                                     {".jpeg", PictureKind::kJpeg}, {".jpe", PictureKind::kJpeg},
                                     {".jfif", PictureKind::kJpeg}, {".webp", PictureKind::kWebp},
                                     {".heic", PictureKind::kHeif}, {".heif", PictureKind::kHeif},
                                     {".hif", PictureKind::kHeif},  {".avif", PictureKind::kHeif}};

// The brands of a HEIF file stand in its first box: size, "ftyp", the major brand, a version, the others.
bool isHeif(std::string_view file) {
  static constexpr std::string_view kBrands[] = {"heic", "heix", "heim", "heis", "mif1", "avif"};
  constexpr std::size_t kMajor = 8;
  if (file.size() < kMajor + 4 || file.substr(4, 4) != "ftyp") return false;
  return std::find(std::begin(kBrands), std::end(kBrands), file.substr(kMajor, 4)) != std::end(kBrands);
}

std::optional<PictureKind> kindOfName(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  const auto* found = std::find_if(std::begin(kExtensions), std::end(kExtensions),
                                   [&](const Extension& known) { return known.text == extension; });
  return found != std::end(kExtensions) ? std::optional(found->kind) : std::nullopt;
}

#ifndef VLVK_WITH_HEIF
Picture decodeHeif(std::span<const std::uint8_t> /*file*/, Notes* /*notes*/) {
  throw Error("HEIC and AVIF are not read, this program was built without libheif");
}
#endif

Picture decodeStored(PictureKind kind, std::span<const std::uint8_t> file, Notes* notes) {
  switch (kind) {
    case PictureKind::kPng:
      return decodePng(file, notes);
    case PictureKind::kJpeg:
      return decodeJpeg(file, notes);
    case PictureKind::kWebp:
      return decodeWebp(file, notes);
    default:
      return decodeHeif(file, notes);
  }
}

}  // namespace

std::optional<PictureKind> kindOfContent(std::span<const std::uint8_t> file) {
  const std::string_view content(reinterpret_cast<const char*>(file.data()), file.size());
  if (content.starts_with("\x89PNG\r\n\x1A\n"sv)) return PictureKind::kPng;
  if (content.starts_with("\xFF\xD8\xFF"sv)) return PictureKind::kJpeg;
  if (content.starts_with("RIFF"sv) && content.substr(0, 12).ends_with("WEBP"sv)) return PictureKind::kWebp;
  if (isHeif(content)) return PictureKind::kHeif;
  return std::nullopt;
}

const char* nameOf(PictureKind kind) {
  static constexpr const char* kNames[] = {"PNG", "JPEG", "WebP", "HEIC or AVIF"};
  return kNames[static_cast<int>(kind)];
}

PictureKind pictureKind(const std::string& path) {
  if (const auto kind = kindOfName(path)) return *kind;
  throw Error("unknown kind of picture, the name must end in .png, .jpg, .jpeg, .webp, .heic or .avif");
}

PictureKind writtenKind(const std::string& path) {
  const std::optional<PictureKind> kind = kindOfName(path);
  if (kind && kind != PictureKind::kHeif) return *kind;
  throw Error(std::string(kind ? "HEIC and AVIF are only read" : "unknown kind of picture") +
              ", the name of a result must end in .png, .jpg, .jpeg or .webp");
}

Picture decodePicture(PictureKind kind, std::span<const std::uint8_t> file, Notes* notes) {
  const std::optional<PictureKind> content = kindOfContent(file);
  if (content != kind) {
    std::string reason = std::string("not a ") + nameOf(kind) + " picture";
    if (content) reason += std::string(", it holds a ") + nameOf(*content);
    throw Error(reason);
  }
  Picture picture = decodeStored(kind, file, notes);
  const int orientation = readMetadata(&picture.origin, notes);
  return kind == PictureKind::kHeif ? std::move(picture) : upright(std::move(picture), orientation);
}

std::vector<std::uint8_t> encodePicture(PictureKind kind, const Picture& picture, std::optional<int> quality,
                                        Notes* notes) {
  switch (kind) {
    case PictureKind::kPng:
      return encodePng(picture, notes);
    case PictureKind::kJpeg:
      return encodeJpeg(picture, quality, notes);
    case PictureKind::kWebp:
      return encodeWebp(picture, quality, notes);
    default:
      throw Error("HEIC and AVIF are only read");
  }
}

}  // namespace vlvk::tool
