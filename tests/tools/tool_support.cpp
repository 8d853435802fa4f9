/// Child processes, and plain use of libpng and libjpeg. A picture that cannot be made ends the test program.
#include "tests/tools/tool_support.h"

#include <fcntl.h>
#include <png.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>  // jpeglib.h needs FILE and size_t declared before it

#include <jpeglib.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace vlvk::tool_test {
namespace {

[[noreturn]] void becomeProgram(const std::vector<std::string>& arguments, const Surroundings& with) {
  std::vector<char*> words{const_cast<char*>(VLVK_TOOL_PROGRAM)};  // NOLINT(cppcoreguidelines-pro-type-const-cast)
  for (const std::string& word : arguments)
    words.push_back(const_cast<char*>(word.c_str()));  // NOLINT
  words.push_back(nullptr);
  const rlimit limit{with.fileLimit, with.fileLimit};
  if (with.fileLimit != 0) setrlimit(RLIMIT_FSIZE, &limit);
  if (with.in >= 0) dup2(with.in, STDIN_FILENO);
  dup2(with.out, STDOUT_FILENO);
  dup2(with.err, STDERR_FILENO);
  execv(VLVK_TOOL_PROGRAM, words.data());
  _exit(126);
}

std::string textOf(std::FILE* file) {
  std::string text;
  std::rewind(file);
  for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file))
    text += static_cast<char>(c);
  std::fclose(file);
  return text;
}

void setPalette(png_structp png, png_infop info, int entries, bool keyed) {
  std::vector<png_color> palette;
  Bytes alpha;
  for (int i = 0; i < entries; ++i) {
    palette.push_back({static_cast<png_byte>(i), static_cast<png_byte>(255 - i), static_cast<png_byte>(3 * i)});
    alpha.push_back(static_cast<png_byte>(255 - i));
  }
  png_set_PLTE(png, info, palette.data(), entries);
  if (keyed) png_set_tRNS(png, info, alpha.data(), entries, nullptr);
}

// Samples of one row, packed to `depth` bits, big-endian.
Bytes packedRow(int width, int depth, int channels, const std::function<int(int, int)>& sample) {
  Bytes row((static_cast<std::size_t>(width) * channels * depth + 7) / 8);
  for (int i = 0; i < width * channels; ++i) {
    const int value = sample(i / channels, i % channels);
    for (int bit = 0; bit < depth; ++bit) {
      const std::size_t position = static_cast<std::size_t>(i) * depth + bit;
      row[position / 8] |= static_cast<std::uint8_t>((value >> (depth - 1 - bit) & 1) << (7 - position % 8));
    }
  }
  return row;
}

void configure(jpeg_compress_struct* codec, const JpegKind& kind) {
  codec->input_components = kind.channels;
  codec->in_color_space = kind.space == JCS_YCCK ? JCS_CMYK : static_cast<J_COLOR_SPACE>(kind.space);
  jpeg_set_defaults(codec);
  if (kind.space == JCS_YCCK) jpeg_set_colorspace(codec, JCS_YCCK);
  jpeg_set_quality(codec, 100, TRUE);
  if (kind.progressive) jpeg_simple_progression(codec);
  codec->write_Adobe_marker = kind.adobe ? codec->write_Adobe_marker : FALSE;
  for (int c = 0; c < codec->num_components; ++c) {
    codec->comp_info[c].h_samp_factor = 1;
    codec->comp_info[c].v_samp_factor = 1;
  }
}

}  // namespace

ProgramRun runProgram(const std::vector<std::string>& arguments, const Surroundings& surroundings) {
  std::FILE* out = std::tmpfile();
  std::FILE* err = std::tmpfile();
  const pid_t child = fork();
  if (child == 0) {
    Surroundings with = surroundings;
    if (with.out < 0) with.out = fileno(out);
    if (with.err < 0) with.err = fileno(err);
    becomeProgram(arguments, with);
  }
  if (child > 0 && surroundings.meanwhile) surroundings.meanwhile(child);
  int status = 0;
  rusage usage{};
  if (child < 0 || wait4(child, &status, 0, &usage) != child) {
    throw std::runtime_error("the program cannot be started");
  }
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, WIFSIGNALED(status) ? WTERMSIG(status) : 0,
          static_cast<std::uint64_t>(usage.ru_maxrss) * 1024, textOf(out), textOf(err)};
}

int channelsOf(int colorType) {
  if (colorType == PNG_COLOR_TYPE_PALETTE) return 1;
  return ((colorType & PNG_COLOR_MASK_COLOR) != 0 ? 3 : 1) + ((colorType & PNG_COLOR_MASK_ALPHA) != 0 ? 1 : 0);
}

