/// See progress.h.
#include "tools/video/progress.h"

#include <unistd.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <string>

namespace vlvk::tool {
namespace {

constexpr std::chrono::milliseconds kPause{200};

std::string timeLeft(double seconds) {
  char text[40];
  const auto whole = static_cast<std::uint64_t>(seconds);
  std::snprintf(text, sizeof text, ", %" PRIu64 ":%02d left", whole / 60, static_cast<int>(whole % 60));
  return text;
}

}  // namespace

Progress::Progress(bool quiet, std::optional<std::uint64_t> expected)
    : visible_(!quiet && ::isatty(STDERR_FILENO) == 1), expected_(expected) {}

Progress::~Progress() {
  if (length_ == 0) return;
  show();
  std::fputc('\n', stderr);
}

void Progress::frameDone() {
  ++done_;
  if (!visible_ || Clock::now() - shown_ < kPause) return;
  shown_ = Clock::now();
  show();
}

void Progress::show() {
  const double seconds = std::chrono::duration<double>(Clock::now() - begin_).count();
  const double rate = static_cast<double>(done_) / seconds;
  std::string line = std::to_string(done_) + (expected_ ? " of " + std::to_string(*expected_) : "") + " frames";
  char text[40];
  std::snprintf(text, sizeof text, ", %.1f frames/s", rate);
  line += text;
  if (expected_ && *expected_ > done_) line += timeLeft(static_cast<double>(*expected_ - done_) / rate);
  // Blanks cover what is left of a longer line.
  const std::size_t length = line.size();
  line.append(std::max(length_, length) - length, ' ');
  length_ = length;
  std::fprintf(stderr, "\r%s", line.c_str());
  std::fflush(stderr);
}

}  // namespace vlvk::tool
