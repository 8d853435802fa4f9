/// The command `photo`: a picture file in, a beautified picture file out.
#ifndef VLVK_TOOLS_COMMANDS_PHOTO_H
#define VLVK_TOOLS_COMMANDS_PHOTO_H

#include <CLI/App.hpp>

namespace vlvk::tool {

/// Adds the command to the program. It runs, and throws Error, while the command line is parsed.
void addPhotoCommand(CLI::App* program);

}  // namespace vlvk::tool

#endif
