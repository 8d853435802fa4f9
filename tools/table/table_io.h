/// Colour tables in every kind of file that the program reads and writes.
#ifndef VLVK_TOOLS_TABLE_TABLE_IO_H
#define VLVK_TOOLS_TABLE_TABLE_IO_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tools/table/lut_picture.h"
#include "tools/table/vlk_file.h"

namespace vlvk::tool {

enum class TableFormat {
  kResource,  ///< .vlk, what the engine reads
  kCube,      ///< .cube
  kPicture,   ///< .png
};

/// Stated by the extension of a name, in any case. Nothing: none of them.
std::optional<TableFormat> tableFormat(const std::string& path);

/// Bytes of the largest file that is read.
std::size_t maxTableFile(TableFormat format);

/// Reads a resource file; of another kind of file, the reason says what it is. Throws Error, a bare reason.
VlkTable parseResource(std::span<const std::uint8_t> file);

/// Reads a file of any format as the engine's picture. Throws Error, a bare reason.
///
/// @param layout  of a picture; without: as the size has it
std::vector<std::uint8_t> parseTable(TableFormat format, std::span<const std::uint8_t> file,
                                     std::optional<TableLayout> layout = std::nullopt);

/// The engine's picture as a file of any format.
///
/// @param title   for a cube
/// @param layout  of a picture
std::vector<std::uint8_t> formatTable(TableFormat format, std::span<const std::uint8_t> picture,
                                      const std::string& title, TableLayout layout = TableLayout::kLookup);

}  // namespace vlvk::tool

#endif
