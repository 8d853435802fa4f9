/// See frame_records.h.
#include "tools/video/frame_records.h"

#include <zlib.h>

#include <cstdio>
#include <span>

namespace vlvk::tool {
namespace {

std::string lineOf(const std::string& name, unsigned long checksum) {
  char digits[12];
  std::snprintf(digits, sizeof digits, " %08lx\n", checksum);
  return name + digits;
}

}  // namespace

void FrameChecksums::add(VideoFrame* frame) {
  unsigned long checksum = 0;
  z_off_t bytes = 0;
  for (const std::span<std::uint8_t> part : frame->streamParts()) {
    checksum = crc32_z(checksum, part.data(), part.size());
    bytes += static_cast<z_off_t>(part.size());
  }
  all_ = crc32_combine(all_, checksum, bytes);
  lines_ += lineOf(std::to_string(frame->number), checksum);
}

std::string FrameChecksums::text() const {
  return lines_ + lineOf("all", all_);
}

void FrameTimes::add(std::uint64_t number, double filtered, double waited) {
  char times[64];
  std::snprintf(times, sizeof times, " %.3f %.3f\n", filtered, waited);
  lines_ += std::to_string(number) + times;
}

}  // namespace vlvk::tool
