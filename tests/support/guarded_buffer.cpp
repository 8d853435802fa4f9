/// See guarded_buffer.h.
#include "tests/support/guarded_buffer.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#if __has_include(<sanitizer/asan_interface.h>)
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(address, size)
#define ASAN_UNPOISON_MEMORY_REGION(address, size)
#endif

namespace testing_support {

GuardedBuffer::GuardedBuffer(std::size_t size, Guard guard, std::uint8_t fill) : size_(size) {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  const std::size_t inner = (size + page - 1) / page * page;
  mappingSize_ = inner + 2 * page;
  void* mapping = mmap(nullptr, mappingSize_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapping == MAP_FAILED) {
    std::perror("guarded buffer");
    std::abort();
  }
  mapping_ = static_cast<std::uint8_t*>(mapping);
  std::uint8_t* first = mapping_ + page;
  if (inner > 0) {
    if (mprotect(first, inner, PROT_READ | PROT_WRITE) != 0) {
      std::perror("guarded buffer");
      std::abort();
    }
    std::memset(first, fill, inner);
  }
  data_ = guard == Guard::kBehind ? first + (inner - size) : first;
  // On the side that touches no guard, the address sanitizer guards the rest of the page, where it is in use.
  ASAN_POISON_MEMORY_REGION(first, data_ - first);
  ASAN_POISON_MEMORY_REGION(data_ + size, first + inner - (data_ + size));
}

GuardedBuffer::~GuardedBuffer() {
  ASAN_UNPOISON_MEMORY_REGION(mapping_, mappingSize_);
  munmap(mapping_, mappingSize_);
}

void GuardedBuffer::makeReadOnly() {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  if (size_ > 0) mprotect(mapping_ + page, mappingSize_ - 2 * page, PROT_READ);
}

}  // namespace testing_support
