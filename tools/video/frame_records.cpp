/// See frame_records.h.
#include "tools/video/frame_records.h"

#include <zlib.h>

#include <cstddef>
#include <cstdio>

namespace vlvk::tool {
namespace {

std::string lineOf(const std::string& name, unsigned long checksum) {
  char digits[12];
  std::snprintf(digits, sizeof digits, " %08lx\n", checksum);
  return name + digits;
}

// Of the rows of a plane, after bytes whose checksum is `checksum`.
unsigned long added(unsigned long checksum, const VlvkFrame& frame, int plane, int rowBytes, int rows) {
  for (int row = 0; row < rows; ++row) {
    const unsigned char* bytes = frame.plane[plane] + static_cast<std::ptrdiff_t>(row) * frame.stride[plane];
    checksum = crc32_z(checksum, bytes, static_cast<z_size_t>(rowBytes));
  }
  return checksum;
}

}  // namespace

void FrameChecksums::add(std::uint64_t number, const VlvkFrame& frame) {
  const int columns = (frame.width + 1) / 2;
  const int rows = (frame.height + 1) / 2;
  const bool planar = frame.format == VLVK_I420;
  unsigned long checksum = added(0, frame, 0, frame.width, frame.height);
  checksum = added(checksum, frame, 1, planar ? columns : 2 * columns, rows);
  if (planar) checksum = added(checksum, frame, 2, columns, rows);
  const std::uint64_t bytes = std::uint64_t{1} * frame.width * frame.height + std::uint64_t{2} * columns * rows;
  all_ = crc32_combine(all_, checksum, static_cast<z_off_t>(bytes));
  lines_ += lineOf(std::to_string(number), checksum);
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
