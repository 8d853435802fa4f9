/// The command `video`.
#include <algorithm>
#include <exception>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/commands/commands.h"
#include "tools/commands/files.h"
#include "tools/commands/video_steps.h"
#include "tools/io/messages.h"
#include "tools/io/output_file.h"
#include "tools/video/frame_stream.h"
#include "tools/video/y4m.h"

namespace vlvk::tool {
namespace {

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

// Y4M to Y4M needs no FFmpeg, and what has no ending, such as a pipe, gets what came in.
bool staysStream(const VideoOptions& options, InputStream* stream) {
  if (options.raw) return true;
  if (!options.from.empty() || !options.to.empty() || options.encoder.any()) return false;
  const std::string_view begin = stream->peek(kY4mStart.size());
  const std::string ending = std::filesystem::path(options.out).extension();
  return begin.empty() || (kY4mStart.starts_with(begin) && (ending.empty() || ending == ".y4m"));
}

void runStream(const VideoOptions& options, std::unique_ptr<InputStream> stream) {
  VideoRecords records(options);
  Engine engine(readLook(options.look));
  FrameReader reader(options.in, std::move(stream), options.raw);
  OutputFile out(options.out, Devices::kTaken);
  FrameWriter writer(&out, reader.header());
  std::exception_ptr broken;
  {
    Progress progress(options.quiet, reader.expectedFrames());
    broken = beautifyAll(&engine, &reader, &writer, &progress, &records);
  }
  out.commit();
  records.write();
  if (broken != nullptr) std::rethrow_exception(broken);
}

}  // namespace

VideoRecords::VideoRecords(const VideoOptions& options) : timesPath_(options.times), checksumsPath_(options.checksums) {
  requireRecordWritable(checksumsPath_);
  requireRecordWritable(timesPath_);
}

void VideoRecords::addTimes(std::uint64_t number, double filtered, double waited) {
  if (!timesPath_.empty()) times_.add(number, filtered, waited);
}

void VideoRecords::addChecksum(std::uint64_t number, const VlvkFrame& frame) {
  if (!checksumsPath_.empty()) checksums_.add(number, frame);
}

void VideoRecords::write() const {
  writeRecord(checksumsPath_, checksums_.text());
  writeRecord(timesPath_, times_.text());
}

void run(const VideoOptions& options) {
  checkDestinations(options);
  std::unique_ptr<InputStream> stream;
  if (!isMediaSource(options)) {
    stream = named(streamName(options.in), [&] { return std::make_unique<InputStream>(options.in); });
    if (named(streamName(options.in), [&] { return staysStream(options, stream.get()); })) {
      runStream(options, std::move(stream));
      return;
    }
  }
  runMedia(options, std::move(stream));
}

}  // namespace vlvk::tool
