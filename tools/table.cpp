/// The commands below `table`. A table is a picture of 512 x 512 pixels, as PNG for people and as resource file for the
/// engine.
#include "tools/table.h"

#include <strings.h>

#include <CLI/CLI.hpp>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "filter/color_picture.h"
#include "tools/error.h"
#include "tools/picture.h"
#include "tools/picture_file.h"
#include "tools/standard_output.h"
#include "tools/table_file.h"

namespace vlvk::tool {
namespace {

struct TableFiles {
  std::string in;
  std::string out;
};

bool endsWith(const std::string& path, std::string_view extension) {
  return path.size() > extension.size() &&
         strcasecmp(path.c_str() + path.size() - extension.size(), extension.data()) == 0;
}

// Other kinds of picture do not keep every colour as it is.
void requirePng(const std::string& path) {
  if (!endsWith(path, ".png")) throw Error(path, "the name of the picture must end in .png");
}

// Between RGBA and the engine's order, either way.
void copyRedAndBlueExchanged(const std::uint8_t* from, std::uint8_t* to) {
  for (std::size_t i = 0; i < kColorPictureSize; i += 4) {
    to[i] = from[i + 2];
    to[i + 1] = from[i + 1];
    to[i + 2] = from[i];
    to[i + 3] = 255;
  }
}

std::vector<std::uint8_t> tableOf(const Picture& picture) {
  if (picture.width != kColorPictureSide || picture.height != kColorPictureSide) {
    throw Error("a colour table has 512 x 512 pixels, the picture " + std::to_string(picture.width) + " x " +
                std::to_string(picture.height));
  }
  const std::uint8_t* pixels = picture.row(0);
  for (std::size_t i = 3; i < kColorPictureSize; i += 4) {
    if (pixels[i] != 255) throw Error("a colour table has no transparent pixels");
  }
  std::vector<std::uint8_t> table(kColorPictureSize);
  copyRedAndBlueExchanged(pixels, table.data());
  return table;
}

void writeAsPicture(const std::string& path, const std::vector<std::uint8_t>& table) {
  Picture picture(kColorPictureSide, kColorPictureSide);
  copyRedAndBlueExchanged(table.data(), picture.row(0));
  writePicture(path, picture, 100);
}

void pack(const TableFiles& files) {
  requirePng(files.in);
  if (!endsWith(files.out, ".vlk")) throw Error(files.out, "the name of the colour table must end in .vlk");
  const Picture picture = readPicture(files.in);
  std::vector<std::uint8_t> table;
  try {
    table = tableOf(picture);
  } catch (const Error& error) {
    throw Error(files.in, error.what());
  }
  writeTable(files.out, table);
}

void unpack(const TableFiles& files) {
  requirePng(files.out);
  writeAsPicture(files.out, readTable(files.in).picture);
}

void neutral(const TableFiles& files) {
  std::vector<std::uint8_t> table(kColorPictureSize);
  fillNeutralPicture(table.data());
  if (endsWith(files.out, ".vlk")) {
    writeTable(files.out, table);
  } else if (endsWith(files.out, ".png")) {
    writeAsPicture(files.out, table);
  } else {
    throw Error(files.out, "the name must end in .vlk or .png");
  }
}

void check(const TableFiles& files) {
  printText(describe(files.in, readTable(files.in)));
}

// A command below `table`, with those of the files that it has a text for.
void addCommand(CLI::App* table, const char* name, const char* help, const char* in, const char* out,
                const std::function<void(const TableFiles&)>& run) {
  CLI::App* command = table->add_subcommand(name, help);
  const auto files = std::make_shared<TableFiles>();
  if (in != nullptr) command->add_option("IN", files->in, in)->required()->type_name("FILE");
  if (out != nullptr) command->add_option("OUT", files->out, out)->required()->type_name("FILE");
  command->callback([files, run] { run(*files); });
}

}  // namespace

void addTableCommand(CLI::App* program) {
  CLI::App* table = program->add_subcommand("table", "Make, unpack or check a colour table such as adjust.vlk");
  table->require_subcommand(1);
  addCommand(table, "pack", "Make a colour table from a picture", "Picture to read: .png, 512 x 512, not transparent",
             "Colour table to write: .vlk", pack);
  addCommand(table, "unpack", "Turn a colour table back into a picture", "Colour table to read",
             "Picture to write: .png", unpack);
  addCommand(table, "neutral", "Write the colour table that changes no colour", nullptr,
             "File to write: a colour table (.vlk) or its picture (.png)", neutral);
  addCommand(table, "check", "Tell what a colour table holds and whether the engine takes it whole",
             "Colour table to read", nullptr, check);
  table->footer(
      "The picture has 8 x 8 tiles of 64 x 64 pixels, with a pixel for every colour at 6 bits a channel: the tile is\n"
      "its blue, the row in the tile its green, the column its red. The pixel's own colour is what is shown instead.\n"
      "Edit the neutral picture as you would a photo, without resizing it, and pack the result.\n"
      "On failure one line on standard error says why, and OUT is left as it was.");
}

}  // namespace vlvk::tool
