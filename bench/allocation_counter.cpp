/// See allocation_counter.h. The linker leads the program's calls here (--wrap).
#include "bench/allocation_counter.h"

#include <malloc.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <new>

namespace {

std::atomic<std::size_t> count{0};

}  // namespace

extern "C" {
void* __real_malloc(std::size_t bytes);
void* __real_calloc(std::size_t elements, std::size_t bytes);
void* __real_realloc(void* memory, std::size_t bytes);
void* __real_aligned_alloc(std::size_t alignment, std::size_t bytes);
int __real_posix_memalign(void** memory, std::size_t alignment, std::size_t bytes);

void* __wrap_malloc(std::size_t bytes) {
  ++count;
  return __real_malloc(bytes);
}
void* __wrap_calloc(std::size_t elements, std::size_t bytes) {
  ++count;
  return __real_calloc(elements, bytes);
}
void* __wrap_realloc(void* memory, std::size_t bytes) {
  ++count;
  return __real_realloc(memory, bytes);
}
void* __wrap_aligned_alloc(std::size_t alignment, std::size_t bytes) {
  ++count;
  return __real_aligned_alloc(alignment, bytes);
}
int __wrap_posix_memalign(void** memory, std::size_t alignment, std::size_t bytes) {
  ++count;
  return __real_posix_memalign(memory, alignment, bytes);
}
}

void* operator new(std::size_t bytes) {
  ++count;
  void* memory = __real_malloc(bytes);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*bytes*/) noexcept {
  std::free(memory);
}

namespace vlvk_bench {

std::size_t allocationCount() {
  return count;
}

std::size_t heapBytes() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

std::size_t residentBytes() {
  std::size_t total = 0;
  std::size_t resident = 0;
  std::ifstream("/proc/self/statm") >> total >> resident;
  return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

}  // namespace vlvk_bench
