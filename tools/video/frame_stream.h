/// Streams of frames, Y4M or bare: reading and writing them.
#ifndef VLVK_TOOLS_VIDEO_FRAME_STREAM_H
#define VLVK_TOOLS_VIDEO_FRAME_STREAM_H

#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

#include "tools/io/input_stream.h"
#include "tools/io/messages.h"
#include "tools/io/output_file.h"
#include "tools/video/video_frame.h"

namespace vlvk::tool {

/// A stream that ends, or goes on with something else, where a frame was to come. The frames before it are good.
class BrokenStream : public Error {
 public:
  using Error::Error;
};

/// What a stream without a header leaves open.
struct RawFrames {
  FrameSize size;
  ChromaLayout layout;
};

/// How a stream is named in messages.
std::string streamName(const std::string& path);

class FrameReader {
 public:
  using Frame = VideoFrame;

  /// Opens the stream and reads its header, unless the frames are raw. Everything here throws Error, which names the
  /// stream.
  FrameReader(const std::string& path, const std::optional<RawFrames>& raw);

  /// The same for a stream that is open already.
  FrameReader(const std::string& path, std::unique_ptr<InputStream> stream, const std::optional<RawFrames>& raw);

  /// For messages.
  const std::string& name() const { return name_; }

  /// With its line end; empty for raw frames.
  const std::string& header() const { return header_; }

  FrameSize size() const { return format_.size; }
  ChromaLayout layout() const { return format_.layout; }

  /// A frame to read into.
  std::unique_ptr<VideoFrame> makeFrame() const;

  /// How many frames there will be, of a regular file.
  std::optional<std::uint64_t> expectedFrames() const;

  /// Reads the next frame, or returns false at the end. Throws BrokenStream where that is the reason.
  bool read(VideoFrame* frame, const std::stop_token& stop);

 private:
  bool readFrame(VideoFrame* frame, const std::stop_token& stop);
  bool readHeader(VideoFrame* frame, const std::stop_token& stop);

  std::string name_;
  std::unique_ptr<InputStream> stream_;
  std::string header_;
  RawFrames format_;
  VlvkRange range_ = VLVK_LIMITED;
  std::uint64_t count_ = 0;
};

/// Writes the header of a stream, which may be empty, and its frames with theirs.
class FrameWriter {
 public:
  FrameWriter(OutputFile* file, const std::string& header);

  void write(VideoFrame* frame);

 private:
  OutputFile* file_;
};

}  // namespace vlvk::tool

#endif
