/// What the user reads: the reason of a failure, the line on standard error, results on standard output.
#ifndef VLVK_TOOLS_IO_MESSAGES_H
#define VLVK_TOOLS_IO_MESSAGES_H

#include <cstddef>
#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

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

/// The end of work on several files of which some failed; each has had its line.
class ReportedFailure : public std::exception {};

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

/// Writes "vlvk-makeup: text" and a line end, with which every failure of the program ends, to standard error; above
/// the status, if there is one. May be called on any thread.
void printError(std::string_view text);

/// Writes an error line "NAME: note" for each of `notes`, remarks on what a file loses.
void printNotes(const std::string& name, const std::vector<std::string>& notes);

/// Shows how far the program is, as the last line of a terminal on standard error, in the place of what it showed
/// before. Without a terminal, nothing. May be called on any thread.
void showStatus(const std::string& text);

/// Leaves the status where it is: what comes stands below.
void endStatus();

/// Writes `text` to standard output, and throws Error if it did not get there.
void printText(const std::string& text);

}  // namespace vlvk::tool

#endif
