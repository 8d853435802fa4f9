/// One entry of the first EXIF directory, and one field of an ICC header.
#include "tools/picture/metadata.h"

#include <cstddef>
#include <cstring>

namespace vlvk::tool {
namespace {

constexpr std::size_t kEntrySize = 12;
constexpr std::uint32_t kOrientationTag = 0x0112;
constexpr std::uint32_t kShortType = 3;

// Numbers of either byte order; 0 where the data ends early, which is no valid value of anything read here.
class TiffReader {
 public:
  explicit TiffReader(std::span<const std::uint8_t> data) : data_(data) {}

  bool readByteOrder() {
    if (data_.size() < 8 || data_[0] != data_[1] || (data_[0] != 'I' && data_[0] != 'M')) return false;
    bigEndian_ = data_[0] == 'M';
    return number(2, 2) == 42;
  }

  std::uint32_t number(std::size_t offset, std::size_t bytes) const {
    if (offset > data_.size() || bytes > data_.size() - offset) return 0;
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < bytes; ++i) {
      value = value << 8 | data_[offset + (bigEndian_ ? i : bytes - 1 - i)];
    }
    return value;
  }

 private:
  std::span<const std::uint8_t> data_;
  bool bigEndian_ = false;
};

}  // namespace

int exifOrientation(std::span<const std::uint8_t> tiff) {
  TiffReader reader(tiff);
  if (!reader.readByteOrder()) return 1;
  const std::size_t directory = reader.number(4, 4);
  const std::size_t entries = reader.number(directory, 2);
  for (std::size_t i = 0; i < entries; ++i) {
    const std::size_t entry = directory + 2 + i * kEntrySize;
    if (reader.number(entry, 2) != kOrientationTag || reader.number(entry + 2, 2) != kShortType) continue;
    const std::uint32_t value = reader.number(entry + 8, 2);
    return value >= 1 && value <= 8 ? static_cast<int>(value) : 1;
  }
  return 1;
}

bool isRgbProfile(std::span<const std::uint8_t> profile) {
  // The header of a profile has 128 bytes, the colour space stands at byte 16.
  return profile.size() >= 128 && std::memcmp(profile.data() + 16, "RGB ", 4) == 0;
}

}  // namespace vlvk::tool
