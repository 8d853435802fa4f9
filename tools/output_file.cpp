/// Temporary file, permissions, rename.
#include "tools/output_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "tools/error.h"
#include "tools/interrupt.h"

namespace vlvk::tool {
namespace {

constexpr std::size_t kMaxWrite = std::size_t{1} << 20;  // so that an interrupt is soon noticed
constexpr int kMaxLinks = 40;

[[noreturn]] void failWithErrno() {
  throw Error(systemReason(errno));
}

void failIfInterrupted() {
  if (InterruptPause::isDue()) throw Error("interrupted");
}

// A file of its own name in `directory`, removed again unless it is renamed.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::filesystem::path& directory)
      : name_((directory / ".vlvk-makeup.XXXXXX").string()), descriptor_(mkstemp(name_.data())) {
    if (descriptor_ < 0) failWithErrno();
  }
  ~TemporaryFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
    if (!renamed_) ::unlink(name_.c_str());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  void write(std::span<const std::uint8_t> bytes) const {
    while (!bytes.empty()) {
      failIfInterrupted();
      const ssize_t count = ::write(descriptor_, bytes.data(), std::min(bytes.size(), kMaxWrite));
      if (count < 0 && errno != EINTR) failWithErrno();
      if (count > 0) bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
  }

  void rename(const std::filesystem::path& target, mode_t mode) {
    if (::fchmod(descriptor_, mode) != 0) failWithErrno();
    // Some file systems have no fsync; any other failure means that the data is not safe.
    if (::fsync(descriptor_) != 0 && errno != EINVAL && errno != ENOSYS) failWithErrno();
    const int descriptor = descriptor_;
    descriptor_ = -1;
    if (::close(descriptor) != 0) failWithErrno();
    failIfInterrupted();
    if (::rename(name_.c_str(), target.c_str()) != 0) failWithErrno();
    renamed_ = true;
  }

 private:
  std::string name_;
  int descriptor_;
  bool renamed_ = false;
};

mode_t modeOfNewFiles() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

// The permissions the result gets: those of the file it replaces. Renaming would replace anything, so what is no file,
// and what may not be written, is refused here.
mode_t checkTarget(const std::filesystem::path& target) {
  struct stat status {};
  if (::stat(target.c_str(), &status) != 0) {
    if (errno != ENOENT) failWithErrno();
    return modeOfNewFiles();
  }
  if (S_ISDIR(status.st_mode)) throw Error(systemReason(EISDIR));
  if (!S_ISREG(status.st_mode)) throw Error("not a regular file");
  if (::access(target.c_str(), W_OK) != 0) failWithErrno();
  return status.st_mode & 0777;
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

void replaceFile(const std::string& path, std::span<const std::uint8_t> bytes) {
  const std::filesystem::path target = targetOf(path);
  const mode_t mode = checkTarget(target);
  const InterruptPause pause;
  TemporaryFile file(target.has_parent_path() ? target.parent_path() : std::filesystem::path("."));
  file.write(bytes);
  file.rename(target, mode);
}

}  // namespace

void writeFile(const std::string& path, std::span<const std::uint8_t> bytes) {
  try {
    replaceFile(path, bytes);
  } catch (const Error& error) {
    throw Error(path, std::string("cannot be written: ") + error.what());
  }
}

}  // namespace vlvk::tool
