/// What tests of the desktop program need: running it, and making and reading picture files without its own code.
#ifndef VLVK_TESTS_TOOLS_TOOL_SUPPORT_H
#define VLVK_TESTS_TOOLS_TOOL_SUPPORT_H

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace vlvk::tool_test {

using Bytes = std::vector<std::uint8_t>;

/// A run of the program.
struct ProgramRun {
  int exitCode;              ///< -1: killed by a signal
  int signal;                ///< which one; 0: none
  std::uint64_t peakMemory;  ///< bytes that it had in use at once
  std::string out;
  std::string err;
};

/// What a run meets with.
struct Surroundings {
  std::uint64_t fileLimit = 0;  ///< bytes that the program may write to one file; 0: as many as it likes
  int out = -1;                 ///< descriptor that is its standard output; -1: a file, for ProgramRun::out
  int err = -1;                 ///< likewise, for ProgramRun::err
  int in = -1;                  ///< descriptor that is its standard input; -1: that of the test
  std::function<void(pid_t)> meanwhile = nullptr;  ///< called with the process while it runs
};

ProgramRun runProgram(const std::vector<std::string>& arguments, const Surroundings& surroundings = {});

/// An RGBA picture.
struct Image {
  int width = 0;
  int height = 0;
  Bytes pixels;

  const std::uint8_t* at(int x, int y) const { return &pixels[(static_cast<std::size_t>(y) * width + x) * 4]; }
};

/// A picture whose bytes, alpha included, follow a fixed irregular pattern.
Image patternImage(int width, int height);

/// The part of `image` that starts at column `x`.
Image columnsOf(const Image& image, int x, int width);

Bytes readBytes(const std::filesystem::path& path);
void writeBytes(const std::filesystem::path& path, const Bytes& bytes);

Image readPng(const std::filesystem::path& path);

/// A PNG of any kind.
struct PngKind {
  int colorType;  ///< PNG_COLOR_TYPE_...
  int depth;
  bool interlaced = false;
  bool keyed = false;  ///< tRNS: palette entry i has alpha 255 - i; the key of other kinds is sample value 1
  Bytes profile = {};
};

/// Samples of a pixel.
int channelsOf(int colorType);

/// @param sample  value of a channel at a place, below 1 << depth; palette entry i is (i, 255 - i, 3 i)
void writePng(const std::filesystem::path& path, int width, int height, const PngKind& kind,
              const std::function<int(int x, int y, int channel)>& sample);

void writeRgba(const std::filesystem::path& path, const Image& image);

/// A JPEG of quality 100 without chroma reduction.
struct JpegKind {
  int space;  ///< J_COLOR_SPACE of samples and file; YCCK takes CMYK samples
  int channels;
  bool adobe = true;
  bool progressive = false;
  Bytes exif = {};  ///< from the byte order mark on
  Bytes profile = {};
};

void writeJpeg(const std::filesystem::path& path, int width, int height, const JpegKind& kind,
               const std::function<int(int x, int y, int channel)>& sample);

}  // namespace vlvk::tool_test

#endif
