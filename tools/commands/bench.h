/// The command `bench`: how fast the engine is on this machine.
#ifndef VLVK_TOOLS_COMMANDS_BENCH_H
#define VLVK_TOOLS_COMMANDS_BENCH_H

#include <CLI/App.hpp>

namespace vlvk::tool {

/// Adds the command to the program, which has `--target` already. It runs, and throws Error, while the command line is
/// parsed.
void addBenchCommand(CLI::App* program);

}  // namespace vlvk::tool

#endif
