/// The options of `table` and the commands below it.
#include <memory>

#include "tools/options/command_options.h"

namespace vlvk::tool {
namespace {

// A command below `table`, with those of the files that it has a text for.
std::shared_ptr<TableOptions> addTableAction(Command command, TableOptions::Action action, const char* in,
                                             const char* out, CommandLine* line) {
  auto options = std::make_shared<TableOptions>(TableOptions{action, {}, {}, {}, {}});
  if (in != nullptr) command.addFile("IN", &options->in, in);
  if (out != nullptr) command.addFile("OUT", &options->out, out);
  command.whenRead([=] { line->command = *options; });
  return options;
}

void addConvert(Command table, CommandLine* line) {
  const Command command = table.addCommand("convert", "Turn a colour table of one kind into another");
  const auto options = addTableAction(command, TableOptions::kConvert, "Colour table to read: .vlk, .cube or .png",
                                      "File to write: .vlk, .cube or .png", line);
  command.addValue("--in-layout", "lookup|hald", "Layout of a picture IN, needed where it has 512 x 512 pixels",
                   [=](const std::string& text) { options->inLayout = readLayout(text); });
  command.addValue("--out-layout", "lookup|hald", "Layout of a picture OUT, lookup without it",
                   [=](const std::string& text) { options->outLayout = readLayout(text); });
  command.addNotes(
      "The engine reads .vlk. A .cube may have any size from 2 to 256, with or without curves for the channels.\n"
      "A HALD picture of level L has L^3 x L^3 pixels, L being 2 to 16. `table --help` draws the lookup picture.\n"
      "Between the colours of IN lie tetrahedra; OUT has 6 bits a channel in each of its kinds.\n"
      "On failure one line on standard error says why, and OUT is left as it was.");
}

}  // namespace

void addTable(Command program, CommandLine* line) {
  const Command table = program.addCommand("table", "Make, convert or check a colour table such as adjust.vlk");
  table.requireCommand();
  addConvert(table, line);
  addTableAction(table.addCommand("pack", "Make a colour table from a picture"), TableOptions::kPack,
                 "Picture to read: .png, 512 x 512, not transparent", "Colour table to write: .vlk", line);
  addTableAction(table.addCommand("unpack", "Turn a colour table back into a picture"), TableOptions::kUnpack,
                 "Colour table to read", "Picture to write: .png", line);
  addTableAction(table.addCommand("neutral", "Write the colour table that changes no colour"), TableOptions::kNeutral,
                 nullptr, "File to write: .vlk, .cube or .png (lookup picture)", line);
  addTableAction(table.addCommand("check", "Tell what a colour table holds and whether the engine takes it whole"),
                 TableOptions::kCheck, "Colour table to read", nullptr, line);
  table.addNotes(
      "A lookup picture has 8 x 8 tiles of 64 x 64 pixels, with a pixel for every colour at 6 bits a channel: the tile "
      "is\n"
      "its blue, the row in the tile its green, the column its red. The pixel's own colour is what is shown instead.\n"
      "Edit the neutral picture as you would a photo, without resizing it, and pack the result.\n"
      "On failure one line on standard error says why, and OUT is left as it was.");
}

}  // namespace vlvk::tool
