/// Reading, work on frames and writing at the same time.
#ifndef VLVK_TOOLS_VIDEO_FRAME_PIPE_H
#define VLVK_TOOLS_VIDEO_FRAME_PIPE_H

#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <vector>

#include "tools/video/frame_queue.h"
#include "tools/video/frame_stream.h"

namespace vlvk::tool {

/// Three threads, through which a few frames go round:
///
///     read -> work, on the calling thread -> write -> read
///
/// Frames keep their order: each step takes them one by one from the step before.
class FramePipe {
 public:
  /// The frame, in the engine's form, and how many milliseconds it was waited for.
  using Work = std::function<void(VideoFrame* frame, double waited)>;
  /// The frame, in the stream's form.
  using Write = std::function<void(VideoFrame* frame)>;

  FramePipe(FrameReader* reader, Work work, Write write);

  /// Runs until the last frame is written. What any step throws ends all and is thrown here; only a BrokenStream lets
  /// the frames before it through, and is given back.
  std::exception_ptr run();

 private:
  void readAll();
  void workOnAll();
  void writeAll();
  VideoFrame* frameToFill();
  void guarded(void (FramePipe::*step)());

  FrameReader* reader_;
  Work work_;
  Write write_;
  std::vector<std::unique_ptr<VideoFrame>> frames_;  // all there are; of the reading thread
  FrameQueue empty_;
  FrameQueue read_;
  FrameQueue done_;
  std::stop_source stop_;
  std::mutex mutex_;
  std::exception_ptr failure_;  // the first; under mutex_
  std::exception_ptr broken_;   // of the reading thread
};

}  // namespace vlvk::tool

#endif
