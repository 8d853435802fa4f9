/// Work on several files: where the results go, and one run of the work for each.
#ifndef VLVK_TOOLS_COMMANDS_SEVERAL_FILES_H
#define VLVK_TOOLS_COMMANDS_SEVERAL_FILES_H

#include <functional>
#include <string>
#include <vector>

namespace vlvk::tool {

/// A file and where its result goes.
struct FilePair {
  std::string in;
  std::string out;
};

/// The results of `ins` in a folder.
///
/// @param nameOf  gives the name of a result there for a file
/// Throws UsageError where two results would be one file, names being compared byte by byte, or where a result would
/// replace one of `ins`.
std::vector<FilePair> resultsIn(const std::string& directory, const std::vector<std::string>& ins,
                                const std::function<std::string(const std::string& in)>& nameOf);

/// Makes a folder, and those above it, where there is none. Throws Error, which names it.
void makeDirectory(const std::string& path);

/// What a terminal shows meanwhile.
enum class FileProgress {
  kNone,
  kNames,  ///< a line for each file, below which the work shows its own progress
  kCount,  ///< how many are done, how fast, and the time left
};

/// Runs `work` for each of `files`, `atOnce` of them at the same time on threads. What it throws is a line on standard
/// error, and the others go on; throws ReportedFailure in the end where there was any.
///
/// With more than one at once an interrupt is held back until the work that runs has ended, which should look for it
/// with InterruptPause::isDue(); then no more is begun.
void forEachFile(const std::vector<FilePair>& files, int atOnce, FileProgress progress,
                 const std::function<void(const FilePair& file)>& work);

}  // namespace vlvk::tool

#endif
