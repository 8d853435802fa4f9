/// Frames handed from one thread to the next.
#ifndef VLVK_TOOLS_VIDEO_FRAME_QUEUE_H
#define VLVK_TOOLS_VIDEO_FRAME_QUEUE_H

#include <condition_variable>
#include <deque>
#include <mutex>
#include <stop_token>

#include "tools/video/video_frame.h"

namespace vlvk::tool {

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

}  // namespace vlvk::tool

#endif
