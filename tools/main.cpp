/// The program vlvk-makeup: command line, command, exit code.
///
/// Exit codes: 0 done, 1 the work failed, 2 the command line makes no sense. An interrupt ends the program by its
/// signal.
#include <csignal>
#include <exception>
#include <new>
#include <string>
#include <variant>

#include "tools/commands/commands.h"
#include "tools/engine/engine.h"
#include "tools/io/interrupt.h"
#include "tools/io/messages.h"
#include "tools/options/options.h"

namespace {

using vlvk::tool::CommandLine;
using vlvk::tool::printError;

constexpr int kFailure = 1;
constexpr int kUsage = 2;

// "IN: " for a message that does not say by itself what the program was at.
std::string inputPrefix(const CommandLine& line) {
  return std::visit(
      [](const auto& options) -> std::string {
        if constexpr (requires { options.in; }) {
          if (!options.in.empty()) return options.in + ": ";
        }
        return "";
      },
      line.command);
}

int run(int argc, char** argv) {
  CommandLine line;
  try {
    vlvk::tool::parseCommandLine(argc, argv, &line);
    if (!line.target.empty()) vlvk::tool::useTarget(line.target);
    std::visit([](const auto& options) { vlvk::tool::run(options); }, line.command);
    return 0;
  } catch (const vlvk::tool::UsageError& error) {
    printError(error.what());
    return kUsage;
  } catch (const vlvk::tool::ReportedFailure&) {
    return kFailure;
  } catch (const vlvk::tool::Error& error) {
    printError(error.what());
  } catch (const std::bad_alloc&) {
    printError(inputPrefix(line) + "not enough memory");
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
    return run(argc, argv);
  } catch (const std::exception& error) {
    printError(error.what());
    return kFailure;
  }
}
