/// Picture files through the program's decoders: a picture of which every byte was written, or an error.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "fuzz/input.h"
#include "tools/io/messages.h"
#include "tools/picture/metadata.h"
#include "tools/picture/picture_file.h"

#ifdef VLVK_FUZZING_ENGINE
#include <zlib.h>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);
#endif

namespace {

/// What new arrays are filled with, pixels among them, and how large they may get: inputs of a few bytes may claim any
/// number of pixels, and most of those are slow without being of interest.
int fillByte = 0;
constexpr std::size_t kMaxArray = std::size_t{4} << 20;

}  // namespace

void* operator new[](std::size_t size) {
  void* memory = size <= kMaxArray ? std::malloc(std::max<std::size_t>(size, 1)) : nullptr;
  if (memory == nullptr) throw std::bad_alloc();
  return std::memset(memory, fillByte, size);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}

namespace {

using vlvk::tool::Picture;
using vlvk::tool::PictureKind;
using File = std::span<const std::uint8_t>;

std::optional<Picture> decode(File file, int fill) {
  fillByte = fill;
  try {
    vlvk::tool::Notes notes;
    return vlvk::tool::decodePicture(vlvk::tool::kindOfContent(file).value_or(PictureKind::kPng), file, &notes);
  } catch (const vlvk::tool::Error& error) {
    fuzz::check(std::strlen(error.what()) > 0, "an error without a text");
  } catch (const std::bad_alloc&) {
    // Larger than this fuzzer wants.
  }
  return std::nullopt;
}

std::size_t bytesOf(const Picture& picture) {
  return picture.rowBytes() * static_cast<std::size_t>(picture.height);
}

bool same(const Picture& a, const Picture& b) {
  return a.width == b.width && a.height == b.height && a.hasAlpha == b.hasAlpha && a.colorProfile == b.colorProfile &&
         std::memcmp(a.pixels.get(), b.pixels.get(), bytesOf(a)) == 0;
}

/// A picture that was read can be written, as PNG without loss and upright.
void checkWriting(const Picture& picture) {
  fuzz::check(!vlvk::tool::encodePicture(PictureKind::kJpeg, picture, 50).empty(), "written as nothing");
  fuzz::check(!vlvk::tool::encodePicture(PictureKind::kWebp, picture, 50).empty(), "written as nothing");
  Picture again = vlvk::tool::decodePicture(PictureKind::kPng, vlvk::tool::encodePicture(PictureKind::kPng, picture));
  again.colorProfile = picture.colorProfile;  // one that libpng finds fault with is left out
  fuzz::check(same(picture, again), "another picture after writing and reading");
}

/// Metadata of which no byte is right, which few inputs have in a picture that can be read.
void checkMetadata(const std::vector<std::uint8_t>& block) {
  vlvk::tool::PictureOrigin origin;
  origin.metadata = {block, std::string(block.begin(), block.end()), block, {}};
  const int orientation = vlvk::tool::readMetadata(&origin, nullptr);
  fuzz::check(orientation >= 1 && orientation <= 8, "an orientation that does not exist");
  vlvk::tool::PictureOrigin written;
  written.metadata = vlvk::tool::metadataFor(origin, {16, 16}, {}, nullptr);
  fuzz::check(vlvk::tool::readMetadata(&written, nullptr) == 1, "not upright after writing");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::uint8_t> copy(data, data + size);
  checkMetadata(copy);
  const std::optional<Picture> first = decode(copy, 0);
  const std::optional<Picture> second = decode(copy, 255);
  fuzz::check(first.has_value() == second.has_value(), "read only sometimes");
  if (!first) return 0;
  fuzz::check(first->width > 0 && first->height > 0, "a picture without pixels");
  fuzz::check(same(*first, *second), "pixels that were never written");
  if (bytesOf(*first) < 100000) checkWriting(*first);
  return 0;
}

#ifdef VLVK_FUZZING_ENGINE
/// What libheif and libdav1d keep of damaged pictures. The tests see leaks of whole ones.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libheif.so\nleak:libdav1d.so\n";
}

namespace {

constexpr std::size_t kPngStart = 8;
constexpr std::size_t kChunkFrame = 12;  // length, type, checksum

std::uint32_t bigEndian(const std::uint8_t* bytes) {
  return std::uint32_t{bytes[0]} << 24 | bytes[1] << 16 | bytes[2] << 8 | bytes[3];
}

/// Chunks with a wrong checksum are as far as random changes would get.
void repairChecksums(std::uint8_t* png, std::size_t size) {
  for (std::size_t at = kPngStart; at + kChunkFrame <= size;) {
    const std::size_t length = bigEndian(png + at);
    if (length > size - at - kChunkFrame) return;
    const auto sum = crc32(crc32(0, nullptr, 0), png + at + 4, static_cast<uInt>(length + 4));
    for (std::size_t i = 0; i < 4; ++i)
      png[at + 8 + length + i] = static_cast<std::uint8_t>(sum >> (24 - 8 * i));
    at += kChunkFrame + length;
  }
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned int seed) {
  const std::size_t mutated = LLVMFuzzerMutate(data, size, maxSize);
  const bool png = vlvk::tool::kindOfContent({data, mutated}) == PictureKind::kPng;
  if (seed % 8 != 0 && png) repairChecksums(data, mutated);
  return mutated;
}
#endif
