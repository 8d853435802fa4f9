/// Where the bytes of a caller's plane begin and end.
#ifndef VLVK_ENGINE_PLANE_EXTENT_H
#define VLVK_ENGINE_PLANE_EXTENT_H

#include <cstddef>
#include <cstdint>

namespace vlvk {

/// From the first to the last byte.
struct PlaneExtent {
  std::uintptr_t begin;
  std::uintptr_t end;

  bool overlaps(const PlaneExtent& other) const { return begin < other.end && other.begin < end; }
};

constexpr std::int64_t planeBytes(std::int64_t stride, std::int64_t rowBytes, std::int64_t rows) {
  return stride * (rows - 1) + rowBytes;
}

/// Whether so many bytes lie between the address and the end of the address space: what runs past it is no plane.
inline bool fitsMemory(const std::uint8_t* plane, std::int64_t bytes) {
  return bytes <= PTRDIFF_MAX &&
         static_cast<std::uintptr_t>(bytes) <= UINTPTR_MAX - reinterpret_cast<std::uintptr_t>(plane);
}

/// Of a plane that fits.
inline PlaneExtent extentOf(const std::uint8_t* plane, std::int64_t bytes) {
  const auto begin = reinterpret_cast<std::uintptr_t>(plane);
  return {begin, begin + static_cast<std::uintptr_t>(bytes)};
}

}  // namespace vlvk

#endif
