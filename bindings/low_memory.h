/// Memory at addresses that fit 31 bits.
#ifndef VLVK_BINDINGS_LOW_MEMORY_H
#define VLVK_BINDINGS_LOW_MEMORY_H

#include <cstddef>

namespace vlvk {

/// Whole pages below 2^31, or null when none are free there: every free address is tried. On 32-bit processors, where
/// any address fits a handle, ordinary memory.
void* allocateLow(std::size_t size) noexcept;

/// Releases what allocateLow returned for the same size; null is allowed.
void releaseLow(void* memory, std::size_t size) noexcept;

}  // namespace vlvk

#endif
