/// The vector instructions that the engine works with.
#ifndef VLVK_TOOLS_OPTIONS_TARGET_H
#define VLVK_TOOLS_OPTIONS_TARGET_H

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace vlvk::tool {

/// Names of the sets of row loops that this processor runs, fastest first.
std::vector<std::string> targetNames();

/// Adds `--target NAME`, which puts that set in use before the command runs.
void addTargetOption(CLI::App* command);

}  // namespace vlvk::tool

#endif
