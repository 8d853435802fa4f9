/// The one line on standard error with which every failure of the program ends.
#ifndef VLVK_TOOLS_IO_ERROR_LINE_H
#define VLVK_TOOLS_IO_ERROR_LINE_H

#include <string>
#include <string_view>

namespace vlvk::tool {

/// `text` with everything escaped that could start a new line or steer a terminal. File names may hold any byte.
std::string oneLine(std::string_view text);

/// Writes "vlvk-makeup: text" and a line end to standard error.
void printError(std::string_view text);

}  // namespace vlvk::tool

#endif
