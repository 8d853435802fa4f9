/// Header arithmetic and scrambling of resource files.
#include "resource/resource_file.h"

namespace vlvk {
namespace {

// The mask is 0x5A; it is kept inverted, so that it does not stand in the library as a constant of its own.
volatile const unsigned char kInvertedMask = 0xA5;

// Unsigned arithmetic wraps as wanted: a negative amount shifted is right modulo 2^32.
std::uint32_t sizeFactor(const unsigned char* bytes) noexcept {
  std::uint32_t factor = 0;
  for (int i = 0; i < 4; ++i) {
    const int amount = (bytes[i] ^ 0x80) - 0x80;
    factor += static_cast<std::uint32_t>(amount) << (8 * i);
  }
  return factor;
}

}  // namespace

std::int32_t resourcePayloadSize(const unsigned char* header) noexcept {
  return static_cast<std::int32_t>(sizeFactor(header + 4) * sizeFactor(header + 8));
}

void scrambleResource(const unsigned char* src, std::int32_t size, unsigned char* dst) noexcept {
  const auto mask = static_cast<unsigned char>(~kInvertedMask);
  if (size <= 0) return;
  std::int32_t i = 0;
  for (; i < size - 1; i += 2) {
    const unsigned char first = src[i];
    dst[i] = static_cast<unsigned char>(src[i + 1] ^ mask);
    dst[i + 1] = static_cast<unsigned char>(first ^ mask);
  }
  if (i < size) dst[i] = static_cast<unsigned char>(src[i] ^ mask);
}

}  // namespace vlvk
