/// The commands of the program, each with its options and what --help says, in a file of its own. Each function adds
/// one command to `program`, and sets `line->command` when it was read.
#ifndef VLVK_TOOLS_OPTIONS_COMMAND_OPTIONS_H
#define VLVK_TOOLS_OPTIONS_COMMAND_OPTIONS_H

#include <string>
#include <utility>

#include "tools/io/messages.h"
#include "tools/options/command.h"
#include "tools/options/options.h"

namespace vlvk::tool {

/// Adds what decides how the result looks, to a command.
void addLook(Command command, LookOptions* options);

/// Adds the choice of the vector instructions, to a command or the program.
void addTarget(Command command, CommandLine* line);

/// Adds IN OUT, or IN... with --out-dir.
///
/// @param inHelp   says what is read
/// @param outHelp  and what is written
template <typename Options>
void addFiles(Command command, Several<Options>* files, const std::string& inHelp, const std::string& outHelp) {
  command.addFiles(&files->ins, inHelp, outHelp + "; not with --out-dir");
  command.addValue("--out-dir", "DIR", "Work on every IN, and write the results here, under the same names",
                   [=](const std::string& path) {
                     if (path.empty()) throw Error("a folder without a name");
                     files->outDir = path;
                   });
}

/// Sets `line->command` to what addFiles has read: work on one file, or on several.
template <typename Options>
void setCommand(Several<Options> files, CommandLine* line) {
  if (!files.outDir.empty()) {
    line->command = std::move(files);
    return;
  }
  if (files.ins.size() < 2) throw UsageError("OUT is required, or --out-dir");
  if (files.ins.size() > 2) throw UsageError(files.ins[2] + ": several files need --out-dir");
  files.each.in = files.ins[0];
  files.each.out = files.ins[1];
  line->command = std::move(files.each);
}

void addPhoto(Command program, CommandLine* line);
void addVideo(Command program, CommandLine* line);
void addSheet(Command program, CommandLine* line);
void addTable(Command program, CommandLine* line);
void addBench(Command program, CommandLine* line);

}  // namespace vlvk::tool

#endif
