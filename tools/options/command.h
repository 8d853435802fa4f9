/// A command of the program: the files and options that it takes, and what --help says. The library that reads command
/// lines is included by command.cpp alone, as it takes long to compile.
#ifndef VLVK_TOOLS_OPTIONS_COMMAND_H
#define VLVK_TOOLS_OPTIONS_COMMAND_H

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/options/values.h"

namespace CLI {
class App;
}

namespace vlvk::tool {

/// Refers to a command; copies refer to the same one. What is read goes where the pointers lead, which must live until
/// readCommandLine returns. The order of calls is that of the help.
class Command {
 public:
  /// Takes the value of an option. Throws Error, a bare reason, for a text that is none.
  using Reader = std::function<void(const std::string& text)>;

  explicit Command(CLI::App* app) : app_(app) {}

  /// A command below this one.
  Command addCommand(const char* name, const char* help) const;
  void requireCommand() const;

  /// A file that must be there.
  void addFile(const char* name, std::string* path, const char* help) const;

  /// Any number of files, IN and, as the help has it, OUT: the last of `paths` where it is one.
  void addFiles(std::vector<std::string>* paths, const std::string& inHelp, const std::string& outHelp) const;

  /// @param type     what the value is, in the help
  /// @param initial  the value without the option; empty: none
  void addValue(const char* name, const std::string& type, const std::string& help, const Reader& read,
                const std::string& initial = "") const;

  /// An option that may be given several times; `begin` is called before the first value.
  void addValues(const char* name, const std::string& type, const std::string& help, const std::function<void()>& begin,
                 const Reader& read) const;

  template <typename Number>
  void addNumber(const char* name, Number* value, Number low, Number high, const char* help) const {
    const auto read = [=](const std::string& text) { *value = readNumber(text, low, high); };
    addValue(name, spelledRange(low, high), help, read, spelled(*value));
  }

  void addPath(const char* name, std::string* path, const char* help) const;
  void addFlag(const char* name, bool* flag, const char* help) const;

  /// The option `name` makes sense with `other` only.
  void needs(const char* name, const char* other) const;

  /// What follows the options in the help.
  void addNotes(const std::string& text) const;

  /// Called when this command was read. Throws UsageError for what does not fit together.
  void whenRead(const std::function<void()>& done) const;

  bool isGiven(const char* name) const;

 private:
  CLI::App* app_;
};

/// Reads a command line.
///
/// @param add  adds the commands
/// @return the text that --help or --version asks for. Nothing: a command was read
/// Throws UsageError, which names the option or word first.
std::optional<std::string> readCommandLine(int argc, const char* const* argv,
                                           const std::function<void(Command program)>& add);

}  // namespace vlvk::tool

#endif
