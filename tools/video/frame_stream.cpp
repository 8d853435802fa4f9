/// See frame_stream.h.
#include "tools/video/frame_stream.h"

#include <cstddef>
#include <span>
#include <utility>

#include "tools/video/y4m.h"

namespace vlvk::tool {
namespace {

constexpr const char* kEmpty = "the stream is empty";
constexpr std::size_t kShownBytes = 16;  // of what stands in a header's place

}  // namespace

std::string streamName(const std::string& path) {
  return path == "-" ? "standard input" : path;
}

FrameReader::FrameReader(const std::string& path, const std::optional<RawFrames>& raw)
    : FrameReader(path, named(streamName(path), [&path] { return std::make_unique<InputStream>(path); }), raw) {}

FrameReader::FrameReader(const std::string& path, std::unique_ptr<InputStream> stream,
                         const std::optional<RawFrames>& raw)
    : name_(streamName(path)), stream_(std::move(stream)), format_(raw.value_or(RawFrames{{}, ChromaLayout::kPlanar})) {
  if (raw) return;
  named(name_, [this] {
    header_ = stream_->readLine(kMaxY4mLine, {});
    if (header_.empty()) throw Error(kEmpty);
    const Y4mHeader header = parseY4mHeader(header_);
    format_.size = header.size;
    range_ = header.range;
  });
}

std::unique_ptr<VideoFrame> FrameReader::makeFrame() const {
  return std::make_unique<VideoFrame>(format_.size, format_.layout, range_);
}

std::optional<std::uint64_t> FrameReader::expectedFrames() const {
  const std::optional<std::uint64_t> bytes = stream_->fileSize();
  if (!bytes || *bytes < header_.size()) return std::nullopt;
  const std::uint64_t lineBytes = header_.empty() ? 0 : kY4mFrame.size() + 1;
  return (*bytes - header_.size()) / (frameBytes(format_.size) + lineBytes);
}

bool FrameReader::read(VideoFrame* frame, const std::stop_token& stop) {
  return named(name_, [&] { return readFrame(frame, stop); });
}

bool FrameReader::readFrame(VideoFrame* frame, const std::stop_token& stop) {
  frame->number = count_ + 1;
  const bool raw = header_.empty();
  if (!raw && !readHeader(frame, stop)) return false;
  const std::uint64_t bytes = stream_->read(frame->bytes(), stop);
  if (raw && bytes == 0 && count_ == 0) throw Error(kEmpty);
  if (raw && bytes == 0) return false;
  if (bytes < frameBytes(format_.size)) {
    throw BrokenStream("the stream ends inside frame " + std::to_string(frame->number) + ", after " +
                       std::to_string(bytes) + " of its " + std::to_string(frameBytes(format_.size)) + " bytes");
  }
  count_ = frame->number;
  return true;
}

bool FrameReader::readHeader(VideoFrame* frame, const std::stop_token& stop) {
  const std::string line = stream_->readLine(kMaxY4mLine, stop);
  if (line.empty()) return false;
  frame->header = line;
  if (isY4mFrameHeader(line)) return true;
  const std::string number = std::to_string(frame->number);
  const bool begun = kY4mFrame.starts_with(line) || isY4mFrameHeader(line + '\n');
  if (begun && line.size() < kMaxY4mLine) {
    throw BrokenStream("the stream ends inside the header of frame " + number + ", after " +
                       std::to_string(line.size()) + " bytes");
  }
  if (begun) {
    throw BrokenStream("the header of frame " + number + " is longer than " + std::to_string(kMaxY4mLine) + " bytes");
  }
  throw BrokenStream("frame " + number + " does not begin with FRAME but with '" + line.substr(0, kShownBytes) + "'");
}

FrameWriter::FrameWriter(OutputFile* file, const std::string& header) : file_(file) {
  file_->write(bytesOf(header));
}

void FrameWriter::write(VideoFrame* frame) {
  file_->write(bytesOf(frame->header));
  file_->write(frame->bytes());
}

}  // namespace vlvk::tool
