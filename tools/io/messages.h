/// What the user reads: the reason of a failure, the line on standard error, results on standard output.
#ifndef VLVK_TOOLS_IO_MESSAGES_H
#define VLVK_TOOLS_IO_MESSAGES_H

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vlvk::tool {

/// A failure whose text is meant for the user. Where it is thrown it is the bare reason; named() puts the file before
/// it.
class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A command line that makes no sense.
class UsageError : public Error {
 public:
  using Error::Error;
};

/// Returns what `work` does. An Error that it throws, of whatever class, reads "NAME: reason" from here on.
///
/// @param name  of the file or the option that the work is about
template <typename Work>
decltype(auto) named(const std::string& name, const Work& work) {
  try {
    return work();
  } catch (Error& error) {
    static_cast<std::runtime_error&>(error) = std::runtime_error(name + ": " + error.what());
    throw;
  }
}

/// The words for an `errno` value.
std::string systemReason(int code);

/// `text` with everything escaped that could start a new line or steer a terminal. File names may hold any byte.
std::string oneLine(std::string_view text);

/// Of any text something short that can be shown: its first `longest` bytes, those beyond plain ASCII replaced.
std::string printable(std::string_view text, std::size_t longest);

/// Writes "vlvk-makeup: text" and a line end, with which every failure of the program ends, to standard error.
void printError(std::string_view text);

/// Writes `text` to standard output, and throws Error if it did not get there.
void printText(const std::string& text);

}  // namespace vlvk::tool

#endif
