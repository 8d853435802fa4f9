/// See standard_output.h.
#include "tools/io/standard_output.h"

#include <cerrno>
#include <cstdio>

#include "tools/io/error.h"

namespace vlvk::tool {

void printText(const std::string& text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) < text.size() || std::fflush(stdout) != 0) {
    throw Error("standard output cannot be written: " + systemReason(errno));
  }
}

}  // namespace vlvk::tool
