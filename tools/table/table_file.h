/// Colour tables in resource files.
#ifndef VLVK_TOOLS_TABLE_TABLE_FILE_H
#define VLVK_TOOLS_TABLE_TABLE_FILE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "resource/resource_file.h"

namespace vlvk::tool {

/// A colour table that the engine takes whole, and the file it came from.
struct Table {
  std::array<std::uint8_t, kResourceHeaderSize> header;
  std::size_t fileSize;
  std::vector<std::uint8_t> picture;  ///< 512 x 512 pixels of 4 bytes, blue first, unscrambled
};

/// Reads a resource file such as "adjust.vlk". The engine makes do with one that is short or holds something else; a
/// person who names a file wants to know. Throws Error, which names `path` as given and tells header, sizes and what is
/// wrong.
Table readTable(const std::string& path);

/// Header, factors and sizes, some lines for a person.
std::string describe(const std::string& path, const Table& table);

/// Writes a picture of 512 x 512 pixels of 4 bytes, blue first, as a resource file; see writeFile.
void writeTable(const std::string& path, std::span<const std::uint8_t> picture);

}  // namespace vlvk::tool

#endif
