/// The options of `sheet`.
#include <memory>

#include "tools/io/messages.h"
#include "tools/options/command_options.h"

namespace vlvk::tool {
namespace {

// What fits together only as a whole.
void checkAxes(const SheetOptions& options, const Command& command) {
  if (options.columns.setting == options.rows.setting) {
    throw UsageError(std::string("--columns: rows and columns are both of ") + (options.rows.setting->option + 2) +
                     ", give other --rows");
  }
  for (const SheetAxis* axis : {&options.columns, &options.rows}) {
    if (!command.isGiven(axis->setting->option)) continue;
    throw UsageError(std::string(axis->setting->option) +
                     ": the sheet has several values of it; see --columns and --rows");
  }
}

}  // namespace

void addSheet(Command program, CommandLine* line) {
  const Command command = program.addCommand("sheet", "Show a picture under several settings, side by side");
  const auto options = std::make_shared<SheetOptions>();
  const auto addAxis = [command](const char* name, SheetAxis* axis, const std::string& help, const char* initial) {
    command.addValue(
        name, "SETTING=VALUE,VALUE,...", help, [=](const std::string& text) { *axis = readAxis(text); }, initial);
  };
  command.addFile("IN", &options->in, "Picture to read: .png, .jpg, .jpeg, .webp, .heic or .avif");
  command.addFile("OUT", &options->out, "Sheet to write: .png, .jpg, .jpeg or .webp");
  addAxis("--columns", &options->columns, "What changes from left to right: " + joined(axisNames(), ", "),
          kDefaultColumns);
  addAxis("--rows", &options->rows, "What changes from top to bottom, another of them", kDefaultRows);
  command.addNumber("--cell", &options->cell, kLeastCell, static_cast<int>(kMaxSide),
                    "Width of each picture on the sheet");
  command.addValue("--crop", "WxH+X+Y",
                   "Show this part of the picture, from X columns and Y rows off its upper left corner",
                   [options](const std::string& text) { options->crop = readRegion(text); });
  command.addFlag("--original", &options->original, "Begin each row with the picture as it was");
  addLook(command, &options->look);
  addTarget(command, line);
  command.addNotes(
      "The settings are applied to the whole picture at its own size, as by photo, and the results are scaled to the\n"
      "width of --cell. To see what the smoothing does, show a detail at its own size or larger, for example\n"
      "  vlvk-makeup sheet me.jpg sheet.png --rows soften=1000 --columns radius=0,8,auto,40 --crop 240x240+300+80\n"
      "What is no axis is set as for photo. A sheet has at most 32768 pixels on a side and 100 megapixels, and takes\n"
      "8 bytes of memory for each, beside what photo takes.\n"
      "On failure one line on standard error says why, and OUT is left as it was.");
  command.whenRead([=] {
    checkAxes(*options, command);
    line->command = *options;
  });
}

}  // namespace vlvk::tool
