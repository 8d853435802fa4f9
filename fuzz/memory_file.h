/// An input as a file, for code that reads files.
#ifndef VLVK_FUZZ_MEMORY_FILE_H
#define VLVK_FUZZ_MEMORY_FILE_H

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "fuzz/check.h"

namespace fuzz {

/// A file that exists in memory only.
class MemoryFile {
 public:
  explicit MemoryFile(std::span<const std::uint8_t> bytes) : descriptor_(memfd_create("input", MFD_CLOEXEC)) {
    check(descriptor_ >= 0, "no file in memory");
    for (std::size_t done = 0; done < bytes.size();) {
      const ssize_t count = ::write(descriptor_, bytes.data() + done, bytes.size() - done);
      check(count > 0, "no room for a file in memory");
      done += static_cast<std::size_t>(count);
    }
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { ::close(descriptor_); }

  std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
  int descriptor_;
};

}  // namespace fuzz

#endif
