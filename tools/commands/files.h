/// Whole files by name: the one place where paths, bytes and formats meet.
#ifndef VLVK_TOOLS_COMMANDS_FILES_H
#define VLVK_TOOLS_COMMANDS_FILES_H

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tools/options/options.h"
#include "tools/picture/picture.h"
#include "tools/table/table_io.h"

namespace vlvk::tool {

// All throw Error, which names `path` as given.

/// Throws for a name without the extension of a picture.
void requirePictureName(const std::string& path);

/// Reads a picture, upright.
Picture readPicture(const std::string& path);

/// Writes a picture; see writeFile.
///
/// @param quality  1 to 100, JPEG only
void writePicture(const std::string& path, const Picture& picture, int quality = kDefaultQuality);

/// Reads a colour table as the engine's picture; names without a known extension are those of resource files.
///
/// @param layout  of a picture; without: as the size has it
std::vector<std::uint8_t> readTable(const std::string& path, std::optional<TableLayout> layout = std::nullopt);

/// Reads a mask: a picture of any size, upright.
Mask readMask(const std::string& path);

/// The look that was asked for, its files read.
Look readLook(const LookOptions& options);

}  // namespace vlvk::tool

#endif
