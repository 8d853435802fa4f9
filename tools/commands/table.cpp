/// The commands below `table`. A table is a picture of 512 x 512 pixels, as resource file for the engine, and as PNG or
/// colour cube for people and their editors.
#include "tools/commands/table.h"

#include <CLI/CLI.hpp>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "resource/color_picture.h"
#include "tools/io/error.h"
#include "tools/io/standard_output.h"
#include "tools/table/table_file.h"
#include "tools/table/table_formats.h"

namespace vlvk::tool {
namespace {

struct TableFiles {
  std::string in;
  std::string out;
  std::optional<TableLayout> inLayout;
  std::optional<TableLayout> outLayout;
};

void requireFormat(const std::string& path, TableFormat format, const char* reason) {
  if (tableFormat(path) != format) throw Error(path, reason);
}

// Other kinds of picture do not keep every colour as it is.
void requirePng(const std::string& path) {
  requireFormat(path, TableFormat::kPicture, "the name of the picture must end in .png");
}

// A layout that is stated for a file without one shows that another file was meant.
void requirePictureFor(const std::string& path, const std::optional<TableLayout>& layout) {
  if (layout) requireFormat(path, TableFormat::kPicture, "a layout is stated, but the name does not end in .png");
}

void convert(const TableFiles& files) {
  requireTableName(files.out);  // told before the work is done
  requirePictureFor(files.in, files.inLayout);
  requirePictureFor(files.out, files.outLayout);
  writeAnyTable(files.out, readAnyTable(files.in, files.inLayout), std::filesystem::path(files.in).stem().string(),
                files.outLayout.value_or(TableLayout::kLookup));
}

void pack(TableFiles files) {
  requirePng(files.in);
  requireFormat(files.out, TableFormat::kResource, "the name of the colour table must end in .vlk");
  files.inLayout = TableLayout::kLookup;
  convert(files);
}

void unpack(const TableFiles& files) {
  requirePng(files.out);
  convert(files);
}

void neutral(const TableFiles& files) {
  std::vector<std::uint8_t> table(kColorPictureSize);
  fillNeutralPicture(table.data());
  writeAnyTable(files.out, table, "neutral");
}

void check(const TableFiles& files) {
  printText(describe(files.in, readTable(files.in)));
}

// A command below `table`, with those of the files that it has a text for.
std::shared_ptr<TableFiles> addCommand(CLI::App* table, const char* name, const char* help, const char* in,
                                       const char* out, const std::function<void(const TableFiles&)>& run) {
  CLI::App* command = table->add_subcommand(name, help);
  auto files = std::make_shared<TableFiles>();
  if (in != nullptr) command->add_option("IN", files->in, in)->required()->type_name("FILE");
  if (out != nullptr) command->add_option("OUT", files->out, out)->required()->type_name("FILE");
  command->callback([files, run] { run(*files); });
  return files;
}

void addLayoutOption(CLI::App* command, const char* name, std::optional<TableLayout>* layout, const char* help) {
  const auto set = [=](const std::string& word) {
    if (word != "lookup" && word != "hald") throw CLI::ValidationError(name, "'" + word + "' is not lookup or hald");
    *layout = word == "hald" ? TableLayout::kHald : TableLayout::kLookup;
  };
  command->add_option_function<std::string>(name, set, help)->type_name("lookup|hald");
}

void addConvertCommand(CLI::App* table) {
  const auto files =
      addCommand(table, "convert", "Turn a colour table of one kind into another",
                 "Colour table to read: .vlk, .cube or .png", "File to write: .vlk, .cube or .png", convert);
  CLI::App* command = table->get_subcommand("convert");
  addLayoutOption(command, "--in-layout", &files->inLayout,
                  "Layout of a picture IN, needed where it has 512 x 512 pixels");
  addLayoutOption(command, "--out-layout", &files->outLayout, "Layout of a picture OUT, lookup without it");
  command->footer(
      "The engine reads .vlk. A .cube may have any size from 2 to 256, with or without curves for the channels.\n"
      "A HALD picture of level L has L^3 x L^3 pixels, L being 2 to 16. `table --help` draws the lookup picture.\n"
      "Between the colours of IN lie tetrahedra; OUT has 6 bits a channel in each of its kinds.\n"
      "On failure one line on standard error says why, and OUT is left as it was.");
}

}  // namespace

void addTableCommand(CLI::App* program) {
  CLI::App* table = program->add_subcommand("table", "Make, convert or check a colour table such as adjust.vlk");
  table->require_subcommand(1);
  addConvertCommand(table);
  addCommand(table, "pack", "Make a colour table from a picture", "Picture to read: .png, 512 x 512, not transparent",
             "Colour table to write: .vlk", pack);
  addCommand(table, "unpack", "Turn a colour table back into a picture", "Colour table to read",
             "Picture to write: .png", unpack);
  addCommand(table, "neutral", "Write the colour table that changes no colour", nullptr,
             "File to write: .vlk, .cube or .png (lookup picture)", neutral);
  addCommand(table, "check", "Tell what a colour table holds and whether the engine takes it whole",
             "Colour table to read", nullptr, check);
  table->footer(
      "A lookup picture has 8 x 8 tiles of 64 x 64 pixels, with a pixel for every colour at 6 bits a channel: the tile "
      "is\n"
      "its blue, the row in the tile its green, the column its red. The pixel's own colour is what is shown instead.\n"
      "Edit the neutral picture as you would a photo, without resizing it, and pack the result.\n"
      "On failure one line on standard error says why, and OUT is left as it was.");
}

}  // namespace vlvk::tool
