/// Memory with an unreadable page directly after or directly before it, so that one byte too far is a crash.
#ifndef VLVK_TESTS_SUPPORT_GUARDED_BUFFER_H
#define VLVK_TESTS_SUPPORT_GUARDED_BUFFER_H

#include <cstddef>
#include <cstdint>

namespace testing_support {

/// Which side of the data touches the unreadable page exactly. The other side has one too, up to a page further away.
enum class Guard { kBehind, kBefore };

class GuardedBuffer {
 public:
  /// Every byte of the buffer starts as `fill`. A buffer of 0 bytes is at an address that cannot be read.
  GuardedBuffer(std::size_t size, Guard guard, std::uint8_t fill);
  ~GuardedBuffer();
  GuardedBuffer(GuardedBuffer&& other) noexcept;

  std::uint8_t* data() const { return data_; }
  std::size_t size() const { return size_; }

  /// From here on a write is a crash.
  void makeReadOnly();

  /// The buffer as elements of another type, aligned for them if its size is a multiple of sizeof(T).
  template <typename T>
  T* as() const {
    return reinterpret_cast<T*>(data_);
  }

 private:
  void protect(int protection);

  std::size_t size_, mappingSize_;
  std::uint8_t* mapping_;
  std::uint8_t* data_;
};

}  // namespace testing_support

#endif
