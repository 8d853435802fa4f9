/// The commands of the program, each with its options and what --help says, and the reading of a command line. The
/// order is that of the help. No other file includes the library for this, which takes long to compile.
#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <vlvk/version.h>
#include "tools/io/messages.h"
#include "tools/options/options.h"

namespace vlvk::tool {
namespace {

void addFile(CLI::App* command, const char* name, std::string* path, const char* help) {
  command->add_option(name, *path, help)->required()->type_name("FILE");
}

// What `read` throws about the value of an option, in the library's form: "NAME: reason".
template <typename Read>
void optionNamed(const char* name, const Read& read) {
  try {
    read();
  } catch (const Error& error) {
    throw CLI::ValidationError(name, error.what());
  }
}

// An option with a value that `read` understands.
CLI::Option* addValue(CLI::App* command, const char* name, const std::string& type, const std::string& help,
                      const std::function<void(const std::string&)>& read) {
  const auto readNamed = [=](const std::string& text) { optionNamed(name, [&] { read(text); }); };
  return command->add_option_function<std::string>(name, readNamed, help)->type_name(type);
}

template <typename Number>
void addNumber(CLI::App* command, const char* name, Number* value, Number low, Number high, const char* help) {
  addValue(command, name, spelledRange(low, high), help, [=](const std::string& text) {
    *value = readNumber(text, low, high);
  })->default_str(spelled(*value));
}

void addLook(CLI::App* command, LookOptions* options) {
  for (const LookSetting& setting : kLookSettings) {
    std::int32_t* value = &(options->look.settings.*setting.value);
    addValue(command, setting.option, valuesOf(setting), setting.help, [&setting, value](const std::string& text) {
      *value = readSetting(setting, text);
    })->default_str(spelled(setting, *value));
  }
  addValue(command, "--mask", "FILE", "Grey picture of where to work: 0 leaves alone, 255 is as without; .png, .jpg",
           [=](const std::string& path) { options->mask = path; });
  addValue(command, "--table", "FILE", "Colour table to apply: .vlk, .cube or HALD .png",
           [=](const std::string& path) { options->table = path; });
  addNumber(command, "--threads", &options->look.settings.threads, 1, 64, "Threads to use; the result is the same");
}

void addTarget(CLI::App* command, CommandLine* line) {
  addValue(command, "--target", joined(targetNames(), "|"),
           "Vector instructions to use instead of the fastest; the result is the same",
           [=](const std::string& name) { line->target = readTarget(name); });
}

void addPhoto(CLI::App* program, CommandLine* line) {
  CLI::App* command = program->add_subcommand("photo", "Beautify a picture (PNG or JPEG)");
  const auto options = std::make_shared<PhotoOptions>();
  addFile(command, "IN", &options->in, "Picture to read: .png, .jpg or .jpeg");
  addFile(command, "OUT", &options->out, "Picture to write: .png, .jpg or .jpeg; may be IN");
  addLook(command, &options->look);
  command->add_flag("--compare", options->compare, "Write original (left) and result (right) side by side");
  command->add_flag("--show-weight", options->showWeight,
                    "Write a heat map of what is taken for skin instead of the result");
  addNumber(command, "--quality", &options->quality, 1, 100, "Quality of a JPEG");
  addTarget(command, line);
  command->footer(
      "The heat map of --show-weight is black where nothing is smoothed, and over violet, red and orange pale yellow\n"
      "where the smoothing shows in full. Colour alone decides that, and --mask, which is multiplied in.\n"
      "The mask may have any size: it is stretched over the upright picture. It limits smoothing, evening of tone and\n"
      "the whitening of skin; whitening of all and --table reach the whole picture.\n"
      "Transparency is kept in PNG; a JPEG shows it over white. RGB colour profiles are carried over, and pictures\n"
      "that a camera took sideways are turned upright. At most 32768 pixels on a side and 268 megapixels are read,\n"
      "from files of at most 1 GiB. That takes up to 6 GB of memory, or 3.5 GB without --compare and for usual files;\n"
      "what a damaged file only claims to hold takes none.\n"
      "On failure one line on standard error says why, and OUT is left as it was.");
  command->callback([=] { line->command = *options; });
}

void addRawFrames(CLI::App* command, std::optional<RawFrames>* raw) {
  const auto frames = [raw]() -> RawFrames& { return *raw ? **raw : raw->emplace(); };
  CLI::Option* format =
      addValue(command, "--format", "i420|nv12|nv21", "Frames without headers, of this layout; needs --size",
               [=](const std::string& text) { frames().layout = readFormat(text); });
  CLI::Option* size = addValue(command, "--size", "WxH", "Size of frames without headers",
                               [=](const std::string& text) { frames().size = readSize(text); });
  format->needs(size);
  size->needs(format);
}

void addVideo(CLI::App* program, CommandLine* line) {
  CLI::App* command = program->add_subcommand("video", "Beautify a video (Y4M, or frames without headers)");
  const auto options = std::make_shared<VideoOptions>();
  addFile(command, "IN", &options->in, "Stream to read, Y4M unless --format is given; -: standard input");
  addFile(command, "OUT", &options->out, "Stream to write, of the same format; may be IN; -: standard output");
  addRawFrames(command, &options->raw);
  addLook(command, &options->look);
  command->add_option("--checksum", options->checksums, "Write the CRC-32 of each frame here; -: standard output")
      ->type_name("FILE");
  command->add_option("--frametimes", options->times, "Write what each frame took here; -: standard output")
      ->type_name("FILE");
  command->add_flag("--quiet", options->quiet, "Show no progress, as without a terminal");
  addTarget(command, line);
  command->footer(
      "Frames are 8-bit 4:2:0, BT.601, limited range. Other files go through ffmpeg, with the sound kept:\n"
      "docs/video.md has the lines.\n"
      "--checksum writes \"NUMBER CRC\" for each frame and \"all CRC\"; --frametimes writes \"NUMBER FILTER WAIT\", "
      "in\n"
      "milliseconds: the engine's time, and how long it had to wait for reading and writing. Both write at the end.\n"
      "Of a stream that breaks off, the whole frames are written. On any other failure OUT is left as it was,\n"
      "unless it is a pipe or a device.");
  command->callback([=] { line->command = *options; });
}

// What fits together only as a whole.
void checkAxes(const SheetOptions& options, const CLI::App& command) {
  if (options.columns.setting == options.rows.setting) {
    throw CLI::ValidationError("--columns", std::string("rows and columns are both of ") +
                                                (options.rows.setting->option + 2) + ", give other --rows");
  }
  for (const SheetAxis* axis : {&options.columns, &options.rows}) {
    if (command.count(axis->setting->option) == 0) continue;
    throw CLI::ValidationError(axis->setting->option, "the sheet has several values of it; see --columns and --rows");
  }
}

void addSheet(CLI::App* program, CommandLine* line) {
  CLI::App* command = program->add_subcommand("sheet", "Show a picture under several settings, side by side");
  const auto options = std::make_shared<SheetOptions>();
  const auto addAxis = [command](const char* name, SheetAxis* axis, const std::string& help, const char* initial) {
    addValue(command, name, "SETTING=VALUE,VALUE,...", help, [=](const std::string& text) {
      *axis = readAxis(text);
    })->default_str(initial);
  };
  addFile(command, "IN", &options->in, "Picture to read: .png, .jpg or .jpeg");
  addFile(command, "OUT", &options->out, "Sheet to write: .png, .jpg or .jpeg");
  addAxis("--columns", &options->columns, "What changes from left to right: " + joined(axisNames(), ", "),
          kDefaultColumns);
  addAxis("--rows", &options->rows, "What changes from top to bottom, another of them", kDefaultRows);
  addNumber(command, "--cell", &options->cell, kLeastCell, static_cast<int>(kMaxSide),
            "Width of each picture on the sheet");
  addValue(command, "--crop", "WxH+X+Y",
           "Show this part of the picture, from X columns and Y rows off its upper left corner",
           [options](const std::string& text) { options->crop = readRegion(text); });
  command->add_flag("--original", options->original, "Begin each row with the picture as it was");
  addLook(command, &options->look);
  addTarget(command, line);
  command->footer(
      "The settings are applied to the whole picture at its own size, as by photo, and the results are scaled to the\n"
      "width of --cell. To see what the smoothing does, show a detail at its own size or larger, for example\n"
      "  vlvk-makeup sheet me.jpg sheet.png --rows soften=1000 --columns radius=0,8,auto,40 --crop 240x240+300+80\n"
      "What is no axis is set as for photo. A sheet has at most 32768 pixels on a side and 100 megapixels, and takes\n"
      "8 bytes of memory for each, beside what photo takes.\n"
      "On failure one line on standard error says why, and OUT is left as it was.");
  command->callback([=] {
    checkAxes(*options, *command);
    line->command = *options;
  });
}

// A command below `table`, with those of the files that it has a text for.
std::shared_ptr<TableOptions> addTableAction(CLI::App* command, TableOptions::Action action, const char* in,
                                             const char* out, CommandLine* line) {
  auto options = std::make_shared<TableOptions>(TableOptions{action, {}, {}, {}, {}});
  if (in != nullptr) addFile(command, "IN", &options->in, in);
  if (out != nullptr) addFile(command, "OUT", &options->out, out);
  command->callback([=] { line->command = *options; });
  return options;
}

void addConvert(CLI::App* table, CommandLine* line) {
  CLI::App* command = table->add_subcommand("convert", "Turn a colour table of one kind into another");
  const auto options = addTableAction(command, TableOptions::kConvert, "Colour table to read: .vlk, .cube or .png",
                                      "File to write: .vlk, .cube or .png", line);
  addValue(command, "--in-layout", "lookup|hald", "Layout of a picture IN, needed where it has 512 x 512 pixels",
           [=](const std::string& text) { options->inLayout = readLayout(text); });
  addValue(command, "--out-layout", "lookup|hald", "Layout of a picture OUT, lookup without it",
           [=](const std::string& text) { options->outLayout = readLayout(text); });
  command->footer(
      "The engine reads .vlk. A .cube may have any size from 2 to 256, with or without curves for the channels.\n"
      "A HALD picture of level L has L^3 x L^3 pixels, L being 2 to 16. `table --help` draws the lookup picture.\n"
      "Between the colours of IN lie tetrahedra; OUT has 6 bits a channel in each of its kinds.\n"
      "On failure one line on standard error says why, and OUT is left as it was.");
}

void addTable(CLI::App* program, CommandLine* line) {
  CLI::App* table = program->add_subcommand("table", "Make, convert or check a colour table such as adjust.vlk");
  table->require_subcommand(1);
  addConvert(table, line);
  addTableAction(table->add_subcommand("pack", "Make a colour table from a picture"), TableOptions::kPack,
                 "Picture to read: .png, 512 x 512, not transparent", "Colour table to write: .vlk", line);
  addTableAction(table->add_subcommand("unpack", "Turn a colour table back into a picture"), TableOptions::kUnpack,
                 "Colour table to read", "Picture to write: .png", line);
  addTableAction(table->add_subcommand("neutral", "Write the colour table that changes no colour"),
                 TableOptions::kNeutral, nullptr, "File to write: .vlk, .cube or .png (lookup picture)", line);
  addTableAction(table->add_subcommand("check", "Tell what a colour table holds and whether the engine takes it whole"),
                 TableOptions::kCheck, "Colour table to read", nullptr, line);
  table->footer(
      "A lookup picture has 8 x 8 tiles of 64 x 64 pixels, with a pixel for every colour at 6 bits a channel: the tile "
      "is\n"
      "its blue, the row in the tile its green, the column its red. The pixel's own colour is what is shown instead.\n"
      "Edit the neutral picture as you would a photo, without resizing it, and pack the result.\n"
      "On failure one line on standard error says why, and OUT is left as it was.");
}

void addBench(CLI::App* program, CommandLine* line) {
  CLI::App* command = program->add_subcommand("bench", "Measure how fast the engine is on this machine");
  const auto options = std::make_shared<BenchOptions>();
  const auto readSizes = [options](const std::vector<std::string>& texts) {
    options->sizes.clear();
    for (const std::string& text : texts)
      optionNamed("--size", [&] { options->sizes.push_back(readSize(text)); });
  };
  command
      ->add_option_function<std::vector<std::string>>(
          "--size", readSizes, "Size of the frames, may be given again; without it 720p, 1080p and 2160p")
      ->allow_extra_args(false)
      ->type_name("WxH");
  addNumber(command, "--seconds", &options->seconds, 0.001, 60.0, "Time for each row of the table");
  addNumber(command, "--threads", &options->threads, 1, 64, "Bands of a frame and threads for it");
  addTarget(command, line);
  command->footer(
      "There is a row for each size and each set of vector instructions that the processor has, fastest first: the "
      "one\n"
      "that is used without --target. The time is the median over the frames.");
  command->callback([=] {
    if (!line->target.empty()) options->targets = {line->target};
    line->command = *options;
  });
}

// To the program and to every command in it.
void addVersionFlag(CLI::App* program) {
  program->set_version_flag("--version", "vlvk-makeup " VLVK_VERSION_STRING, "Print the version and exit");
  for (CLI::App* command : program->get_subcommands({}))
    addVersionFlag(command);
}

// The command that was named, in the last of the levels that the command line has.
const CLI::App& namedCommand(const CLI::App& program) {
  const std::vector<CLI::App*> commands = program.get_subcommands();
  return commands.empty() ? program : namedCommand(*commands.front());
}

std::string inputOf(const CLI::App& program) {
  const CLI::Option* input = namedCommand(program).get_option_no_throw("IN");
  return input != nullptr && !input->results().empty() ? input->results().front() : "";
}

std::string usageReason(const CLI::App& program, const CLI::ParseError& error) {
  const CLI::App& command = namedCommand(program);
  if (command.get_require_subcommand_min() == 0) return error.what();
  const std::vector<std::string> words = command.remaining();
  return words.empty() ? "a command is required, see --help" : "there is no '" + words.front() + "', see --help";
}

}  // namespace

void parseCommandLine(int argc, const char* const* argv, CommandLine* line) {
  CLI::App program("Skin beautification for pictures and video.", "vlvk-makeup");
  program.require_subcommand(1);
  addTarget(&program, line);
  addPhoto(&program, line);
  addVideo(&program, line);
  addSheet(&program, line);
  addTable(&program, line);
  addBench(&program, line);
  addVersionFlag(&program);
  try {
    program.parse(argc, argv);
    line->in = inputOf(program);
  } catch (const CLI::CallForHelp&) {
    line->command = ShownText{program.help()};
  } catch (const CLI::CallForVersion& version) {
    line->command = ShownText{std::string(version.what()) + "\n"};
  } catch (const CLI::ParseError& error) {
    line->in = inputOf(program);
    throw UsageError(usageReason(program, error));
  }
}

}  // namespace vlvk::tool
