/// See standard_output.h.
#include "tools/standard_output.h"

#include <iostream>

#include "tools/error.h"

namespace vlvk::tool {

void printText(const std::string& text) {
  std::cout << text << std::flush;
  if (!std::cout) throw Error("standard output cannot be written");
}

}  // namespace vlvk::tool
