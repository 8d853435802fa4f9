/// See failing_system.h.
#include "tests/support/failing_system.h"

#include <dlfcn.h>
#include <malloc.h>
#include <pthread.h>

#include <cerrno>
#include <cstddef>

namespace testing_support {

// All constant-initialised: the first allocation comes long before main.
constinit Fault memoryFault, threadFault;
constinit std::atomic<long long> liveBytes{0};

namespace {

constinit thread_local bool startingThread = false;  // the C library's own memory for a thread is not ours to count

void discount(void* memory) {
  if (memory != nullptr) liveBytes -= static_cast<long long>(malloc_usable_size(memory));
}

/// What `allocate` gives, or null when the request is to fail; `old` is what it gives back.
template <class Allocate>
void* request(std::size_t size, Allocate allocate, void* old = nullptr) {
  if (!startingThread && size >= memoryFault.leastBytes && memoryFault.hits()) {
    errno = ENOMEM;
    return nullptr;
  }
  discount(old);
  void* memory = allocate();
  if (memory != nullptr) liveBytes += static_cast<long long>(malloc_usable_size(memory));
  return memory;
}

}  // namespace
}  // namespace testing_support

using namespace testing_support;  // NOLINT(google-build-using-namespace): the functions below belong to no namespace

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);

void* malloc(std::size_t size) noexcept {
  return request(size, [=] { return __libc_malloc(size); });
}
void* calloc(std::size_t count, std::size_t size) noexcept {
  return request(count * size, [=] { return __libc_calloc(count, size); });
}
void* realloc(void* memory, std::size_t size) noexcept {
  return request(
      size, [=] { return __libc_realloc(memory, size); }, memory);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
  return request(size, [=] { return __libc_memalign(alignment, size); });
}
int posix_memalign(void** memory, std::size_t alignment, std::size_t size) noexcept {
  *memory = aligned_alloc(alignment, size);
  return *memory == nullptr ? ENOMEM : 0;
}
void free(void* memory) noexcept {
  discount(memory);
  __libc_free(memory);
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*body)(void*), void* argument) noexcept {
  static const auto next = reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
  if (threadFault.hits()) return EAGAIN;
  startingThread = true;
  const int result = next(thread, attributes, body, argument);
  startingThread = false;
  return result;
}

}  // extern "C"
