/// GuardedBuffer where no page can be made unreadable: bytes around the data, looked at when it is given back. Reads
/// beyond it are not seen.
#include "tests/support/guarded_buffer.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string_view>

namespace testing_support {
namespace {

constexpr std::size_t kCanary = 64;
constexpr std::uint8_t kCanaryByte = 0xC5;

void require(bool done, const char* what) {
  if (done) return;
  std::fprintf(stderr, "canary buffer: %s\n", what);
  std::abort();
}

bool isIntact(const std::uint8_t* canary) {
  for (std::size_t i = 0; i < kCanary; ++i) {
    if (canary[i] != kCanaryByte) return false;
  }
  return true;
}

std::size_t hashOf(const std::uint8_t* data, std::size_t size) {
  return std::hash<std::string_view>()({reinterpret_cast<const char*>(data), size});
}

}  // namespace

/// canary, data, canary, hash of data that must not change (0: any)
GuardedBuffer::GuardedBuffer(std::size_t size, Guard /*guard*/, std::uint8_t fill)
    : size_(size),
      mappingSize_(size + 2 * kCanary + sizeof(std::size_t)),
      mapping_(static_cast<std::uint8_t*>(std::calloc(mappingSize_, 1))),
      data_(mapping_ + kCanary) {
  require(mapping_ != nullptr, "no memory");
  std::memset(mapping_, kCanaryByte, size + 2 * kCanary);
  std::memset(data_, fill, size);
}

GuardedBuffer::~GuardedBuffer() {
  require(isIntact(mapping_), "written before its begin");
  require(isIntact(data_ + size_), "written past its end");
  std::size_t hash = 0;
  std::memcpy(&hash, data_ + size_ + kCanary, sizeof hash);
  require(hash == 0 || hash == hashOf(data_, size_), "written, being read-only");
  std::free(mapping_);
}

void GuardedBuffer::makeReadOnly() {
  const std::size_t hash = hashOf(data_, size_);
  std::memcpy(data_ + size_ + kCanary, &hash, sizeof hash);
}

}  // namespace testing_support
