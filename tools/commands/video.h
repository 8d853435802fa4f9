/// The command `video`: a stream of frames in, the beautified stream out.
#ifndef VLVK_TOOLS_COMMANDS_VIDEO_H
#define VLVK_TOOLS_COMMANDS_VIDEO_H

#include <CLI/App.hpp>

namespace vlvk::tool {

/// Adds the command to the program. It runs, and throws Error, while the command line is parsed.
void addVideoCommand(CLI::App* program);

}  // namespace vlvk::tool

#endif
