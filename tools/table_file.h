/// Colour tables in resource files.
#ifndef VLVK_TOOLS_TABLE_FILE_H
#define VLVK_TOOLS_TABLE_FILE_H

#include <cstdint>
#include <string>
#include <vector>

namespace vlvk::tool {

/// Reads the colour picture of a resource file such as "adjust.vlk": 512 x 512 pixels of 4 bytes, unscrambled. The
/// engine makes do with a short one; a person who names a file wants to know. Throws Error, which names `path` as
/// given.
std::vector<std::uint8_t> readTable(const std::string& path);

}  // namespace vlvk::tool

#endif
