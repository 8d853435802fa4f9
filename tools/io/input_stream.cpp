/// See input_stream.h.
#include "tools/io/input_stream.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "tools/io/interrupt.h"
#include "tools/io/messages.h"

namespace vlvk::tool {
namespace {

constexpr std::size_t kReadAhead = 4096;
constexpr std::size_t kMaxRead = std::size_t{1} << 20;  // so that an interrupt is soon noticed
constexpr int kPatience = 50;                           // milliseconds, for the same reason

}  // namespace

InputStream::InputStream(const std::string& path)
    : descriptor_(path == "-" ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY)) {
  if (descriptor_ < 0) throw Error(systemReason(errno));
}

InputStream::~InputStream() {
  if (descriptor_ != STDIN_FILENO) ::close(descriptor_);
}

std::optional<std::uint64_t> InputStream::fileSize() const {
  struct stat status {};
  if (::fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return static_cast<std::uint64_t>(status.st_size);
}

std::string_view InputStream::peek(std::size_t count) {
  std::size_t filled = buffer_.size();
  while (filled - taken_ < count) {
    buffer_.resize(taken_ + kReadAhead);
    const std::size_t read = readSome(std::span(buffer_).subspan(filled), {});
    filled += read;
    if (read == 0) break;
  }
  buffer_.resize(filled);
  return {reinterpret_cast<const char*>(buffer_.data()) + taken_, std::min(count, filled - taken_)};
}

void InputStream::seek(std::uint64_t position) {
  if (::lseek(descriptor_, static_cast<off_t>(position), SEEK_SET) < 0) throw Error(systemReason(errno));
  buffer_.clear();
  taken_ = 0;
}

std::size_t InputStream::read(std::span<std::uint8_t> bytes, const std::stop_token& stop) {
  const std::size_t ahead = std::min(buffer_.size() - taken_, bytes.size());
  std::copy_n(buffer_.begin() + static_cast<std::ptrdiff_t>(taken_), ahead, bytes.begin());
  taken_ += ahead;
  std::size_t filled = ahead;
  while (filled < bytes.size()) {
    const std::size_t count = readSome(bytes.subspan(filled), stop);
    if (count == 0) break;
    filled += count;
  }
  return filled;
}

std::string InputStream::readLine(std::size_t limit, const std::stop_token& stop) {
  std::string line;
  while (line.size() < limit && !line.ends_with('\n')) {
    if (taken_ == buffer_.size()) {
      buffer_.resize(kReadAhead);
      taken_ = 0;
      buffer_.resize(readSome(buffer_, stop));
      if (buffer_.empty()) break;
    }
    line += static_cast<char>(buffer_[taken_++]);
  }
  return line;
}

std::size_t InputStream::readSome(std::span<std::uint8_t> bytes, const std::stop_token& stop) {
  for (;;) {
    waitForBytes(stop);
    const ssize_t count = ::read(descriptor_, bytes.data(), std::min(bytes.size(), kMaxRead));
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR && errno != EAGAIN) throw Error(systemReason(errno));
  }
}

void InputStream::waitForBytes(const std::stop_token& stop) const {
  pollfd ready{descriptor_, POLLIN, 0};
  do {
    if (stop.stop_requested() || InterruptPause::isDue()) throw Error("interrupted");
  } while (::poll(&ready, 1, kPatience) == 0);
}

}  // namespace vlvk::tool
