/// The options of `photo`.
#include <memory>

#include "tools/options/command_options.h"

namespace vlvk::tool {

void addPhoto(Command program, CommandLine* line) {
  const Command command = program.addCommand("photo", "Beautify pictures (PNG, JPEG or WebP)");
  const auto options = std::make_shared<Several<PhotoOptions>>();
  addFiles(command, options.get(), "Picture to read: .png, .jpg, .jpeg, .webp, .heic or .avif",
           "Picture to write: .png, .jpg, .jpeg or .webp; may be IN");
  PhotoOptions* each = &options->each;
  addLook(command, &each->look);
  command.addFlag("--compare", &each->compare, "Write original (left) and result (right) side by side");
  command.addFlag("--show-weight", &each->showWeight,
                  "Write a heat map of what is taken for skin instead of the result");
  command.addValue("--quality", spelledRange(1, 100),
                   "Quality of a JPEG or WebP; without: that of IN, and at least 92; a WebP of a PNG has no loss",
                   [=](const std::string& text) { each->quality = readNumber(text, 1, 100); });
  addTarget(command, line);
  command.addNotes(
      "The heat map of --show-weight is black where nothing is smoothed, and over violet, red and orange pale yellow\n"
      "where the smoothing shows in full. Colour alone decides that, and --mask, which is multiplied in.\n"
      "The mask may have any size: it is stretched over the upright picture. It limits smoothing, evening of tone and\n"
      "the whitening of skin; whitening of all and --table reach the whole picture.\n"
      "Transparency is kept in PNG and WebP; a JPEG shows it over white. EXIF, XMP, IPTC, resolution and RGB colour\n"
      "profiles are carried over, and pictures that a camera took sideways are turned upright.\n"
      "At most 32768 pixels on a side and 268 megapixels are read, from files of at most 1 GiB. That takes up to 6 GB "
      "of memory, or 3.5 GB without --compare and for usual files;\n"
      "what a damaged file only claims to hold takes none.\n"
      "With --out-dir as many pictures are worked on at once as there are processors, or --threads, and as 4 GiB or\n"
      "half of the machine's memory hold. One that fails does not stop the others; in the end the exit status is 1.\n"
      "On failure one line on standard error says why, and OUT is left as it was.");
  command.whenRead([=] {
    if (command.isGiven("--threads")) options->atOnce = each->look.look.settings.threads;
    setCommand(*options, line);
  });
}

}  // namespace vlvk::tool
