/// What the program throws when it cannot do its work, and how a reason of the system is worded.
#ifndef VLVK_TOOLS_IO_ERROR_H
#define VLVK_TOOLS_IO_ERROR_H

#include <stdexcept>
#include <string>
#include <system_error>

namespace vlvk::tool {

/// A failure whose text is meant for the user: "FILE: reason" once the file is known, the bare reason before.
class Error : public std::runtime_error {
 public:
  explicit Error(const std::string& reason) : std::runtime_error(reason) {}
  Error(const std::string& file, const std::string& reason) : std::runtime_error(file + ": " + reason) {}
};

/// The words for an `errno` value.
inline std::string systemReason(int code) {
  return std::generic_category().message(code);
}

}  // namespace vlvk::tool

#endif
