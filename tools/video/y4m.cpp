/// See y4m.h.
#include "tools/video/y4m.h"

#include <strings.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <string>
#include <system_error>

#include "tools/io/messages.h"

namespace vlvk::tool {
namespace {

// Sites of the chroma samples differ; the engine knows none.
constexpr const char* kColorSpaces[] = {"420", "420jpeg", "420mpeg2", "420paldv"};

constexpr std::string_view kRange = "XCOLORRANGE=";
constexpr std::string_view kSubsampling = "XYSCSS=";  // older than the tag C, which overrides it

struct Tags {
  std::string_view width;
  std::string_view height;
  std::string_view colorSpace;
  std::string_view subsampling;
  std::string_view range;
};

// Unknown tags mean nothing here.
Tags tagsOf(std::string_view line) {
  Tags tags;
  while (!line.empty()) {
    const std::string_view tag = line.substr(0, line.find(' '));
    line.remove_prefix(std::min(tag.size() + 1, line.size()));
    if (tag.starts_with('W')) tags.width = tag;
    if (tag.starts_with('H')) tags.height = tag;
    if (tag.starts_with('C')) tags.colorSpace = tag;
    if (tag.starts_with(kSubsampling)) tags.subsampling = tag;
    if (tag.starts_with(kRange)) tags.range = tag;
  }
  return tags;
}

std::uint32_t sideOf(std::string_view tag, const char* what) {
  if (tag.empty()) throw Error(std::string("the Y4M header has no ") + what);
  std::uint32_t side = 0;
  const char* end = tag.data() + tag.size();
  const auto [last, error] = std::from_chars(tag.data() + 1, end, side);
  if (error != std::errc() || last != end || side == 0) {
    throw Error("the Y4M header has no valid " + std::string(what) + ": " + std::string(tag));
  }
  return side;
}

void checkName(std::string_view tag, std::size_t prefix) {
  const std::string name(tag.substr(std::min(prefix, tag.size())));
  const bool known = std::any_of(std::begin(kColorSpaces), std::end(kColorSpaces),
                                 [&](const char* space) { return strcasecmp(space, name.c_str()) == 0; });
  if (tag.empty() || (known && name.find('\0') == std::string::npos)) return;
  throw Error("frames of " + std::string(tag) + " are not taken, only 8-bit 4:2:0: convert them with ffmpeg, " +
              "-vf format=yuv420p");
}

void checkColorSpace(const Tags& tags) {
  if (tags.colorSpace.empty()) {
    checkName(tags.subsampling, kSubsampling.size());
  } else {
    checkName(tags.colorSpace, 1);
  }
}

VlvkRange rangeOf(const Tags& tags) {
  const std::string range(tags.range.substr(std::min(kRange.size(), tags.range.size())));
  return strcasecmp(range.c_str(), "FULL") == 0 ? VLVK_FULL : VLVK_LIMITED;
}

void checkLine(std::string_view line) {
  if (line.substr(0, line.find_first_of(" \n")) != kY4mStart) {
    throw Error("no Y4M stream, which begins with YUV4MPEG2; frames without headers need --format and --size");
  }
  if (!line.ends_with('\n')) {
    throw Error(line.size() < kMaxY4mLine ? "the stream ends inside the Y4M header"
                                          : "the Y4M header is longer than " + std::to_string(kMaxY4mLine) + " bytes");
  }
}

}  // namespace

Y4mHeader parseY4mHeader(std::string_view line) {
  checkLine(line);
  line.remove_suffix(1);
  const Tags tags = tagsOf(line.substr(kY4mStart.size()));
  const std::uint32_t width = sideOf(tags.width, "width");
  const std::uint32_t height = sideOf(tags.height, "height");
  checkPictureSize(width, height);
  checkColorSpace(tags);
  return {{static_cast<int>(width), static_cast<int>(height)}, rangeOf(tags)};
}

bool isY4mFrameHeader(std::string_view line) {
  return line.ends_with('\n') && line.substr(0, line.find_first_of(" \n")) == kY4mFrame;
}

}  // namespace vlvk::tool
