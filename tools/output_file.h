/// Writing a file whole or not at all.
#ifndef VLVK_TOOLS_OUTPUT_FILE_H
#define VLVK_TOOLS_OUTPUT_FILE_H

#include <cstdint>
#include <span>
#include <string>

namespace vlvk::tool {

/// Writes `bytes` under a temporary name next to `path` and renames that over `path`. Until then an old file stays as
/// it is, and after a failure or an interrupt nothing new is left. A link is followed; an old file keeps its
/// permissions. Throws Error, which names `path` as given.
void writeFile(const std::string& path, std::span<const std::uint8_t> bytes);

}  // namespace vlvk::tool

#endif
