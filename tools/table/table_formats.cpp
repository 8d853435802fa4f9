/// See table_formats.h.
#include "tools/table/table_formats.h"

#include <strings.h>

#include <string_view>

#include "tools/io/error.h"
#include "tools/io/output_file.h"
#include "tools/picture/picture_file.h"
#include "tools/table/cube_file.h"
#include "tools/table/table_file.h"

namespace vlvk::tool {
namespace {

bool endsWith(const std::string& path, std::string_view extension) {
  return path.size() > extension.size() &&
         strcasecmp(path.c_str() + path.size() - extension.size(), extension.data()) == 0;
}

std::vector<std::uint8_t> readTablePicture(const std::string& path, std::optional<TableLayout> layout) {
  const Picture picture = readPicture(path);
  try {
    return tableOfPicture(picture, layout);
  } catch (const Error& error) {
    throw Error(path, error.what());
  }
}

void writeText(const std::string& path, const std::string& text) {
  writeFile(path, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

}  // namespace

std::optional<TableFormat> tableFormat(const std::string& path) {
  if (endsWith(path, ".vlk")) return TableFormat::kResource;
  if (endsWith(path, ".cube")) return TableFormat::kCube;
  if (endsWith(path, ".png")) return TableFormat::kPicture;
  return std::nullopt;
}

std::vector<std::uint8_t> readAnyTable(const std::string& path, std::optional<TableLayout> layout) {
  const std::optional<TableFormat> format = tableFormat(path);
  if (format == TableFormat::kCube) return pictureOfCube(readCube(path));
  if (format == TableFormat::kPicture) return readTablePicture(path, layout);
  return readTable(path).picture;
}

void requireTableName(const std::string& path) {
  if (!tableFormat(path)) throw Error(path, "the name must end in .vlk, .cube or .png");
}

void writeAnyTable(const std::string& path, std::span<const std::uint8_t> picture, const std::string& title,
                   TableLayout layout) {
  requireTableName(path);
  switch (*tableFormat(path)) {
    case TableFormat::kResource:
      return writeTable(path, picture);
    case TableFormat::kCube:
      return writeText(path, formatCube(picture, title));
    case TableFormat::kPicture:
      return writePicture(path, pictureOfTable(picture, layout), 100);
  }
}

}  // namespace vlvk::tool
