/// Results that are shown instead of written to a file.
#ifndef VLVK_TOOLS_IO_STANDARD_OUTPUT_H
#define VLVK_TOOLS_IO_STANDARD_OUTPUT_H

#include <string>

namespace vlvk::tool {

/// Writes `text` to standard output, and throws Error if it did not get there.
void printText(const std::string& text);

}  // namespace vlvk::tool

#endif
