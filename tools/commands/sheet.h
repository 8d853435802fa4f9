/// The command `sheet`: a picture under several settings, as one contact sheet.
#ifndef VLVK_TOOLS_COMMANDS_SHEET_H
#define VLVK_TOOLS_COMMANDS_SHEET_H

#include <CLI/App.hpp>

namespace vlvk::tool {

/// Adds the command to the program. It runs, and throws Error, while the command line is parsed.
void addSheetCommand(CLI::App* program);

}  // namespace vlvk::tool

#endif
