/// Colour tables in every kind of file that the program knows.
#ifndef VLVK_TOOLS_TABLE_TABLE_FORMATS_H
#define VLVK_TOOLS_TABLE_TABLE_FORMATS_H

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tools/table/table_picture.h"

namespace vlvk::tool {

enum class TableFormat {
  kResource,  ///< .vlk, what the engine reads
  kCube,      ///< .cube
  kPicture,   ///< .png
};

/// Told by the extension, in any case. Nothing: none of them.
std::optional<TableFormat> tableFormat(const std::string& path);

/// Reads a colour table as the engine's picture; names without a known extension are those of resource files. Throws
/// Error, which names `path` as given.
///
/// @param layout  of a picture; without: told by its size
std::vector<std::uint8_t> readAnyTable(const std::string& path, std::optional<TableLayout> layout = std::nullopt);

/// Throws Error for a name that tells no format to write.
void requireTableName(const std::string& path);

/// Writes the engine's picture in the format that the name tells; see writeFile.
///
/// @param title   for a cube
/// @param layout  of a picture
void writeAnyTable(const std::string& path, std::span<const std::uint8_t> picture, const std::string& title,
                   TableLayout layout = TableLayout::kLookup);

}  // namespace vlvk::tool

#endif
