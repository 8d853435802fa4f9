/// See table_io.h.
#include "tools/table/table_io.h"

#include <strings.h>

#include <string_view>

#include "tools/io/messages.h"
#include "tools/picture/picture_file.h"
#include "tools/table/cube_file.h"

namespace vlvk::tool {
namespace {

bool endsWith(const std::string& path, std::string_view extension) {
  return path.size() > extension.size() &&
         strcasecmp(path.c_str() + path.size() - extension.size(), extension.data()) == 0;
}

std::string whatElse(std::span<const std::uint8_t> file) {
  if (const auto picture = kindOfContent(file)) return std::string(" of the engine, it holds a ") + nameOf(*picture);
  if (isCubeText(file)) return " of the engine, it holds the text of a .cube file";
  return ", nor any other resource file of the engine";
}

std::vector<std::uint8_t> parseCubeTable(std::span<const std::uint8_t> file) {
  if (const auto picture = kindOfContent(file)) {
    throw Error(std::string("not a .cube text, it holds a ") + nameOf(*picture));
  }
  return pictureOfCube(parseCube(file));
}

}  // namespace

std::optional<TableFormat> tableFormat(const std::string& path) {
  if (endsWith(path, ".vlk")) return TableFormat::kResource;
  if (endsWith(path, ".cube")) return TableFormat::kCube;
  if (endsWith(path, ".png")) return TableFormat::kPicture;
  return std::nullopt;
}

std::size_t maxTableFile(TableFormat format) {
  if (format == TableFormat::kResource) return kMaxVlkFile;
  return format == TableFormat::kCube ? kMaxCubeFile : kMaxPictureFile;
}

VlkTable parseResource(std::span<const std::uint8_t> file) {
  if (!isVlk(file)) throw Error("not a colour table" + whatElse(file));
  return parseVlk(file);
}

std::vector<std::uint8_t> parseTable(TableFormat format, std::span<const std::uint8_t> file,
                                     std::optional<TableLayout> layout) {
  switch (format) {
    case TableFormat::kCube:
      return parseCubeTable(file);
    case TableFormat::kPicture:
      return tableOfPicture(decodePicture(PictureKind::kPng, file), layout);
    default:
      return parseResource(file).picture;
  }
}

std::vector<std::uint8_t> formatTable(TableFormat format, std::span<const std::uint8_t> picture,
                                      const std::string& title, TableLayout layout) {
  if (format == TableFormat::kResource) return formatVlk(picture);
  if (format == TableFormat::kPicture) return encodePicture(PictureKind::kPng, pictureOfTable(picture, layout), 100);
  const std::string text = formatCube(picture, title);
  return {text.begin(), text.end()};
}

}  // namespace vlvk::tool
