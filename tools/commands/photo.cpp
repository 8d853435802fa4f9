/// The command `photo`, on one picture and on several.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "tools/commands/commands.h"
#include "tools/commands/files.h"
#include "tools/commands/memory_budget.h"
#include "tools/commands/several_files.h"
#include "tools/engine/beautify.h"
#include "tools/io/interrupt.h"
#include "tools/io/messages.h"
#include "tools/picture/frame_size.h"
#include "tools/picture/stated_size.h"

namespace vlvk::tool {
namespace {

bool isDirectory(const std::string& path) {
  std::error_code error;
  return std::filesystem::is_directory(path, error);
}

void beautifyFile(const FilePair& file, const PhotoOptions& options, const Look& look) {
  const Picture original = readPicture(file.in);
  failIfInterrupted();
  const Picture shown = named(file.in, [&] {
    Picture result = options.showWeight ? weightMap(original, look.mask) : beautify(original, look);
    return options.compare ? sideBySide(original, result) : std::move(result);
  });
  failIfInterrupted();
  writePicture(file.out, shown, options.quality);
}

// What is called otherwise than its picture is of another kind.
void tellNewKinds(const std::vector<FilePair>& files) {
  const auto isNew = [](const FilePair& file) {
    return std::filesystem::path(file.in).filename() != std::filesystem::path(file.out).filename();
  };
  const auto first = std::find_if(files.begin(), files.end(), isNew);
  if (first == files.end()) return;
  const auto more = std::count_if(first + 1, files.end(), isNew);
  printError(first->in + (more > 0 ? " and " + std::to_string(more) + " more are" : " is") +
             " of a kind that is only read, and written as JPEG: " + first->out);
}

// Decoded picture, engine, result and the files in memory, about. A picture of an unknown size may be the largest.
std::uint64_t memoryFor(const std::string& path, bool compare) {
  return std::min(statedPixels(path).value_or(kMaxPixels), kMaxPixels) * (compare ? 24 : 16);
}

}  // namespace

void run(const PhotoOptions& options) {
  // Before anything is read.
  if (isDirectory(options.out)) throw UsageError(options.out + ": a folder, which needs --out-dir");
  requirePictureName(options.out);
  beautifyFile({options.in, options.out}, options, readLook(options.look));
}

void run(const Several<PhotoOptions>& photos) {
  const std::vector<FilePair> files = resultsIn(photos.outDir, photos.ins, resultName);
  Look look = readLook(photos.each.look);
  makeDirectory(photos.outDir);
  tellNewKinds(files);
  const int wanted = photos.atOnce > 0 ? photos.atOnce : static_cast<int>(std::thread::hardware_concurrency());
  const int atOnce = std::clamp(wanted, 1, static_cast<int>(files.size()));
  if (atOnce > 1) look.settings.threads = 1;
  MemoryBudget budget;
  forEachFile(files, atOnce, FileProgress::kCount, [&](const FilePair& file) {
    const MemoryBudget::Share share(&budget, atOnce > 1 ? memoryFor(file.in, photos.each.compare) : 0);
    beautifyFile(file, photos.each, look);
  });
}

}  // namespace vlvk::tool
