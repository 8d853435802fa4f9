/// The command `table`: making, converting and checking colour tables.
#ifndef VLVK_TOOLS_COMMANDS_TABLE_H
#define VLVK_TOOLS_COMMANDS_TABLE_H

#include <CLI/App.hpp>

namespace vlvk::tool {

/// Adds the command, with commands of its own, to the program. It runs, and throws Error, while the command line is
/// parsed.
void addTableCommand(CLI::App* program);

}  // namespace vlvk::tool

#endif
