/// The program vlvk-makeup: commands, command line, exit code.
///
/// Exit codes: 0 done, 1 the work failed, 2 the command line makes no sense. An interrupt ends the program by its
/// signal.
#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include <vlvk/version.h>
#include "tools/commands/bench.h"
#include "tools/commands/photo.h"
#include "tools/commands/sheet.h"
#include "tools/commands/table.h"
#include "tools/commands/video.h"
#include "tools/io/error.h"
#include "tools/io/error_line.h"
#include "tools/io/interrupt.h"
#include "tools/io/standard_output.h"
#include "tools/options/target.h"

namespace {

using vlvk::tool::Error;
using vlvk::tool::printError;
using vlvk::tool::printText;

constexpr int kFailure = 1;
constexpr int kUsage = 2;

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

// "IN: " for a message that does not say by itself which of many files a batch was at.
std::string inputPrefix(const CLI::App& program) {
  const CLI::Option* input = namedCommand(program).get_option_no_throw("IN");
  return input != nullptr && !input->results().empty() ? input->results().front() + ": " : "";
}

std::string usageReason(const CLI::App& program, const CLI::ParseError& error) {
  const CLI::App& command = namedCommand(program);
  if (command.get_require_subcommand_min() == 0) return inputPrefix(program) + error.what();
  const std::vector<std::string> words = command.remaining();
  return words.empty() ? "a command is required, see --help" : "there is no '" + words.front() + "', see --help";
}

int run(CLI::App* program, int argc, char** argv) {
  try {
    program->parse(argc, argv);
    return 0;
  } catch (const CLI::CallForHelp&) {
    printText(program->help());
    return 0;
  } catch (const CLI::CallForVersion& version) {
    printText(std::string(version.what()) + "\n");
    return 0;
  } catch (const CLI::ParseError& error) {
    printError(usageReason(*program, error));
    return kUsage;
  } catch (const Error& error) {
    printError(error.what());
  } catch (const std::bad_alloc&) {
    printError(inputPrefix(*program) + "not enough memory");
  }
  return kFailure;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    // A full disk quota and a closed pipe are then errors of write(), with a line and, of a file, nothing left.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    vlvk::tool::reportInterrupts();
    CLI::App program("Skin beautification for pictures and video.", "vlvk-makeup");
    program.require_subcommand(1);
    vlvk::tool::addTargetOption(&program);
    vlvk::tool::addPhotoCommand(&program);
    vlvk::tool::addVideoCommand(&program);
    vlvk::tool::addSheetCommand(&program);
    vlvk::tool::addTableCommand(&program);
    vlvk::tool::addBenchCommand(&program);
    addVersionFlag(&program);
    return run(&program, argc, argv);
  } catch (const std::exception& error) {
    printError(error.what());
    return kFailure;
  }
}
