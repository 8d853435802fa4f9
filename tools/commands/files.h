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

/// Throws for a name without the extension of a picture that can be written.
void requirePictureName(const std::string& path);

/// Name that the result for a picture gets in another folder: that of the picture, with .jpg in the place of the
/// extension of a kind that is only read.
std::string resultName(const std::string& path);

/// Reads a picture, upright. Prints what metadata it loses.
Picture readPicture(const std::string& path);

/// Writes a picture; see encodePicture, writeFile.
void writePicture(const std::string& path, const Picture& picture, std::optional<int> quality = {});

/// Throws where a layout is stated for a table that has none, being no picture: another file was meant.
void requirePictureFor(const std::string& path, const std::optional<TableLayout>& layout);

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
