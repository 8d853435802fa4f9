/// The container of the data files that a host supplies, such as "adjust.vlk": header and scrambling.
///
///     offset  size
///       0      4     free for a signature or version, not read
///       4      4     A, factor of the payload size, little-endian
///       8      4     B, the other factor
///      12     A * B  payload, scrambled; the header is not
///
/// Nothing here allocates, throws or reads files, so that the engine can use it between calls of a Java host.
#ifndef VLVK_RESOURCE_RESOURCE_FILE_H
#define VLVK_RESOURCE_RESOURCE_FILE_H

#include <cstdint>

#include "resource/color_picture.h"

namespace vlvk {

inline constexpr int kResourceHeaderSize = 12;

/// Room that the filter offers for a payload.
inline constexpr std::int32_t kMaxResourcePayload = kColorPictureSize;

/// The payload size that a header states: A * B, wrapping at 32 bits. May be negative or far too large.
///
/// Each factor is b0 + b1 * 256 + b2 * 65536 + b3 * 16777216 with *signed* bytes, as Java delivers them: a byte of 128
/// or more counts as a negative amount, so FF 08 00 00 is 2047 and not 2303.
///
/// @param header  kResourceHeaderSize bytes
std::int32_t resourcePayloadSize(const unsigned char* header) noexcept;

/// Whether a payload of this size is read at all: 0 to kMaxResourcePayload bytes.
constexpr bool isResourcePayloadAllowed(std::int32_t size) noexcept {
  return size >= 0 && size <= kMaxResourcePayload;
}

/// Scrambles a payload, or unscrambles it: the rule is its own inverse. Neighbours change places and every byte is
/// masked; an odd last byte is only masked.
///
/// @param src   `size` bytes
/// @param size  0 or less: nothing is done
/// @param dst   `size` bytes; either `src` itself or without overlap
void scrambleResource(const unsigned char* src, std::int32_t size, unsigned char* dst) noexcept;

}  // namespace vlvk

#endif
