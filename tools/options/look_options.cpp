/// The options that commands share.
#include <cstdint>

#include "tools/options/command_options.h"

namespace vlvk::tool {

void addLook(Command command, LookOptions* options) {
  for (const LookSetting& setting : kLookSettings) {
    std::int32_t* value = &(options->look.settings.*setting.value);
    command.addValue(
        setting.option, valuesOf(setting), setting.help,
        [&setting, value](const std::string& text) { *value = readSetting(setting, text); }, spelled(setting, *value));
  }
  command.addValue("--mask", "FILE", "Grey picture of where skin is: 0 is no skin, 255 is as without a mask",
                   [=](const std::string& path) { options->mask = path; });
  command.addValue("--table", "FILE", "Colour table to apply: .vlk, .cube, or a HALD or lookup .png",
                   [=](const std::string& path) { options->table = path; });
  command.addValue("--table-layout", "lookup|hald", "Layout of a picture --table, needed where it has 512 x 512 pixels",
                   [=](const std::string& text) { options->tableLayout = readLayout(text); });
  command.needs("--table-layout", "--table");
  command.addNumber("--threads", &options->look.settings.threads, 1, 64, "Threads to use; the result is the same");
}

void addTarget(Command command, CommandLine* line) {
  command.addValue("--target", joined(targetNames(), "|"),
                   "Vector instructions to use instead of the fastest; the result is the same",
                   [=](const std::string& name) { line->target = readTarget(name); });
}

}  // namespace vlvk::tool
