/// Temporary file, permissions, rename.
#include "tools/io/output_file.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <system_error>

#include "tools/io/messages.h"

namespace vlvk::tool {
namespace {

constexpr std::size_t kMaxWrite = std::size_t{1} << 20;  // so that an interrupt is soon noticed
constexpr int kMaxLinks = 40;

[[noreturn]] void failWithErrno() {
  throw Error(systemReason(errno));
}

// Runs a step of the writing, whose reasons get the file's name.
template <typename Step>
void writing(const std::string& name, const Step& step) {
  named(name + ": cannot be written", step);
}

mode_t modeOfNewFiles() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

// Type and permissions of what is there; of a new file where there is nothing.
mode_t modeOf(const std::filesystem::path& target) {
  struct stat status {};
  if (::stat(target.c_str(), &status) == 0) return status.st_mode;
  if (errno != ENOENT) failWithErrno();
  return S_IFREG | modeOfNewFiles();
}

// Where the bytes of `path` are, or will be: links are followed, one that leads nowhere too.
std::filesystem::path targetOf(const std::string& path) {
  std::error_code error;
  std::filesystem::path target = std::filesystem::canonical(path, error);
  if (!error) return target;
  target = path;
  for (int i = 0; i < kMaxLinks; ++i) {
    const std::filesystem::path next = std::filesystem::read_symlink(target, error);
    if (error) break;
    target = target.parent_path() / next;
  }
  return target;
}

}  // namespace

OutputFile::OutputFile(const std::string& path, Devices devices) : name_(path) {
  writing(name_, [&] {
    if (devices == Devices::kTaken && isStandardOutput(path)) {
      name_ = "standard output";
      descriptor_ = STDOUT_FILENO;
      return;
    }
    const mode_t mode = modeOf(path);
    if (devices == Devices::kTaken && (S_ISFIFO(mode) || S_ISCHR(mode))) {
      openStraight(path);
      return;
    }
    // Renaming would replace anything, so what is no file, and what may not be written, is refused here.
    if (S_ISDIR(mode)) throw Error(systemReason(EISDIR));
    if (!S_ISREG(mode)) throw Error("not a regular file");
    target_ = targetOf(path);
    if (::access(target_.c_str(), W_OK) != 0 && errno != ENOENT) failWithErrno();
    makeTemporary(mode & 0777);
  });
}

OutputFile::~OutputFile() {
  if (descriptor_ >= 0 && descriptor_ != STDOUT_FILENO) ::close(descriptor_);
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

void OutputFile::openStraight(const std::string& path) {
  descriptor_ = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
  if (descriptor_ < 0) failWithErrno();
}

void OutputFile::makeTemporary(mode_t mode) {
  mode_ = mode;
  pause_.emplace();
  const std::filesystem::path directory = target_.has_parent_path() ? target_.parent_path() : ".";
  std::string temporary = directory / ".vlvk-makeup.XXXXXX";
  descriptor_ = ::mkostemp(temporary.data(), O_CLOEXEC);
  if (descriptor_ < 0) failWithErrno();
  temporary_ = temporary;
}

void OutputFile::write(std::span<const std::uint8_t> bytes) {
  writing(name_, [&] {
    while (!bytes.empty()) {
      failIfInterrupted();
      const ssize_t count = ::write(descriptor_, bytes.data(), std::min(bytes.size(), kMaxWrite));
      if (count < 0 && errno == EAGAIN) {  // a pipe whose other users want it that way
        pollfd ready{descriptor_, POLLOUT, 0};
        ::poll(&ready, 1, 100);
      } else if (count < 0 && errno != EINTR) {
        failWithErrno();
      }
      if (count > 0) bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
  });
}

std::uint64_t OutputFile::size() {
  struct stat status {};
  writing(name_, [&] {
    if (::fstat(descriptor_, &status) != 0) failWithErrno();
  });
  return static_cast<std::uint64_t>(status.st_size);
}

void OutputFile::seek(std::uint64_t position) {
  writing(name_, [&] {
    if (::lseek(descriptor_, static_cast<off_t>(position), SEEK_SET) < 0) failWithErrno();
  });
}

void OutputFile::commit() {
  if (!temporary_.empty()) writing(name_, [this] { rename(); });
}

void OutputFile::rename() {
  if (::fchmod(descriptor_, mode_) != 0) failWithErrno();
  // Some file systems have no fsync; any other failure means that the data is not safe.
  if (::fsync(descriptor_) != 0 && errno != EINVAL && errno != ENOSYS) failWithErrno();
  const int descriptor = descriptor_;
  descriptor_ = -1;
  if (::close(descriptor) != 0) failWithErrno();
  failIfInterrupted();
  if (::rename(temporary_.c_str(), target_.c_str()) != 0) failWithErrno();
  temporary_.clear();
}

bool isStandardOutput(const std::string& path) {
  return path == "-" || path == "/dev/stdout";
}

std::string placeOf(const std::string& path) {
  if (isStandardOutput(path)) return "-";
  std::error_code error;
  const std::filesystem::path place = std::filesystem::weakly_canonical(std::filesystem::absolute(path, error), error);
  return error ? path : place.string();
}

void requireWritable(const std::string& path) {
  const OutputFile file(path, Devices::kRefused);
}

void writeFile(const std::string& path, std::span<const std::uint8_t> bytes) {
  OutputFile file(path, Devices::kRefused);
  file.write(bytes);
  file.commit();
}

std::span<const std::uint8_t> bytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace vlvk::tool
