/// Streams of frames, with headers and without: what is read, made ready for the engine and back is the stream again,
/// up to where it breaks.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "fuzz/input.h"
#include "tools/io/messages.h"
#include "tools/picture/frame_size.h"
#include "tools/video/frame_stream.h"
#include "tools/video/video_frame.h"

namespace {

using vlvk::tool::ChromaLayout;
using vlvk::tool::RawFrames;
using vlvk::tool::VideoFrame;

/// Puts an input into a file that exists in memory only, and returns its name.
std::string fileOf(std::span<const std::uint8_t> bytes) {
  static const int descriptor = memfd_create("input", MFD_CLOEXEC);
  fuzz::check(ftruncate(descriptor, 0) == 0 && pwrite(descriptor, bytes.data(), bytes.size(), 0) == std::ssize(bytes),
              "no file in memory");
  return "/proc/self/fd/" + std::to_string(descriptor);
}

constexpr std::uint64_t kMaxFrame = 1U << 20;  // larger ones are slow and end early all the same

/// Raw frames where the first byte is none that a header begins with.
std::optional<RawFrames> rawFramesOf(std::span<const std::uint8_t> input) {
  if (input.empty() || input[0] == 'Y') return std::nullopt;
  const int shape = input[0];
  return RawFrames{{1 + shape % 6, 1 + shape / 6 % 7}, static_cast<ChromaLayout>(shape % 3)};
}

/// The whole frames of a stream, put together again.
std::vector<std::uint8_t> readFrames(vlvk::tool::FrameReader* reader) {
  std::vector<std::uint8_t> bytes(reader->header().begin(), reader->header().end());
  VideoFrame frame(reader->size(), reader->layout());
  try {
    for (std::uint64_t number = 1; reader->read(&frame, {}); ++number) {
      fuzz::check(frame.number == number, "a frame has another's number");
      bytes.insert(bytes.end(), frame.header.begin(), frame.header.end());
      bytes.insert(bytes.end(), frame.bytes().begin(), frame.bytes().end());
    }
  } catch (const vlvk::tool::BrokenStream& error) {
    fuzz::check(!std::string(error.what()).empty(), "an error without a text");
  }
  return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::optional<RawFrames> raw = rawFramesOf({data, size});
  const std::span<const std::uint8_t> stream = std::span(data, size).subspan(raw ? 1 : 0);
  const std::string file = fileOf(stream);
  try {
    vlvk::tool::FrameReader reader(file, raw);
    const auto [width, height] = reader.size();
    fuzz::check(width > 0 && height > 0, "frames without pixels");
    vlvk::tool::checkPictureSize(static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height));
    if (vlvk::tool::frameBytes(reader.size()) > kMaxFrame) return 0;
    const std::vector<std::uint8_t> bytes = readFrames(&reader);
    fuzz::check(bytes.size() <= stream.size() && std::equal(bytes.begin(), bytes.end(), stream.begin()),
                "another stream than was read");
  } catch (const vlvk::tool::Error& error) {
    fuzz::check(std::string(error.what()).starts_with(file + ": "), "an error does not name its file");
  }
  return 0;
}
