/// Memory that one call works in.
#ifndef VLVK_BASE_SCRATCH_MEMORY_H
#define VLVK_BASE_SCRATCH_MEMORY_H

#include <cstddef>
#include <cstdlib>

#include "base/checked_size.h"

namespace vlvk {

/// Zeroed bytes, freed at the end of the scope.
class ScratchMemory {
 public:
  explicit ScratchMemory(CheckedSize size) : memory_(size.fits() ? std::calloc(size.bytes(), 1) : nullptr) {}
  ScratchMemory(const ScratchMemory&) = delete;
  ScratchMemory& operator=(const ScratchMemory&) = delete;
  ~ScratchMemory() { std::free(memory_); }

  /// Whether there was memory; an empty size may count as none.
  bool available() const { return memory_ != nullptr; }

  /// The memory from `offset` bytes on, which suits the alignment of T.
  template <class T>
  T* at(std::size_t offset) const {
    return static_cast<T*>(static_cast<void*>(static_cast<unsigned char*>(memory_) + offset));
  }

 private:
  void* memory_;
};

}  // namespace vlvk

#endif
