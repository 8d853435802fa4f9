/// Reading a file whole.
#ifndef VLVK_TOOLS_IO_INPUT_FILE_H
#define VLVK_TOOLS_IO_INPUT_FILE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vlvk::tool {

/// Throws Error, a bare reason, if the file cannot be read, is empty, or has more than `limit` bytes.
std::vector<std::uint8_t> readFile(const std::string& path, std::size_t limit);

}  // namespace vlvk::tool

#endif
