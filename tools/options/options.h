/// What the command line asks for, in plain structs.
#ifndef VLVK_TOOLS_OPTIONS_OPTIONS_H
#define VLVK_TOOLS_OPTIONS_OPTIONS_H

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "tools/media/encoder_wishes.h"
#include "tools/options/look_settings.h"
#include "tools/options/values.h"
#include "tools/picture/picture_file.h"
#include "tools/video/frame_stream.h"

namespace vlvk::tool {

/// The settings, and the files that go with them.
struct LookOptions {
  Look look;
  std::optional<std::string> table;
  std::optional<TableLayout> tableLayout;  ///< of a picture; none: as its size has it
  std::optional<std::string> mask;
};

struct PhotoOptions {
  std::string in;
  std::string out;
  LookOptions look;
  std::optional<int> quality;
  bool compare = false;
  bool showWeight = false;
};

struct VideoOptions {
  std::string in;
  std::string out;
  LookOptions look;
  std::optional<RawFrames> raw;  ///< frames without headers; none: the stream says what it is
  std::string from;              ///< FFmpeg's name of a format or device; empty: as IN has it
  std::string to;                ///< the same; empty: as the name of OUT has it
  EncoderWishes encoder;
  std::string times;  ///< files; empty: not wanted
  std::string checksums;
  bool quiet = false;
};

/// A command on several files, whose results keep their names.
template <typename Options>
struct Several {
  Options each;  ///< but for its files
  std::vector<std::string> ins;
  std::string outDir;
  int atOnce = 0;  ///< files worked on at once, where the command can; 0: as many as processors
};

inline constexpr const char* kDefaultColumns = "whiten=0,25,50,75,100";
inline constexpr const char* kDefaultRows = "soften=0,250,500,1000";
inline constexpr int kLeastCell = 80;  ///< holds the longest label

struct SheetOptions {
  std::string in;
  std::string out;
  SheetAxis columns = readAxis(kDefaultColumns);
  SheetAxis rows = readAxis(kDefaultRows);
  LookOptions look;
  std::optional<Region> crop;
  int cell = 240;
  bool original = false;
};

struct TableOptions {
  enum Action { kConvert, kPack, kUnpack, kNeutral, kCheck };

  Action action;
  std::string in;
  std::string out;
  std::optional<TableLayout> inLayout;
  std::optional<TableLayout> outLayout;
};

struct BenchOptions {
  std::vector<FrameSize> sizes{{1280, 720}, {1920, 1080}, {3840, 2160}};
  double seconds = 1;
  double pace = 0;  ///< milliseconds between frames
  int threads = 4;
  std::vector<std::string> targets = targetNames();
};

/// Help or version: a text to show.
struct ShownText {
  std::string text;
};

struct CommandLine {
  std::variant<ShownText, PhotoOptions, Several<PhotoOptions>, VideoOptions, Several<VideoOptions>, SheetOptions,
               TableOptions, BenchOptions>
      command;
  std::string target;  ///< vector instructions to use; empty: the fastest
};

/// Reads the command line. Throws UsageError where it makes no sense.
void parseCommandLine(int argc, const char* const* argv, CommandLine* line);

}  // namespace vlvk::tool

#endif
