/// See frame_pipe.h.
#include "tools/video/frame_pipe.h"

#include <chrono>
#include <cstddef>
#include <system_error>
#include <utility>

#include "tools/io/messages.h"

namespace vlvk::tool {
namespace {

constexpr std::size_t kFrames = 4;  // one in each step, and one that evens out their times

}  // namespace

FramePipe::FramePipe(FrameReader* reader, Work work, Write write)
    : reader_(reader), work_(std::move(work)), write_(std::move(write)) {}

std::exception_ptr FramePipe::run() {
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

std::jthread FramePipe::started(Step step) {
  try {
    return std::jthread([this, step] { guarded(step); });
  } catch (const std::system_error& error) {
    throw Error("no thread can be started: " + systemReason(error.code().value()));
  }
}

void FramePipe::readAll() {
  try {
    for (VideoFrame* frame = frameToFill(); frame != nullptr && reader_->read(frame, stop_.get_token());
         frame = frameToFill()) {
      read_.push(frame);
    }
  } catch (const BrokenStream&) {
    broken_ = std::current_exception();
  }
  read_.close();
}

void FramePipe::workOnAll() {
  using Clock = std::chrono::steady_clock;
  for (;;) {
    const Clock::time_point begin = Clock::now();
    VideoFrame* frame = read_.pop(stop_.get_token());
    if (frame == nullptr) break;
    work_(frame, std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
    done_.push(frame);
  }
  done_.close();
}

void FramePipe::writeAll() {
  while (VideoFrame* frame = done_.pop(stop_.get_token())) {
    write_(frame);
    empty_.push(frame);
  }
}

// A frame is made where none has come back yet.
VideoFrame* FramePipe::frameToFill() {
  if (frames_.size() == kFrames) return empty_.pop(stop_.get_token());
  frames_.push_back(std::make_unique<VideoFrame>(reader_->size(), reader_->layout()));
  return frames_.back().get();
}

void FramePipe::guarded(Step step) {
  try {
    (this->*step)();
  } catch (...) {
    const std::lock_guard lock(mutex_);
    if (failure_ == nullptr) failure_ = std::current_exception();
    stop_.request_stop();
  }
}

}  // namespace vlvk::tool
