/// The options of `video`.
#include <algorithm>
#include <filesystem>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

#include "tools/io/messages.h"
#include "tools/options/command_options.h"

namespace vlvk::tool {
namespace {

void addRawFrames(Command command, std::optional<RawFrames>* raw) {
  const auto frames = [raw]() -> RawFrames& { return *raw ? **raw : raw->emplace(); };
  command.addValue("--format", "i420|nv12|nv21", "Frames without headers, of this layout; needs --size",
                   [=](const std::string& text) { frames().layout = readFormat(text); });
  command.addValue("--size", "WxH", "Size of frames without headers",
                   [=](const std::string& text) { frames().size = readSize(text); });
  command.needs("--format", "--size");
  command.needs("--size", "--format");
}

void addText(Command command, const char* name, std::string* text, const char* help) {
  command.addValue(name, "NAME", help, [=](const std::string& value) { *text = value; });
}

void addEncoder(Command command, VideoOptions* options) {
  EncoderWishes* encoder = &options->encoder;
  addText(command, "--codec", &encoder->codec, "Codec or encoder of OUT, as FFmpeg calls it; else by the name of OUT");
  command.addValue("--crf", spelledRange(0, 255), "Quality, on the encoder's scale; lower is better",
                   [=](const std::string& text) { encoder->crf = readNumber(text, 0.0, 255.0); });
  addText(command, "--preset", &encoder->preset, "The encoder's speed, such as fast");
  addText(command, "--from", &options->from, "Format or device of IN, as FFmpeg calls it; else IN says it");
  addText(command, "--to", &options->to, "Format or device of OUT, as FFmpeg calls it; else by the name of OUT");
}

void refuseEncoderOfRawFrames(const VideoOptions& options) {
  if (!options.raw || (!options.encoder.any() && options.from.empty() && options.to.empty())) return;
  throw UsageError("--format: frames without headers have no --codec, --crf, --preset, --from or --to");
}

// Frames alone under the name of a video could be opened by nothing.
void refuseVideoNameOfRawFrames(const Several<VideoOptions>& videos) {
  static constexpr const char* kVideos[] = {".mp4", ".mov", ".m4v", ".mkv", ".webm", ".avi"};
  if (!videos.each.raw || videos.ins.empty()) return;
  const std::string ending = std::filesystem::path(videos.ins.back()).extension();  // OUT, or has its name
  if (std::find(std::begin(kVideos), std::end(kVideos), ending) == std::end(kVideos)) return;
  throw UsageError("--format: frames without headers are written as they come, but OUT ends in " + ending);
}

// A record is of one video, and standard input has no name to keep.
void checkSeveral(const Several<VideoOptions>& videos) {
  for (const auto& [option, path] :
       {std::pair{"--checksum", &videos.each.checksums}, {"--frametimes", &videos.each.times}}) {
    if (!path->empty()) throw UsageError(std::string(option) + ": not with --out-dir, give IN and OUT");
  }
  for (const std::string& in : videos.ins) {
    if (in == "-") throw UsageError("-: standard input has no name to keep in --out-dir, give IN and OUT");
  }
}

}  // namespace

void addVideo(Command program, CommandLine* line) {
  const Command command = program.addCommand("video", "Beautify videos");
  const auto options = std::make_shared<Several<VideoOptions>>();
  addFiles(command, options.get(), "Video to read: whatever FFmpeg reads; -: standard input",
           "Video to write: .mp4, .mkv, ...; may be IN; -: standard output, Y4M");
  VideoOptions* each = &options->each;
  addEncoder(command, each);
  addRawFrames(command, &each->raw);
  addLook(command, &each->look);
  command.addPath("--checksum", &each->checksums, "Write the CRC-32 of each frame here; -: standard output");
  command.addPath("--frametimes", &each->times, "Write what each frame took here; -: standard output");
  command.addFlag("--quiet", &each->quiet, "Show no progress, as without a terminal");
  addTarget(command, line);
  command.addNotes(
      "Sound, subtitles, chapters, tags and times are kept. H.264 of CRF 18 is written, VP9 in .webm. What OUT cannot\n"
      "hold is left out, with a line on standard error.\n"
      "Y4M in gives Y4M out where OUT has no other ending; the engine takes it as BT.601, 8-bit 4:2:0. --format is "
      "for\n"
      "frames alone, without any header.\n"
      "--checksum writes \"NUMBER CRC\" for each frame and \"all CRC\"; --frametimes writes \"NUMBER FILTER WAIT\", "
      "in\n"
      "milliseconds: the engine's time, and how long it had to wait for reading and writing. Both write at the end.\n"
      "With --out-dir videos are worked on one after the other, and one that fails does not stop the others.\n"
      "Of a stream that breaks off, the whole frames are written. On any other failure OUT is left as it was,\n"
      "unless it is a pipe or a device.");
  command.whenRead([=] {
    refuseEncoderOfRawFrames(*each);
    refuseVideoNameOfRawFrames(*options);
    if (!options->outDir.empty()) checkSeveral(*options);
    setCommand(*options, line);
  });
}

}  // namespace vlvk::tool
