/// See files.h.
#include "tools/commands/files.h"

#include <filesystem>

#include "tools/io/input_file.h"
#include "tools/io/messages.h"
#include "tools/io/output_file.h"
#include "tools/picture/picture_file.h"

namespace vlvk::tool {
namespace {

namespace fs = std::filesystem;

// What is no picture by its name fails when it is read.
bool isOnlyRead(const std::string& path) {
  try {
    return pictureKind(path) == PictureKind::kHeif;
  } catch (const Error&) {
    return false;
  }
}

}  // namespace

void requirePictureName(const std::string& path) {
  named(path, [&] { writtenKind(path); });
}

std::string resultName(const std::string& path) {
  fs::path name = fs::path(path).filename();
  if (isOnlyRead(path)) name.replace_extension(".jpg");
  return name.string();
}

Picture readPicture(const std::string& path) {
  return named(path, [&] {
    const PictureKind kind = pictureKind(path);
    Notes notes;
    Picture picture = decodePicture(kind, readFile(path, kMaxPictureFile), &notes);
    printNotes(path, notes);
    return picture;
  });
}

void writePicture(const std::string& path, const Picture& picture, std::optional<int> quality) {
  Notes notes;
  writeFile(path, named(path, [&] { return encodePicture(writtenKind(path), picture, quality, &notes); }));
  printNotes(path, notes);
}

void requirePictureFor(const std::string& path, const std::optional<TableLayout>& layout) {
  if (!layout || tableFormat(path) == TableFormat::kPicture) return;
  named(path, [] { throw Error("a layout is stated, but the name does not end in .png"); });
}

std::vector<std::uint8_t> readTable(const std::string& path, std::optional<TableLayout> layout) {
  requirePictureFor(path, layout);
  const TableFormat format = tableFormat(path).value_or(TableFormat::kResource);
  return named(path, [&] { return parseTable(format, readFile(path, maxTableFile(format)), layout); });
}

Mask readMask(const std::string& path) {
  const Picture picture = readPicture(path);
  return named(path, [&] { return maskOf(picture); });
}

Look readLook(const LookOptions& options) {
  Look look = options.look;
  if (options.table) look.table = readTable(*options.table, options.tableLayout);
  if (options.mask) look.mask = readMask(*options.mask);
  return look;
}

}  // namespace vlvk::tool
