/// See command.h.
#include "tools/options/command.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>

#include <vlvk/version.h>
#include "tools/io/messages.h"

namespace vlvk::tool {
namespace {

// What `read` throws about the value of an option, in the library's form: "NAME: reason".
template <typename Read>
void optionNamed(const char* name, const Read& read) {
  try {
    read();
  } catch (const Error& error) {
    throw CLI::ValidationError(name, error.what());
  }
}

// To the program and to every command in it.
void addVersionFlag(CLI::App* program) {
  program->set_version_flag("--version", "vlvk-makeup " VLVK_VERSION_STRING, "Print the version and exit");
  for (CLI::App* command : program->get_subcommands({}))
    addVersionFlag(command);
}

// The command that was named, in the last of the levels that the command line has.
const CLI::App& namedCommand(const CLI::App& program) {
  const std::vector<CLI::App*> commands = program.get_subcommands();
  return commands.empty() ? program : namedCommand(*commands.front());
}

bool isFile(const std::string& word) {
  return ::access(word.c_str(), F_OK) == 0;
}

std::string fileHint(const std::string& word) {
  return word + " is taken for an option; put -- before it if it is a file";
}

// One dash and several letters: no option of the program is like that.
bool looksLikeFile(std::string_view word) {
  return word.size() > 2 && word[0] == '-' && word[1] != '-';
}

std::string reasonOfWord(const std::string& word) {
  if (!word.starts_with('-')) return word + ": not expected here, see --help";
  if (looksLikeFile(word) || isFile(word)) return fileHint(word);
  return word + ": there is no such option, see --help";
}

// The library's sentence, in the program's words where these are plainer.
std::string plainReason(const CLI::ParseError& error) {
  std::string reason = error.what();
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) == nullptr) return reason;
  if (reason.ends_with("flag override")) return "--" + reason.substr(0, reason.find(' ')) + ": takes no value";
  const std::string option = reason.substr(0, reason.find(':'));
  return option + (reason.ends_with("missing") ? ": its value is missing" : ": given more than once");
}

std::string usageReason(const CLI::App& program, const CLI::ParseError& error) {
  const std::vector<std::string> words = program.remaining(true);
  const auto option = std::find_if(words.begin(), words.end(), [](const auto& word) { return word.starts_with('-'); });
  // Before what may be missing: a file with such a name.
  if (option != words.end()) return reasonOfWord(*option);
  if (namedCommand(program).get_require_subcommand_min() > 0) {
    return words.empty() ? "a command is required, see --help" : "there is no '" + words.front() + "', see --help";
  }
  const bool isExtra = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr && !words.empty();
  return isExtra ? reasonOfWord(words.front()) : plainReason(error);
}

// A name such as -house.jpg begins with the letter for help.
std::optional<std::string> fileTakenForHelp(int argc, const char* const* argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string_view word = argv[i];
    if (word == "-h" || word == "--help" || word == "--") return std::nullopt;
    if (word.starts_with("-h")) return std::string(word);
  }
  return std::nullopt;
}

}  // namespace

Command Command::addCommand(const char* name, const char* help) const {
  return Command(app_->add_subcommand(name, help));
}

void Command::requireCommand() const {
  app_->require_subcommand(1);
}

void Command::addFile(const char* name, std::string* path, const char* help) const {
  app_->add_option(name, *path, help)->required()->type_name("FILE");
}

// The first of them takes all.
void Command::addFiles(std::vector<std::string>* paths, const std::string& inHelp, const std::string& outHelp) const {
  app_->add_option("IN", *paths, inHelp)->required()->type_name("FILE");
  app_->add_option(
          "OUT", [](const CLI::results_t&) { return true; }, outHelp)
      ->type_name("FILE");
}

void Command::addValue(const char* name, const std::string& type, const std::string& help, const Reader& read,
                       const std::string& initial) const {
  const auto readNamed = [=](const std::string& text) { optionNamed(name, [&] { read(text); }); };
  app_->add_option_function<std::string>(name, readNamed, help)->type_name(type)->default_str(initial);
}

void Command::addValues(const char* name, const std::string& type, const std::string& help,
                        const std::function<void()>& begin, const Reader& read) const {
  const auto readAll = [=](const std::vector<std::string>& texts) {
    begin();
    for (const std::string& text : texts)
      optionNamed(name, [&] { read(text); });
  };
  app_->add_option_function<std::vector<std::string>>(name, readAll, help)->allow_extra_args(false)->type_name(type);
}

void Command::addPath(const char* name, std::string* path, const char* help) const {
  app_->add_option(name, *path, help)->type_name("FILE");
}

void Command::addFlag(const char* name, bool* flag, const char* help) const {
  app_->add_flag(name, *flag, help)->disable_flag_override();
}

void Command::needs(const char* name, const char* other) const {
  app_->get_option(name)->needs(app_->get_option(other));
}

void Command::addNotes(const std::string& text) const {
  app_->footer(text);
}

void Command::whenRead(const std::function<void()>& done) const {
  app_->callback(done);
}

bool Command::isGiven(const char* name) const {
  return app_->count(name) > 0;
}

std::optional<std::string> readCommandLine(int argc, const char* const* argv,
                                           const std::function<void(Command program)>& add) {
  CLI::App program("Skin beautification for pictures and video.", "vlvk-makeup");
  const Command whole(&program);
  whole.requireCommand();
  add(whole);
  addVersionFlag(&program);
  try {
    program.parse(argc, argv);
    return std::nullopt;
  } catch (const CLI::CallForHelp&) {
    if (const auto file = fileTakenForHelp(argc, argv)) throw UsageError(fileHint(*file));
    return program.help();
  } catch (const CLI::CallForVersion& version) {
    return std::string(version.what()) + "\n";
  } catch (const CLI::ParseError& error) {
    throw UsageError(usageReason(program, error));
  }
}

}  // namespace vlvk::tool
