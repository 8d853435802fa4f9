/// A line on the terminal that tells how far a video is.
#ifndef VLVK_TOOLS_VIDEO_PROGRESS_H
#define VLVK_TOOLS_VIDEO_PROGRESS_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace vlvk::tool {

/// Shows frames, frames a second and the time left on standard error, a few times a second. Without a terminal there,
/// nothing.
class Progress {
 public:
  /// @param expected  frames there will be, as far as that is known
  Progress(bool quiet, std::optional<std::uint64_t> expected);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();  ///< ends the line

  void frameDone();

 private:
  using Clock = std::chrono::steady_clock;

  void show();

  bool visible_;
  std::optional<std::uint64_t> expected_;
  std::uint64_t done_ = 0;
  Clock::time_point begin_ = Clock::now();
  Clock::time_point shown_ = begin_;
  std::size_t length_ = 0;  // of the line as it stands there
};

}  // namespace vlvk::tool

#endif
