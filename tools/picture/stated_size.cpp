/// See stated_size.h. A size that is wrong or missing costs time or memory, nothing else: decoders check it again.
#include "tools/picture/stated_size.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <span>
#include <string_view>
#include <system_error>
#include <vector>

namespace vlvk::tool {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kStart = std::size_t{1} << 20;

// Of a file that has `bytes` more bytes than `at`.
std::uint64_t bigEndian(Bytes file, std::size_t at, std::size_t bytes) {
  std::uint64_t value = 0;
  for (const std::uint8_t byte : file.subspan(at, bytes))
    value = value << 8 | byte;
  return value;
}

std::uint64_t littleEndian(Bytes file, std::size_t at, std::size_t bytes) {
  std::uint64_t value = 0;
  for (std::size_t i = bytes; i > 0; --i)
    value = value << 8 | file[at + i - 1];
  return value;
}

bool holds(Bytes file, std::size_t at, std::string_view text) {
  return file.size() >= at + text.size() &&
         std::equal(text.begin(), text.end(), file.begin() + static_cast<std::ptrdiff_t>(at),
                    [](char c, std::uint8_t byte) { return static_cast<std::uint8_t>(c) == byte; });
}

// Height and width stand in the header of the frame, SOF0 to SOF15 without DHT, JPG and DAC, after other segments.
std::optional<std::uint64_t> jpegPixels(Bytes file) {
  for (std::size_t at = 2; at + 9 <= file.size() && file[at] == 0xFF; at += 2 + bigEndian(file, at + 2, 2)) {
    const std::uint8_t marker = file[at + 1];
    if (marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC) {
      return bigEndian(file, at + 5, 2) * bigEndian(file, at + 7, 2);
    }
  }
  return std::nullopt;
}

// Lossy, lossless and extended files have a header each.
std::optional<std::uint64_t> webpPixels(Bytes file) {
  if (file.size() < 30) return std::nullopt;
  constexpr std::uint64_t kMask = 0x3FFF;
  if (holds(file, 12, "VP8 ")) return (littleEndian(file, 26, 2) & kMask) * (littleEndian(file, 28, 2) & kMask);
  if (holds(file, 12, "VP8X")) return (littleEndian(file, 24, 3) + 1) * (littleEndian(file, 27, 3) + 1);
  if (!holds(file, 12, "VP8L")) return std::nullopt;
  const std::uint64_t sides = littleEndian(file, 21, 4);
  return ((sides & kMask) + 1) * ((sides >> 14 & kMask) + 1);
}

// The largest of the sizes in it: a picture that is put together of tiles states theirs as well.
std::optional<std::uint64_t> heifPixels(Bytes file) {
  constexpr std::string_view kSize = "ispe";
  std::optional<std::uint64_t> largest;
  for (auto at = file.begin();; ++at) {
    at = std::search(at, file.end(), kSize.begin(), kSize.end());
    if (file.end() - at < 16) return largest;
    const auto box = static_cast<std::size_t>(at - file.begin());
    largest = std::max(largest.value_or(0), bigEndian(file, box + 8, 4) * bigEndian(file, box + 12, 4));
  }
}

std::vector<std::uint8_t> startOf(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return {};
  std::ifstream file(path, std::ios::binary);
  std::vector<std::uint8_t> bytes(kStart);
  file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  return bytes;
}

}  // namespace

std::optional<std::uint64_t> statedPixels(const std::string& path) {
  const std::vector<std::uint8_t> file = startOf(path);
  if (holds(file, 1, "PNG") && file.size() >= 24) return bigEndian(file, 16, 4) * bigEndian(file, 20, 4);
  if (holds(file, 0, "\xFF\xD8")) return jpegPixels(file);
  if (holds(file, 4, "ftyp")) return heifPixels(file);
  if (holds(file, 0, "RIFF") && holds(file, 8, "WEBP")) return webpPixels(file);
  return std::nullopt;
}

}  // namespace vlvk::tool
