/// Options and course of the command `photo`.
#include "tools/commands/photo.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <utility>

#include "tools/engine/beautify.h"
#include "tools/engine/weight_map.h"
#include "tools/io/error.h"
#include "tools/options/look.h"
#include "tools/options/look_options.h"
#include "tools/options/number_option.h"
#include "tools/options/target.h"
#include "tools/picture/picture_file.h"

namespace vlvk::tool {
namespace {

struct PhotoOptions {
  std::string in;
  std::string out;
  LookOptions look;
  int quality = kDefaultQuality;
  bool compare = false;
  bool showWeight = false;
};

Picture resultOf(const PhotoOptions& options) {
  const Picture original = readPicture(options.in);
  const Look look = options.look.look();
  try {
    Picture result = options.showWeight ? weightMap(original, look) : beautify(original, look);
    return options.compare ? sideBySide(original, result) : std::move(result);
  } catch (const Error& error) {
    throw Error(options.in, error.what());
  }
}

void runPhoto(const PhotoOptions& options) {
  pictureKind(options.out);  // a name that cannot be written is told before the work is done
  writePicture(options.out, resultOf(options), options.quality);
}

}  // namespace

void addPhotoCommand(CLI::App* program) {
  CLI::App* command = program->add_subcommand("photo", "Beautify a picture (PNG or JPEG)");
  const auto options = std::make_shared<PhotoOptions>();
  command->add_option("IN", options->in, "Picture to read: .png, .jpg or .jpeg")->required()->type_name("FILE");
  command->add_option("OUT", options->out, "Picture to write: .png, .jpg or .jpeg; may be IN")
      ->required()
      ->type_name("FILE");
  options->look.addTo(command);
  command->add_flag("--compare", options->compare, "Write original (left) and result (right) side by side");
  command->add_flag("--show-weight", options->showWeight,
                    "Write a heat map of what is taken for skin instead of the result");
  addNumberOption(command, "--quality", &options->quality, 1, 100, "Quality of a JPEG");
  addTargetOption(command);
  command->footer(
      "The heat map of --show-weight is black where nothing is smoothed, and over violet, red and orange pale yellow\n"
      "where the smoothing shows in full. Colour alone decides that; --whiten, --soften, --radius and --table do not.\n"
      "Transparency is kept in PNG; a JPEG shows it over white. RGB colour profiles are carried over, and pictures\n"
      "that a camera took sideways are turned upright. At most 32768 pixels on a side and 268 megapixels are read,\n"
      "from files of at most 1 GiB. That takes up to 6 GB of memory, or 3.5 GB without --compare and for usual files;\n"
      "what a damaged file only claims to hold takes none.\n"
      "On failure one line on standard error says why, and OUT is left as it was.");
  command->callback([options] { runPhoto(*options); });
}

}  // namespace vlvk::tool
