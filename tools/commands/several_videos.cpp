/// The command `video` on several files, one after the other: a single one has work for all processors.
#include <filesystem>
#include <string>

#include "tools/commands/commands.h"
#include "tools/commands/several_files.h"
#include "tools/commands/video_steps.h"

namespace vlvk::tool {

void run(const Several<VideoOptions>& videos) {
  const auto sameName = [](const std::string& in) { return std::filesystem::path(in).filename().string(); };
  const std::vector<FilePair> files = resultsIn(videos.outDir, videos.ins, sameName);
  const auto optionsFor = [&](const FilePair& file) {
    VideoOptions options = videos.each;
    options.in = file.in;
    options.out = file.out;
    return options;
  };
  for (const FilePair& file : files)
    checkMedia(optionsFor(file));
  makeDirectory(videos.outDir);
  forEachFile(files, 1, videos.each.quiet ? FileProgress::kNone : FileProgress::kNames,
              [&](const FilePair& file) { run(optionsFor(file)); });
}

}  // namespace vlvk::tool
