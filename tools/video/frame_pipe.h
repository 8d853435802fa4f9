/// Reading, work on frames and writing at the same time.
#ifndef VLVK_TOOLS_VIDEO_FRAME_PIPE_H
#define VLVK_TOOLS_VIDEO_FRAME_PIPE_H

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>
#include <vector>

#include "tools/video/frame_stream.h"

namespace vlvk::tool {

/// Frames handed from one thread to the next.
class FrameQueue {
 public:
  void push(VideoFrame* frame) {
    const std::lock_guard lock(mutex_);
    frames_.push_back(frame);
    changed_.notify_one();
  }

  /// No frame comes after those that are in the queue.
  void close() {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    changed_.notify_one();
  }

  /// Waits for the next frame. Null when there is none any more, and once a stop is requested.
  VideoFrame* pop(const std::stop_token& stop) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, stop, [this] { return closed_ || !frames_.empty(); });
    if (stop.stop_requested() || frames_.empty()) return nullptr;
    VideoFrame* frame = frames_.front();
    frames_.pop_front();
    return frame;
  }

 private:
  std::mutex mutex_;
  std::condition_variable_any changed_;
  std::deque<VideoFrame*> frames_;
  bool closed_ = false;
};

/// Three threads, through which a few frames go round:
///
///     read -> work, on the calling thread -> write -> read
///
/// Frames keep their order: each step takes them one by one from the step before.
class FramePipe {
 public:
  /// The frame, and how many milliseconds it was waited for.
  using Work = std::function<void(VideoFrame* frame, double waited)>;
  using Write = std::function<void(VideoFrame* frame)>;

  FramePipe(FrameReader* reader, Work work, Write write);

  /// Runs until the last frame is written. What any step throws ends all and is thrown here; only a BrokenStream lets
  /// the frames before it through, and is given back.
  std::exception_ptr run();

 private:
  using Step = void (FramePipe::*)();

  std::jthread started(Step step);
  void guarded(Step step);
  void readAll();
  void workOnAll();
  void writeAll();
  VideoFrame* frameToFill();

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
