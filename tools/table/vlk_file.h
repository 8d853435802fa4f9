/// Colour tables in the resource files that the engine reads, such as "adjust.vlk".
#ifndef VLVK_TOOLS_TABLE_VLK_FILE_H
#define VLVK_TOOLS_TABLE_VLK_FILE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "resource/resource_file.h"

namespace vlvk::tool {

/// Bytes of the largest file that the program reads; the engine minds nothing after the payload.
inline constexpr std::size_t kMaxVlkFile = std::size_t{16} << 20;

/// A colour table that the engine takes whole, and the file it came from.
struct VlkTable {
  std::array<std::uint8_t, kResourceHeaderSize> header;
  std::size_t fileSize;
  std::vector<std::uint8_t> picture;  ///< 512 x 512 pixels of 4 bytes, blue first, unscrambled
};

/// False where the header is that of another kind of file.
bool isVlk(std::span<const std::uint8_t> file);

/// Reads a resource file. The engine makes do with one that is short or holds something else; a person who names a file
/// wants to know. Throws Error with header, sizes and what is wrong.
VlkTable parseVlk(std::span<const std::uint8_t> file);

/// Header, factors and sizes, some lines for a person.
std::string describe(const VlkTable& table);

/// A picture of 512 x 512 pixels of 4 bytes, blue first, as a resource file.
std::vector<std::uint8_t> formatVlk(std::span<const std::uint8_t> picture);

}  // namespace vlvk::tool

#endif
