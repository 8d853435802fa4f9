/// See low_memory.h.
#include "bindings/low_memory.h"

#include <cstdint>
#include <cstdlib>

#if UINTPTR_MAX > UINT32_MAX
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace vlvk {

#if UINTPTR_MAX > UINT32_MAX

namespace {

#ifdef MAP_FIXED_NOREPLACE
constexpr int kAtAddressOnly = MAP_FIXED_NOREPLACE;
#else
constexpr int kAtAddressOnly = 0;  // the address is a hint then; what comes back elsewhere is given up again
#endif

constexpr std::uintptr_t kEnd = std::uintptr_t{1} << 31;
// Below this, systems like to keep pages unmapped so that null pointers with an offset fault. They come last.
constexpr std::uintptr_t kNearNull = std::uintptr_t{1} << 16;

std::size_t wholePages(std::size_t size, std::size_t page) {
  return (size + page - 1) / page * page;
}

void* mapAt(std::uintptr_t address, std::size_t size) {
  auto* wanted = reinterpret_cast<void*>(address);  // NOLINT(performance-no-int-to-ptr): the address is the point
  void* memory = mmap(wanted, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | kAtAddressOnly, -1, 0);
  if (memory == MAP_FAILED || memory == wanted) return memory == MAP_FAILED ? nullptr : memory;
  munmap(memory, size);
  return nullptr;
}

/// The first free place in a range of addresses.
void* mapBetween(std::uintptr_t begin, std::uintptr_t end, std::size_t size, std::size_t page) {
  for (std::uintptr_t address = begin; address + size <= end; address += page) {
    if (void* memory = mapAt(address, size)) return memory;
  }
  return nullptr;
}

}  // namespace

void* allocateLow(std::size_t size) noexcept {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  const std::size_t bytes = wholePages(size, page);
  const std::uintptr_t begin = wholePages(kNearNull, page);
  void* memory = mapBetween(begin, kEnd, bytes, page);
  return memory != nullptr ? memory : mapBetween(page, begin, bytes, page);
}

void releaseLow(void* memory, std::size_t size) noexcept {
  if (memory != nullptr) munmap(memory, wholePages(size, static_cast<std::size_t>(sysconf(_SC_PAGESIZE))));
}

#else

void* allocateLow(std::size_t size) noexcept {
  return std::malloc(size);
}

void releaseLow(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}

#endif

}  // namespace vlvk
