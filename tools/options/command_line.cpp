/// The order of the commands in the help.
#include "tools/options/command_options.h"

namespace vlvk::tool {

void parseCommandLine(int argc, const char* const* argv, CommandLine* line) {
  const auto shown = readCommandLine(argc, argv, [line](Command program) {
    addTarget(program, line);
    addPhoto(program, line);
    addVideo(program, line);
    addSheet(program, line);
    addTable(program, line);
    addBench(program, line);
  });
  if (shown) line->command = ShownText{*shown};
}

}  // namespace vlvk::tool
