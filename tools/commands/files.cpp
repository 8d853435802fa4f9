/// See files.h.
#include "tools/commands/files.h"

#include "tools/io/input_file.h"
#include "tools/io/messages.h"
#include "tools/io/output_file.h"
#include "tools/picture/picture_file.h"

namespace vlvk::tool {

void requirePictureName(const std::string& path) {
  named(path, [&] { pictureKind(path); });
}

Picture readPicture(const std::string& path) {
  return named(path, [&] {
    const PictureKind kind = pictureKind(path);
    return decodePicture(kind, readFile(path, kMaxPictureFile));
  });
}

void writePicture(const std::string& path, const Picture& picture, int quality) {
  writeFile(path, named(path, [&] { return encodePicture(pictureKind(path), picture, quality); }));
}

std::vector<std::uint8_t> readTable(const std::string& path, std::optional<TableLayout> layout) {
  const TableFormat format = tableFormat(path).value_or(TableFormat::kResource);
  return named(path, [&] { return parseTable(format, readFile(path, maxTableFile(format)), layout); });
}

Mask readMask(const std::string& path) {
  const Picture picture = readPicture(path);
  return named(path, [&] { return maskOf(picture); });
}

Look readLook(const LookOptions& options) {
  Look look = options.look;
  if (options.table) look.table = readTable(*options.table);
  if (options.mask) look.mask = readMask(*options.mask);
  return look;
}

}  // namespace vlvk::tool
