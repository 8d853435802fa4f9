/// The commands below `table`. A table is a picture of 512 x 512 pixels, as resource file for the engine, and as PNG or
/// colour cube for people and their editors.
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

#include "tools/commands/commands.h"
#include "tools/commands/files.h"
#include "tools/io/input_file.h"
#include "tools/io/messages.h"
#include "tools/io/output_file.h"
#include "tools/table/color_cube.h"
#include "tools/table/table_io.h"

namespace vlvk::tool {
namespace {

void requireFormat(const std::string& path, TableFormat format, const char* reason) {
  named(path, [&] {
    if (tableFormat(path) != format) throw Error(reason);
  });
}

// Other kinds of picture do not keep every colour as it is.
void requirePng(const std::string& path) {
  requireFormat(path, TableFormat::kPicture, "the name of the picture must end in .png");
}

TableFormat formatToWrite(const std::string& path) {
  return named(path, [&] {
    const std::optional<TableFormat> format = tableFormat(path);
    if (!format) throw Error("the name must end in .vlk, .cube or .png");
    return *format;
  });
}

void write(const std::string& path, std::span<const std::uint8_t> table, const std::string& title,
           TableLayout layout = TableLayout::kLookup) {
  const TableFormat format = formatToWrite(path);
  writeFile(path, named(path, [&] { return formatTable(format, table, title, layout); }));
}

void convert(const TableOptions& options) {
  formatToWrite(options.out);  // before the work is done
  requirePictureFor(options.out, options.outLayout);
  write(options.out, readTable(options.in, options.inLayout), std::filesystem::path(options.in).stem().string(),
        options.outLayout.value_or(TableLayout::kLookup));
}

void pack(TableOptions options) {
  requirePng(options.in);
  requireFormat(options.out, TableFormat::kResource, "the name of the colour table must end in .vlk");
  options.inLayout = TableLayout::kLookup;
  convert(options);
}

void check(const std::string& path) {
  const VlkTable table = named(path, [&] { return parseResource(readFile(path, kMaxVlkFile)); });
  printText(oneLine(path) + ": " + describe(table));
}

}  // namespace

void run(const TableOptions& options) {
  switch (options.action) {
    case TableOptions::kConvert:
      return convert(options);
    case TableOptions::kPack:
      return pack(options);
    case TableOptions::kUnpack:
      requirePng(options.out);
      return convert(options);
    case TableOptions::kNeutral:
      return write(options.out, neutralTable(), "neutral");
    case TableOptions::kCheck:
      return check(options.in);
  }
}

}  // namespace vlvk::tool
