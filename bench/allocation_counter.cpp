/// See allocation_counter.h. The linker leads the program's calls here (--wrap).
#include "bench/allocation_counter.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> count{0};

}  // namespace

extern "C" {
void* __real_malloc(std::size_t bytes);
void* __real_calloc(std::size_t elements, std::size_t bytes);
void* __real_realloc(void* memory, std::size_t bytes);

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

}  // namespace vlvk_bench