Image patternImage(int width, int height) {
  Image image{width, height, Bytes(static_cast<std::size_t>(width) * height * 4)};
  std::uint32_t state = 12345;
  for (std::uint8_t& byte : image.pixels) {
    state = state * 1664525 + 1013904223;
    byte = static_cast<std::uint8_t>(state >> 24);
  }
  return image;
}

Image columnsOf(const Image& image, int x, int width) {
  Image part{width, image.height, {}};
  for (int y = 0; y < image.height; ++y) {
    part.pixels.insert(part.pixels.end(), image.at(x, y), image.at(x, y) + static_cast<std::ptrdiff_t>(width) * 4);
  }
  return part;
}

Bytes readBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void writeBytes(const std::filesystem::path& path, const Bytes& bytes) {
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
}

Image readPng(const std::filesystem::path& path) {
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  if (png_image_begin_read_from_file(&png, path.c_str()) == 0) throw std::runtime_error(png.message);
  png.format = PNG_FORMAT_RGBA;
  Image image{static_cast<int>(png.width), static_cast<int>(png.height), Bytes(PNG_IMAGE_SIZE(png))};
  if (png_image_finish_read(&png, nullptr, image.pixels.data(), 0, nullptr) == 0) throw std::runtime_error(png.message);
  return image;
}

void writePng(const std::filesystem::path& path, int width, int height, const PngKind& kind,
              const std::function<int(int x, int y, int channel)>& sample) {
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  std::FILE* file = std::fopen(path.c_str(), "wb");
  png_init_io(png, file);
  png_set_user_limits(png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
  png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), kind.depth, kind.colorType,
               kind.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  const png_color_16 key{0, 1, 1, 1, 1};
  if (kind.colorType == PNG_COLOR_TYPE_PALETTE) {
    setPalette(png, info, 1 << kind.depth, kind.keyed);
  } else if (kind.keyed) {
    png_set_tRNS(png, info, nullptr, 0, &key);
  }
  if (!kind.profile.empty()) {
    png_set_iCCP(png, info, "test", 0, kind.profile.data(), static_cast<png_uint_32>(kind.profile.size()));
  }
  png_write_info(png, info);
  for (int passes = png_set_interlace_handling(png); passes > 0; --passes) {
    for (int y = 0; y < height; ++y) {
      const auto value = [&](int x, int channel) { return sample(x, y, channel); };
      png_write_row(png, packedRow(width, kind.depth, channelsOf(kind.colorType), value).data());
    }
  }
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  std::fclose(file);
}

void writeRgba(const std::filesystem::path& path, const Image& image) {
  writePng(path, image.width, image.height, {PNG_COLOR_TYPE_RGB_ALPHA, 8},
           [&](int x, int y, int channel) { return image.at(x, y)[channel]; });
}

void writeJpeg(const std::filesystem::path& path, int width, int height, const JpegKind& kind,
               const std::function<int(int x, int y, int channel)>& sample) {
  jpeg_compress_struct codec{};
  jpeg_error_mgr errors{};
  codec.err = jpeg_std_error(&errors);
  jpeg_create_compress(&codec);
  std::FILE* file = std::fopen(path.c_str(), "wb");
  jpeg_stdio_dest(&codec, file);
  codec.image_width = static_cast<JDIMENSION>(width);
  codec.image_height = static_cast<JDIMENSION>(height);
  configure(&codec, kind);
  jpeg_start_compress(&codec, TRUE);
  if (!kind.exif.empty()) {
    Bytes marker{'E', 'x', 'i', 'f', 0, 0};
    marker.insert(marker.end(), kind.exif.begin(), kind.exif.end());
    jpeg_write_marker(&codec, JPEG_APP0 + 1, marker.data(), static_cast<unsigned int>(marker.size()));
  }
  if (!kind.profile.empty()) {
    jpeg_write_icc_profile(&codec, kind.profile.data(), static_cast<unsigned int>(kind.profile.size()));
  }
  for (int y = 0; y < height; ++y) {
    const auto value = [&](int x, int channel) { return sample(x, y, channel); };
    Bytes row = packedRow(width, 8, kind.channels, value);
    JSAMPROW rows = row.data();
    jpeg_write_scanlines(&codec, &rows, 1);
  }
  jpeg_finish_compress(&codec);
  jpeg_destroy_compress(&codec);
  std::fclose(file);
}

}  // namespace vlvk::tool_test
