/// Structures that begin with their size and grow at their end, so that programs and libraries of different minor
/// versions fit together.
#ifndef VLVK_ENGINE_VERSIONED_H
#define VLVK_ENGINE_VERSIONED_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <vlvk/makeup.h>

namespace vlvk {

/// Sizes of version 1, up to the last member that structures had then. They stay when members are added.
inline constexpr std::size_t kFirstFrameSize = offsetof(VlvkFrame, stride) + sizeof(VlvkFrame::stride);
inline constexpr std::size_t kFirstSettingsSize = offsetof(VlvkSettings, threads) + sizeof(VlvkSettings::threads);
inline constexpr std::size_t kFirstMaskSize = offsetof(VlvkMask, plane) + sizeof(VlvkMask::plane);

/// More than any structure will have: a larger size is that of something else.
inline constexpr std::size_t kLargestStructure = 4096;

/// Copies a caller's structure into one as this library has it; members past the caller's size are 0.
///
/// @tparam kFirstSize  of version 1
/// @return false, with `known` untouched, for a size out of bounds, or where members past those known are not 0
template <std::size_t kFirstSize, class T>
bool copyVersioned(const T& given, T& known) {
  static_assert(kFirstSize <= sizeof(T));
  const std::size_t size = given.size;
  if (size < kFirstSize || size > kLargestStructure) return false;
  const auto* bytes = static_cast<const unsigned char*>(static_cast<const void*>(&given));
  if (size > sizeof(T) && std::any_of(bytes + sizeof(T), bytes + size, [](unsigned char b) { return b != 0; })) {
    return false;
  }
  T copy{};
  std::memcpy(&copy, bytes, std::min(size, sizeof(T)));
  known = copy;
  return true;
}

}  // namespace vlvk

#endif
