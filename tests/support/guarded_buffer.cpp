/// See guarded_buffer.h.
#include "tests/support/guarded_buffer.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#if __has_include(<sanitizer/asan_interface.h>)
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(address, size)
#define ASAN_UNPOISON_MEMORY_REGION(address, size)
#endif

namespace testing_support {
namespace {

const auto kPage = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));

void require(bool done) {
  if (done) return;
  std::perror("guarded buffer");
  std::abort();
}

}  // namespace

GuardedBuffer::GuardedBuffer(std::size_t size, Guard guard, std::uint8_t fill)
    : size_(size), mappingSize_((size + kPage - 1) / kPage * kPage + 2 * kPage) {
  void* mapping = mmap(nullptr, mappingSize_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  require(mapping != MAP_FAILED);
  mapping_ = static_cast<std::uint8_t*>(mapping);
  protect(PROT_READ | PROT_WRITE);
  data_ = guard == Guard::kBehind ? mapping_ + mappingSize_ - kPage - size : mapping_ + kPage;
  std::memset(data_, fill, size);
  // On the side that touches no guard, the address sanitizer guards the rest of the page, where it is in use.
  ASAN_POISON_MEMORY_REGION(mapping_ + kPage, data_ - (mapping_ + kPage));
  ASAN_POISON_MEMORY_REGION(data_ + size, mapping_ + mappingSize_ - kPage - (data_ + size));
}

GuardedBuffer::~GuardedBuffer() {
  ASAN_UNPOISON_MEMORY_REGION(mapping_, mappingSize_);
  munmap(mapping_, mappingSize_);
}

void GuardedBuffer::makeReadOnly() {
  protect(PROT_READ);
}

void GuardedBuffer::protect(int protection) {
  if (size_ > 0) require(mprotect(mapping_ + kPage, mappingSize_ - 2 * kPage, protection) == 0);
}

}  // namespace testing_support
