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
  const std::span<std::uint8_t> bytes = frame->bytes();
  const unsigned long checksum = crc32_z(0, bytes.data(), bytes.size());
  all_ = crc32_combine(all_, checksum, static_cast<z_off_t>(bytes.size()));
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
