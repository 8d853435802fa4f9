/// The command `video`.
#include <algorithm>
#include <chrono>
#include <exception>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "tools/commands/commands.h"
#include "tools/commands/files.h"
#include "tools/engine/engine.h"
#include "tools/io/messages.h"
#include "tools/io/output_file.h"
#include "tools/video/frame_pipe.h"
#include "tools/video/frame_records.h"
#include "tools/video/frame_stream.h"
#include "tools/video/progress.h"

namespace vlvk::tool {
namespace {

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
      throw UsageError(
          std::string("IN, OUT, --checksum and --frametimes: ") +
          (place == "-" ? "only one of them can be standard output" : "only IN and OUT may be the same file: " + path));
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
    writeFile(path, bytesOf(text));
  }
}

// Milliseconds that the engine took for a frame of the stream `name`.
double beautify(const std::string& name, Engine* engine, VideoFrame* frame) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point begin = Clock::now();
  named(name, [&] { engine->beautify(frame->frame(), frame->frame(), frame->number); });
  return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

}  // namespace

void run(const VideoOptions& options) {
  checkDestinations(options);
  requireRecordWritable(options.checksums);
  requireRecordWritable(options.times);
  Engine engine(readLook(options.look));
  FrameReader reader(options.in, options.raw);
  OutputFile out(options.out, Devices::kTaken);
  FrameWriter writer(&out, reader.header());
  FrameChecksums checksums;
  FrameTimes times;
  std::exception_ptr broken;
  {
    Progress progress(options.quiet, reader.expectedFrames());
    const auto work = [&](VideoFrame* frame, double waited) {
      const double filtered = beautify(reader.name(), &engine, frame);
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

}  // namespace vlvk::tool
