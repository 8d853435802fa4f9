/// Options and course of the command `video`.
#include "tools/commands/video.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "tools/io/error.h"
#include "tools/io/output_file.h"
#include "tools/io/standard_output.h"
#include "tools/options/look.h"
#include "tools/options/look_options.h"
#include "tools/options/size_option.h"
#include "tools/options/target.h"
#include "tools/video/frame_pipe.h"
#include "tools/video/frame_records.h"
#include "tools/video/frame_stream.h"
#include "tools/video/progress.h"

namespace vlvk::tool {
namespace {

struct VideoOptions {
  std::string in;
  std::string out;
  LookOptions look;
  std::string format;  // empty: Y4M
  FrameSize size{};    // of raw frames
  std::string times;   // files; empty: not wanted
  std::string checksums;
  bool quiet = false;
};

const std::map<std::string, ChromaLayout> kRawFormats{
    {"i420", ChromaLayout::kPlanar}, {"nv12", ChromaLayout::kUThenV}, {"nv21", ChromaLayout::kVThenU}};

// Where `path` leads to, however it is spelled.
std::string placeOf(const std::string& path) {
  if (isStandardOutput(path)) return "-";
  std::error_code error;
  const std::filesystem::path place = std::filesystem::weakly_canonical(std::filesystem::absolute(path, error), error);
  return error ? path : place.string();
}

// Two results in one place would spoil each other, and a record in the place of IN the video.
void checkDestinations(const VideoOptions& options) {
  std::vector<std::string> taken{placeOf(options.out)};
  if (options.in != "-") taken.push_back(placeOf(options.in));
  for (const std::string& path : {options.checksums, options.times}) {
    if (path.empty()) continue;
    const std::string place = placeOf(path);
    if (std::find(taken.begin(), taken.end(), place) != taken.end()) {
      throw CLI::ValidationError(
          "IN, OUT, --checksum and --frametimes",
          place == "-" ? "only one of them can be standard output" : "only IN and OUT may be the same file: " + path);
    }
    taken.push_back(place);
  }
}

void requireRecordWritable(const std::string& path) {
  if (!path.empty() && !isStandardOutput(path)) requireWritable(path);
}

void writeRecord(const std::string& path, const std::string& text) {
  if (path.empty()) return;
  if (isStandardOutput(path)) {
    printText(text);
  } else {
    writeFile(path, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
  }
}

// Milliseconds that the filter took for a frame of the stream `name`.
double beautify(const std::string& name, LookFilter* filter, VideoFrame* frame) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point begin = Clock::now();
  if ((*filter)->processVideo(frame->luma(), frame->width(), frame->chromaPairs(), frame->width(), frame->width(),
                              frame->height(), nullptr, 0, frame->isVThenU()) != 0) {
    throw Error(name, "not enough memory for frame " + std::to_string(frame->number));
  }
  return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

void runVideo(const VideoOptions& options) {
  checkDestinations(options);
  requireRecordWritable(options.checksums);
  requireRecordWritable(options.times);
  LookFilter filter(options.look.look());
  std::optional<RawFrames> raw;
  if (!options.format.empty()) raw = {options.size, kRawFormats.at(options.format)};
  FrameReader reader(options.in, raw);
  OutputFile out(options.out, Devices::kTaken);
  FrameWriter writer(&out, reader.header());
  FrameChecksums checksums;
  FrameTimes times;
  std::exception_ptr broken;
  {
    Progress progress(options.quiet, reader.expectedFrames());
    const auto work = [&](VideoFrame* frame, double waited) {
      const double filtered = beautify(reader.name(), &filter, frame);
      if (!options.times.empty()) times.add(frame->number, filtered, waited);
    };
    const auto write = [&](VideoFrame* frame) {
      if (!options.checksums.empty()) checksums.add(frame);
      writer.write(frame);
      progress.frameDone();
    };
    broken = FramePipe(&reader, work, write).run();
  }
  out.commit();
  writeRecord(options.checksums, checksums.text());
  writeRecord(options.times, times.text());
  if (broken != nullptr) std::rethrow_exception(broken);
}

void addStreamOptions(CLI::App* command, VideoOptions* options) {
  command->add_option("IN", options->in, "Stream to read, Y4M unless --format is given; -: standard input")
      ->required()
      ->type_name("FILE");
  command->add_option("OUT", options->out, "Stream to write, of the same format; may be IN; -: standard output")
      ->required()
      ->type_name("FILE");
  CLI::Option* format =
      command->add_option("--format", options->format, "Frames without headers, of this layout; needs --size")
          ->check(CLI::IsMember(&kRawFormats).description(""))
          ->type_name("i420|nv12|nv21");
  CLI::Option* size = command
                          ->add_option_function<std::string>(
                              "--size", [options](const std::string& text) { options->size = parseFrameSize(text); },
                              "Size of frames without headers")
                          ->type_name("WxH");
  format->needs(size);
  size->needs(format);
}

void addRecordOptions(CLI::App* command, VideoOptions* options) {
  command->add_option("--checksum", options->checksums, "Write the CRC-32 of each frame here; -: standard output")
      ->type_name("FILE");
  command->add_option("--frametimes", options->times, "Write what each frame took here; -: standard output")
      ->type_name("FILE");
  command->add_flag("--quiet", options->quiet, "Show no progress, as without a terminal");
}

}  // namespace

void addVideoCommand(CLI::App* program) {
  CLI::App* command = program->add_subcommand("video", "Beautify a video (Y4M, or frames without headers)");
  const auto options = std::make_shared<VideoOptions>();
  addStreamOptions(command, options.get());
  options->look.addTo(command);
  addRecordOptions(command, options.get());
  addTargetOption(command);
  command->footer(
      "Frames are 8-bit 4:2:0, BT.601, limited range. Other files go through ffmpeg, with the sound kept:\n"
      "docs/video.md has the lines.\n"
      "--checksum writes \"NUMBER CRC\" for each frame and \"all CRC\"; --frametimes writes \"NUMBER FILTER WAIT\", "
      "in\n"
      "milliseconds: the engine's time, and how long it had to wait for reading and writing. Both write at the end.\n"
      "Of a stream that breaks off, the whole frames are written. On any other failure OUT is left as it was,\n"
      "unless it is a pipe or a device.");
  command->callback([options] { runVideo(*options); });
}

}  // namespace vlvk::tool
