/// Options that take a number from a range.
#ifndef VLVK_TOOLS_OPTIONS_NUMBER_OPTION_H
#define VLVK_TOOLS_OPTIONS_NUMBER_OPTION_H

#include <CLI/App.hpp>
#include <string>
#include <string_view>

namespace vlvk::tool {

/// Reads a decimal number from `low` to `high` into `value`. Returns why `text` is none, or nothing.
template <typename Number>
std::string readNumber(std::string_view text, Number low, Number high, Number* value);

/// Adds an option for a decimal number from `low` to `high`, `int` or `double`. `value` holds the default and must
/// outlive the command.
template <typename Number>
void addNumberOption(CLI::App* command, const char* name, Number* value, Number low, Number high, const char* help);

}  // namespace vlvk::tool

#endif
