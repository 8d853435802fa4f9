/// The commands of the program. Each does what its options say; all throw Error, which names the file.
#ifndef VLVK_TOOLS_COMMANDS_COMMANDS_H
#define VLVK_TOOLS_COMMANDS_COMMANDS_H

#include "tools/io/messages.h"
#include "tools/options/options.h"

namespace vlvk::tool {

/// A picture file in, a beautified picture file out.
void run(const PhotoOptions& options);

/// Pictures in, beautified ones of their names in a folder. All that can be is done; throws UsageError before anything
/// is where results would be in one place or in that of a picture, and ReportedFailure in the end where one failed.
void run(const Several<PhotoOptions>& photos);

/// A stream of frames in, the beautified stream out. Throws UsageError where two results would be in one place.
void run(const VideoOptions& options);

/// The same for videos.
void run(const Several<VideoOptions>& videos);

/// A picture under several settings, side by side on one sheet.
void run(const SheetOptions& options);

/// Makes, converts and checks colour tables.
void run(const TableOptions& options);

/// How fast the engine is on this machine.
void run(const BenchOptions& options);

inline void run(const ShownText& shown) {
  printText(shown.text);
}

}  // namespace vlvk::tool

#endif
