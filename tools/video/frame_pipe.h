/// Reading, work on frames and writing at the same time.
#ifndef VLVK_TOOLS_VIDEO_FRAME_PIPE_H
#define VLVK_TOOLS_VIDEO_FRAME_PIPE_H

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "tools/io/messages.h"
#include "tools/video/frame_stream.h"

namespace vlvk::tool {

/// Frames handed from one thread to the next.
template <typename Frame>
class FrameQueue {
 public:
  void push(Frame* frame) {
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
  Frame* pop(const std::stop_token& stop) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, stop, [this] { return closed_ || !frames_.empty(); });
    if (stop.stop_requested() || frames_.empty()) return nullptr;
    Frame* frame = frames_.front();
    frames_.pop_front();
    return frame;
  }

 private:
  std::mutex mutex_;
  std::condition_variable_any changed_;
  std::deque<Frame*> frames_;
  bool closed_ = false;
};

/// Three threads, through which a few frames go round:
///
///     read -> work, on the calling thread -> write -> read
///
/// Frames keep their order: each step takes them one by one from the step before.
///
/// A Reader has a type `Frame`, and `name()`, `makeFrame()` and `read()` as FrameReader has them.
template <typename Reader>
class FramePipe {
 public:
  using Frame = typename Reader::Frame;

  /// The frame, and how many milliseconds it was waited for.
  using Work = std::function<void(Frame* frame, double waited)>;
  using Write = std::function<void(Frame* frame)>;

  FramePipe(Reader* reader, Work work, Write write)
      : reader_(reader), work_(std::move(work)), write_(std::move(write)) {}

  /// Runs until the last frame is written. What any step throws ends all and is thrown here; only a BrokenStream lets
  /// the frames before it through, and is given back.
  std::exception_ptr run();

 private:
  using Step = void (FramePipe::*)();

  static constexpr std::size_t kFrames = 4;  // one in each step, and one that evens out their times

  std::jthread started(Step step);
  void guarded(Step step);
  void readAll();
  void workOnAll();
  void writeAll();
  Frame* frameToFill();

  Reader* reader_;
  Work work_;
  Write write_;
  std::vector<std::unique_ptr<Frame>> frames_;  // all there are; of the reading thread
  FrameQueue<Frame> empty_;
  FrameQueue<Frame> read_;
  FrameQueue<Frame> done_;
  std::stop_source stop_;
  std::mutex mutex_;
  std::exception_ptr failure_;  // the first; under mutex_
  std::exception_ptr broken_;   // of the reading thread
};

template <typename Reader>
std::exception_ptr FramePipe<Reader>::run() {
  {
    std::jthread reading;
    std::jthread writing;
    try {
      named(reader_->name(), [&] {
        reading = started(&FramePipe::readAll);
        writing = started(&FramePipe::writeAll);
      });
    } catch (...) {
      stop_.request_stop();
      throw;
    }
    guarded(&FramePipe::workOnAll);
  }
  if (failure_ != nullptr) std::rethrow_exception(failure_);
  return broken_;
}

template <typename Reader>
std::jthread FramePipe<Reader>::started(Step step) {
  try {
    return std::jthread([this, step] { guarded(step); });
  } catch (const std::system_error& error) {
    throw Error("no thread can be started: " + systemReason(error.code().value()));
  }
}

template <typename Reader>
void FramePipe<Reader>::readAll() {
  try {
    for (Frame* frame = frameToFill(); frame != nullptr && reader_->read(frame, stop_.get_token());
         frame = frameToFill()) {
      read_.push(frame);
    }
  } catch (const BrokenStream&) {
    broken_ = std::current_exception();
  }
  read_.close();
}

template <typename Reader>
void FramePipe<Reader>::workOnAll() {
  using Clock = std::chrono::steady_clock;
  for (;;) {
    const Clock::time_point begin = Clock::now();
    Frame* frame = read_.pop(stop_.get_token());
    if (frame == nullptr) break;
    work_(frame, std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
    done_.push(frame);
  }
  done_.close();
}

template <typename Reader>
void FramePipe<Reader>::writeAll() {
  while (Frame* frame = done_.pop(stop_.get_token())) {
    write_(frame);
    empty_.push(frame);
  }
}

// A frame is made where none has come back yet.
template <typename Reader>
typename Reader::Frame* FramePipe<Reader>::frameToFill() {
  if (frames_.size() == kFrames) return empty_.pop(stop_.get_token());
  frames_.push_back(reader_->makeFrame());
  return frames_.back().get();
}

template <typename Reader>
void FramePipe<Reader>::guarded(Step step) {
  try {
    (this->*step)();
  } catch (...) {
    const std::lock_guard lock(mutex_);
    if (failure_ == nullptr) failure_ = std::current_exception();
    stop_.request_stop();
  }
}

}  // namespace vlvk::tool

#endif
