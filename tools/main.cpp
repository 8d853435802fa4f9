/// The program vlvk-makeup: commands, command line, exit code.
///
/// Exit codes: 0 done, 1 the work failed, 2 the command line makes no sense.
#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "tools/error.h"
#include "tools/error_line.h"
#include "tools/photo.h"

namespace {

using vlvk::tool::Error;
using vlvk::tool::printError;

constexpr int kFailure = 1;
constexpr int kUsage = 2;

void addVersionFlag(CLI::App* program) {
  program->set_version_flag("--version", "vlvk-makeup " VLVK_VERSION, "Print the version and exit");
  for (CLI::App* command : program->get_subcommands({})) {
    command->set_version_flag("--version", "vlvk-makeup " VLVK_VERSION, "Print the version and exit");
  }
}

int printText(const std::string& text) {
  std::cout << text << std::flush;
  if (std::cout) return 0;
  printError("standard output cannot be written");
  return kFailure;
}

// "IN: " for a message that does not say by itself which of many files a batch was at.
std::string inputPrefix(const CLI::App& program) {
  for (const CLI::App* command : program.get_subcommands()) {
    const CLI::Option* input = command->get_option_no_throw("IN");
    if (input != nullptr && !input->results().empty()) return input->results().front() + ": ";
  }
  return "";
}

std::string usageReason(const CLI::App& program, const CLI::ParseError& error) {
  if (!program.get_subcommands().empty()) return inputPrefix(program) + error.what();
  const std::vector<std::string> words = program.remaining();
  return words.empty() ? "a command is required, see --help" : "there is no '" + words.front() + "', see --help";
}

int run(CLI::App* program, int argc, char** argv) {
  try {
    program->parse(argc, argv);
    return 0;
  } catch (const CLI::CallForHelp&) {
    return printText(program->help());
  } catch (const CLI::CallForVersion& version) {
    return printText(std::string(version.what()) + "\n");
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
    // A full disk quota is then an error of write() and the temporary file is removed.
    std::signal(SIGXFSZ, SIG_IGN);
    CLI::App program("Skin beautification for pictures.", "vlvk-makeup");
    program.require_subcommand(1);
    vlvk::tool::addPhotoCommand(&program);
    addVersionFlag(&program);
    return run(&program, argc, argv);
  } catch (const std::exception& error) {
    printError(error.what());
    return kFailure;
  }
}
