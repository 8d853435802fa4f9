/// `vlvk-makeup photo`, run as a process.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <png.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>  // jpeglib.h needs FILE and size_t declared before it

#include <jpeglib.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/IBeautyResourceLoader.h>
#include <vlvk/rgb_to_yuv.h>
#include "tests/tools/tool_directory.h"
#include "tools/options/target.h"

namespace vlvk::tool_test {
namespace {

namespace fs = std::filesystem;

class Photo : public ToolDirectory {
 protected:
  /// Runs `photo IN OUT`, both names inside the directory, and expects success without a word.
  void process(const std::string& in, const std::string& out, const std::vector<std::string>& options = {}) const {
    std::vector<std::string> arguments{"photo", path(in), path(out)};
    arguments.insert(arguments.end(), options.begin(), options.end());
    expectDone(arguments);
  }

  void expectInputRefused(const std::string& in) const {
    SCOPED_TRACE(in);
    expectRefused({"photo", path(in), path("out.png")}, path(in) + ": ");
  }

  void makeColorJpeg(const std::string& name, bool progressive = false) const {
    writeJpeg(path(name), 64, 64, {.space = JCS_YCbCr, .channels = 3, .progressive = progressive},
              [](int x, int y, int channel) { return x * y * (channel + 1) & 255; });
  }
};

template <typename Part>
bool holds(const Bytes& file, const Part& part) {
  return std::search(file.begin(), file.end(), part.begin(), part.end()) != file.end();
}

struct NeutralLoader final : IBeautyResourceLoader {
  int getResFromName(const char* /*name*/, unsigned char* /*dst*/) override { return 0; }
};

// What the library makes of an opaque picture of even size.
Bytes beautified(const Image& source, const std::function<void(CFastEdgePreserved*)>& configure) {
  const int width = source.width;
  const int height = source.height;
  Bytes luma(static_cast<std::size_t>(width) * height);
  Bytes chroma(luma.size() / 2);
  VKRGBAToNV21_NeonCall(source.pixels.data(), width * 4, luma.data(), width, chroma.data(), width, width, height);
  NeutralLoader loader;
  CFastEdgePreserved filter(4, &loader);
  filter.put_colorAdjustIntensity(0);
  configure(&filter);
  Bytes result(source.pixels.size());
  EXPECT_EQ(
      filter.processVideo(luma.data(), width, chroma.data(), width, width, height, result.data(), width * 4, true), 0);
  return result;
}

TEST_F(Photo, PortraitIsWhatTheLibraryMakesOfIt) {
  fs::copy_file(VLVK_SAMPLES "/portrait.png", path("in.png"));
  const Image source = readPng(path("in.png"));
  process("in.png", "out.png", {"--compare"});
  const Image both = readPng(path("out.png"));
  ASSERT_EQ(both.width, 2 * source.width);
  EXPECT_TRUE(columnsOf(both, 0, source.width).pixels == source.pixels);
  EXPECT_TRUE(columnsOf(both, source.width, source.width).pixels == beautified(source, [](CFastEdgePreserved*) {}));

  process("in.png", "look.PNG", {"--whiten", "80", "--soften", "400", "--radius", "9", "--threads", "3"});
  const Bytes look = beautified(source, [](CFastEdgePreserved* filter) {
    filter->put_whitenIntensity(80);
    filter->put_softenSkinIntensity(400);
    filter->radius = 9;
  });
  EXPECT_TRUE(readPng(path("look.PNG")).pixels == look);
}

// 64ths of a distance from the skin centre, from the filter's interleaved table.
int skinWeight(const CFastEdgePreserved& filter, int distance) {
  if (distance >= 48) return 0;
  const int place = distance < 32 ? distance % 8 * 4 + distance / 8 : 32 + distance % 8 * 2 + (distance - 32) / 8;
  return filter.skinTable[place];
}

// Whatever the colours of the map are: a weight has one, and the more the lighter.
TEST_F(Photo, ShowWeightTellsSkin) {
  const int width = 131;
  const int height = 127;
  Image source{width + 1, height + 1, {}};
  for (int y = 0; y <= height; ++y) {
    for (int x = 0; x <= width; ++x) {
      for (const int value : {120 + x / 2, 128, 230 - y / 2 * 3, 255})
        source.pixels.push_back(static_cast<std::uint8_t>(value));
    }
  }
  writePng(path("in.png"), width, height, {PNG_COLOR_TYPE_RGB, 8},
           [&](int x, int y, int c) { return source.at(x, y)[c]; });
  process("in.png", "out.png", {"--show-weight", "--compare", "--soften", "300"});
  const Image both = readPng(path("out.png"));
  ASSERT_EQ(both.width, 2 * width);
  ASSERT_EQ(both.height, height);
  Bytes luma(source.pixels.size() / 4);
  Bytes chroma(luma.size() / 2);
  VKRGBAToNV21_NeonCall(source.pixels.data(), (width + 1) * 4, luma.data(), width + 1, chroma.data(), width + 1,
                        width + 1, height + 1);
  const CFastEdgePreserved filter(1, nullptr);
  std::map<int, std::vector<int>> colors;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const std::uint8_t* pair = &chroma[y / 2 * (width + 1) + x / 2 * 2];
      const int weight = skinWeight(filter, std::abs(pair[0] - filter.skinCentre[1])) *
                             skinWeight(filter, std::abs(pair[1] - filter.skinCentre[2])) >>
                         6;
      const std::vector<int> color(both.at(width + x, y), both.at(width + x, y) + 3);
      ASSERT_EQ(colors.try_emplace(weight, color).first->second, color) << x << ", " << y << " weight " << weight;
    }
  }
  ASSERT_TRUE(colors.contains(0) && colors.contains(64) && colors.size() > 40) << colors.size();
  int previous = -1;
  for (const auto& [weight, color] : colors) {
    const int lightness = 30 * color[0] + 59 * color[1] + 11 * color[2];
    EXPECT_GT(lightness, previous) << weight;
    previous = lightness;
  }
}

TEST_F(Photo, ThreadsAndTargetsDoNotChangeTheBytes) {
  fs::copy_file(VLVK_SAMPLES "/portrait.png", path("in.png"));
  std::vector<std::vector<std::string>> ways{{"--threads", "1"}, {"--threads", "64"}};
  for (const std::string& target : tool::targetNames())
    ways.push_back({"--target", target});
  for (const std::string extension : {".png", ".jpg"}) {
    process("in.png", "first" + extension);
    for (const std::vector<std::string>& options : ways) {
      process("in.png", "second" + extension, options);
      EXPECT_TRUE(readBytes(path("second" + extension)) == readBytes(path("first" + extension))) << options[1];
    }
  }
}

// An odd size is treated like the next even one with the last column and row repeated.
TEST_F(Photo, AnySizeKeepsItsAlpha) {
  const int sizes[][2] = {{1, 1}, {1, 2}, {2, 1}, {3, 5}, {17, 9}, {64, 33}};
  for (const auto& size : sizes) {
    const int width = size[0];
    const int height = size[1];
    SCOPED_TRACE(testing::Message() << width << " x " << height);
    const Image source = patternImage(width, height);
    writeRgba(path("in.png"), source);
    writePng(path("even.png"), width + width % 2, height + height % 2, {PNG_COLOR_TYPE_RGB, 8},
             [&](int x, int y, int c) { return source.at(std::min(x, width - 1), std::min(y, height - 1))[c]; });
    process("in.png", "in.png");  // over itself
    process("even.png", "even.png");
    const Image result = readPng(path("in.png"));
    Image expected = columnsOf(readPng(path("even.png")), 0, width);
    expected.pixels.resize(source.pixels.size());
    for (std::size_t i = 3; i < source.pixels.size(); i += 4)
      expected.pixels[i] = source.pixels[i];
    EXPECT_EQ(result.width, width);
    EXPECT_EQ(result.pixels, expected.pixels);
  }
}

// RGBA that a sample of a PNG stands for; see writePng.
std::vector<int> pixelOf(const PngKind& kind, const std::vector<int>& samples) {
  const int top = (1 << kind.depth) - 1;
  const int first = samples[0];
  if (kind.colorType == PNG_COLOR_TYPE_PALETTE)
    return {first, 255 - first, 3 * first & 255, kind.keyed ? 255 - first : 255};
  std::vector<int> pixel = samples;
  for (int& channel : pixel)
    channel = channel * 255 / top;
  if (pixel.size() < 3) pixel.insert(pixel.begin(), 2, pixel[0]);
  const bool key = kind.keyed && std::all_of(samples.begin(), samples.end(), [](int sample) { return sample == 1; });
  if (pixel.size() == 3) pixel.push_back(key ? 0 : 255);
  return pixel;
}

// The left half of --compare is the picture as it was read.
TEST_F(Photo, EveryKindOfPngIsRead) {
  std::vector<PngKind> kinds;
  for (const bool interlaced : {false, true}) {
    for (const bool keyed : {false, true}) {
      for (const int depth : {1, 2, 4, 8})
        kinds.push_back({PNG_COLOR_TYPE_PALETTE, depth, interlaced, keyed});
      for (const int depth : {1, 2, 4, 8, 16})
        kinds.push_back({PNG_COLOR_TYPE_GRAY, depth, interlaced, keyed});
      for (const int depth : {8, 16})
        kinds.push_back({PNG_COLOR_TYPE_RGB, depth, interlaced, keyed});
    }
    for (const int depth : {8, 16}) {
      kinds.push_back({PNG_COLOR_TYPE_GRAY_ALPHA, depth, interlaced});
      kinds.push_back({PNG_COLOR_TYPE_RGB_ALPHA, depth, interlaced});
    }
  }
  for (const PngKind& kind : kinds) {
    SCOPED_TRACE(testing::Message() << "type " << kind.colorType << " depth " << kind.depth << " interlaced "
                                    << kind.interlaced << " keyed " << kind.keyed);
    const auto sample = [&](int x, int y, int channel) {
      const int value = (x * 7 + y * 5 + channel * 3 * (x & 1)) & 255;
      return kind.depth == 16 && value != 1 ? value * 257 : value & ((1 << kind.depth) - 1);
    };
    writePng(path("in.png"), 11, 7, kind, sample);
    process("in.png", "out.png", {"--compare"});
    const Image image = readPng(path("out.png"));
    ASSERT_EQ(image.width, 22);
    ASSERT_EQ(image.height, 7);
    for (int y = 0; y < 7; ++y) {
      for (int x = 0; x < 11; ++x) {
        std::vector<int> samples;
        for (int c = 0; c < channelsOf(kind.colorType); ++c)
          samples.push_back(sample(x, y, c));
        const std::vector<int> read(image.at(x, y), image.at(x, y) + 4);
        EXPECT_EQ(read, pixelOf(kind, samples)) << x << ", " << y;
      }
    }
  }
}

Bytes exifWith(bool bigEndian, int orientation) {
  const auto number = [bigEndian](Bytes* bytes, int value, int size) {
    for (int i = 0; i < size; ++i) {
      bytes->push_back(static_cast<std::uint8_t>(value >> 8 * (bigEndian ? size - 1 - i : i)));
    }
  };
  Bytes exif(2, bigEndian ? 'M' : 'I');
  number(&exif, 42, 2);
  number(&exif, 8, 4);
  number(&exif, 2, 2);
  for (const int tag : {0x0100, 0x0112}) {
    number(&exif, tag, 2);
    number(&exif, 3, 2);
    number(&exif, 1, 4);
    number(&exif, tag == 0x0112 ? orientation : 3, 2);
    number(&exif, 0, 2);
  }
  return exif;
}

// Four grey quarters, 32 x 16: 0 and 80 above 160 and 240.
int quarterSample(int x, int y, int /*channel*/) {
  return (x / 16 + y / 8 * 2) * 80;
}

std::vector<int> quartersOf(const Image& image) {
  std::vector<int> quarters;
  for (const int y : {image.height / 4, image.height * 3 / 4}) {
    for (const int x : {image.width / 4, image.width * 3 / 4})
      quarters.push_back((image.at(x, y)[0] + 40) / 80);
  }
  return quarters;
}

TEST_F(Photo, PicturesAreTurnedUpright) {
  const std::vector<int> upright[] = {{0, 1, 2, 3}, {1, 0, 3, 2}, {3, 2, 1, 0}, {2, 3, 0, 1},
                                      {0, 2, 1, 3}, {2, 0, 3, 1}, {3, 1, 2, 0}, {1, 3, 0, 2}};
  for (int orientation = 1; orientation <= 8; ++orientation) {
    for (const bool bigEndian : {false, true}) {
      SCOPED_TRACE(orientation);
      writeJpeg(path("in.jpg"), 32, 16,
                {.space = JCS_GRAYSCALE, .channels = 1, .exif = exifWith(bigEndian, orientation)}, quarterSample);
      process("in.jpg", "out.jpeg");
      EXPECT_FALSE(holds(readBytes(path("out.jpeg")), std::string("Exif")));
      process("out.jpeg", "out.png", {"--compare"});
      const Image image = readPng(path("out.png"));
      EXPECT_EQ(image.width, orientation < 5 ? 64 : 32);
      const Image original = columnsOf(image, 0, image.width / 2);
      EXPECT_EQ(quartersOf(original), upright[orientation - 1]);
    }
  }
}

TEST_F(Photo, DamagedOrientationIsIgnored) {
  const Bytes good = exifWith(false, 6);
  std::vector<Bytes> damaged{exifWith(true, 0), exifWith(true, 9), {'I'}, {'I', 'I', 42, 0}};
  for (int size = 0; size < 32; ++size)
    damaged.emplace_back(good.begin(), good.begin() + size);
  for (const int top : {0x7F, 0xFF}) {  // a directory far behind the end
    damaged.push_back(good);
    std::fill_n(damaged.back().begin() + 4, 3, 0xFF);
    damaged.back()[7] = static_cast<std::uint8_t>(top);
  }
  for (const Bytes& exif : damaged) {
    writeJpeg(path("in.JPG"), 32, 16, {.space = JCS_GRAYSCALE, .channels = 1, .exif = exif}, quarterSample);
    process("in.JPG", "out.png");
    EXPECT_EQ(readPng(path("out.png")).width, 32) << exif.size() << " bytes";
  }
}

TEST_F(Photo, CmykIsConverted) {
  const int ink[] = {200, 100, 50, 180};  // as stored: 255 is no ink with an Adobe marker, full ink without
  const auto sample = [&](int, int, int channel) { return ink[channel]; };
  for (const bool adobe : {true, false}) {
    for (const int space : {JCS_CMYK, JCS_YCCK}) {
      if (!adobe && space == JCS_YCCK) continue;  // only the marker tells YCCK
      writeJpeg(path("in.jpg"), 16, 16, {.space = space, .channels = 4, .adobe = adobe}, sample);
      process("in.jpg", "out.png", {"--compare"});
      const Image image = readPng(path("out.png"));
      for (int c = 0; c < 3; ++c) {
        const int expected = adobe ? ink[c] * ink[3] / 255 : (255 - ink[c]) * (255 - ink[3]) / 255;
        EXPECT_NEAR(image.at(8, 8)[c], expected, 3) << "space " << space << " adobe " << adobe;
      }
    }
  }
}

TEST_F(Photo, JpegShowsTransparencyOverWhite) {
  Image source = patternImage(16, 16);
  for (std::size_t i = 0; i < source.pixels.size(); ++i)
    source.pixels[i] = i % 4 == 3 && i % 64 < 32 ? 0 : i % 4 == 3 ? 255 : 40;
  writeRgba(path("in.png"), source);
  process("in.png", "out.jpg", {"--whiten", "0", "--quality", "100"});
  process("out.jpg", "back.png", {"--compare"});
  const Image image = readPng(path("back.png"));
  EXPECT_GE(image.at(2, 8)[1], 250);
  EXPECT_LE(image.at(13, 8)[1], 50);
  process("in.png", "small.jpg", {"--quality", "1"});
  EXPECT_LT(readBytes(path("small.jpg")).size(), readBytes(path("out.jpg")).size());
}

// What decoders accept as a profile: a header, no tags, and data that does not compress below their least size.
Bytes profileOf(const std::string& space) {
  Bytes profile = patternImage(8, 8).pixels;
  std::fill_n(profile.begin(), 132, 0);
  const auto put = [&profile](std::size_t at, const std::string& text) {
    std::copy(text.begin(), text.end(), profile.begin() + static_cast<std::ptrdiff_t>(at));
  };
  profile[2] = 1;  // 256 bytes
  profile[8] = 2;
  put(12, "mntr" + space + "XYZ ");
  put(36, "acsp");
  put(68, std::string("\0\0\xF6\xD6\0\1\0\0\0\0\xD3\x2D", 12));
  return profile;
}

TEST_F(Photo, ColorProfileGoesAlong) {
  const Bytes profile = profileOf("RGB ");
  const auto sample = [](int x, int, int) { return x; };
  writePng(path("in.png"), 8, 8, {.colorType = PNG_COLOR_TYPE_RGB, .depth = 8, .profile = profile}, sample);
  process("in.png", "out.jpg");
  EXPECT_TRUE(holds(readBytes(path("out.jpg")), profile));
  process("out.jpg", "again.png");
  process("again.png", "again.jpg");
  EXPECT_TRUE(holds(readBytes(path("again.jpg")), profile));

  writeJpeg(path("grey.jpg"), 8, 8, {.space = JCS_GRAYSCALE, .channels = 1, .profile = profileOf("GRAY")}, sample);
  process("grey.jpg", "color.jpg");
  EXPECT_FALSE(holds(readBytes(path("color.jpg")), std::string("ICC_PROFILE")));
}

TEST_F(Photo, UnusableInputIsRefused) {
  writeBytes(path("empty.png"), {});
  writeBytes(path("text.png"), {'h', 'e', 'l', 'l', 'o', '\n'});
  fs::create_directory(path("directory.png"));
  writeRgba(path("good.png"), patternImage(40, 40));
  makeColorJpeg("jpg.png");
  for (const std::string copy : {"png.jpg", "picture.gif", "png"})
    fs::copy_file(path("good.png"), path(copy));
  for (const std::string name :
       {"missing.png", "empty.png", "text.png", "directory.png", "png.jpg", "jpg.png", "picture.gif", "png"}) {
    expectInputRefused(name);
  }
  expectRefused({"photo", path("missing\nline\x1b[1m.png"), path("out.png")}, "missing\\x0Aline\\x1B[1m.png: ");
  for (const std::string& table : {path("missing.vlk"), path("text.png"), std::string()})
    expectRefused({"photo", path("good.png"), path("out.png"), "--table", table}, "vlvk-makeup: " + table + ": ");
}

TEST_F(Photo, DamagedPictureIsRefused) {
  const auto expectCutsRefused = [this](const std::string& name, std::size_t step) {
    const Bytes file = readBytes(path(name));
    for (std::size_t size = 1; size < file.size(); size += step) {
      writeBytes(path("cut-" + name), Bytes(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size)));
      expectInputRefused("cut-" + name);
    }
  };
  writeRgba(path("rgba.png"), patternImage(20, 20));
  expectCutsRefused("rgba.png", 97);
  for (const bool progressive : {false, true}) {
    makeColorJpeg("color.jpg", progressive);
    expectCutsRefused("color.jpg", 211);
  }
  Bytes flipped = readBytes(path("rgba.png"));
  flipped[flipped.size() / 2] ^= 0x10;
  writeBytes(path("flipped.png"), flipped);
  expectInputRefused("flipped.png");

  for (const int width : {32769, 2000000}) {
    writePng(path("wide.png"), width, 1, {PNG_COLOR_TYPE_GRAY, 1}, [](int, int, int) { return 0; });
    expectInputRefused("wide.png");
  }
}

// 32768 x 8192 pixels are 1 GiB, and the largest chunk 2 GiB.
TEST_F(Photo, ClaimsCostNoMemory) {
  const std::string header("\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR\0\0\x80\0\0\0\x20\0\x08\x06\0\0\0\x83\xD7\x70\x11", 33);
  for (const std::string chunk : {"IDAT", "tEXt", "zTXt", "iTXt", "sPLT", "pCAL", "iCCP", "eXIf", "abCd"}) {
    const std::string file = header + "\x7F\xFF\xFF\xFF" + chunk;
    writeBytes(path(chunk + ".png"), Bytes(file.begin(), file.end()));
    expectInputRefused(chunk + ".png");
  }
  for (const bool progressive : {false, true}) {
    makeColorJpeg("in.jpg", progressive);
    Bytes file = readBytes(path("in.jpg"));
    const Bytes frame{0xFF, static_cast<std::uint8_t>(progressive ? 0xC2 : 0xC0), 0, 17, 8};
    const Bytes size{0x20, 0, 0x80, 0};
    std::copy(size.begin(), size.end(), std::search(file.begin(), file.end(), frame.begin(), frame.end()) + 5);
    writeBytes(path("in.jpg"), file);
    expectInputRefused("in.jpg");
  }
  // The first scan again and again would keep the program busy.
  makeColorJpeg("in.jpg", true);
  Bytes file = readBytes(path("in.jpg"));
  const std::uint8_t marks[2][2] = {{0xFF, 0xDA}, {0xFF, 0xC4}};
  const auto start = std::search(file.begin(), file.end(), marks[0], marks[0] + 2);
  const auto end = std::search(start, file.end(), marks[1], marks[1] + 2);
  const Bytes scan(start, end);
  Bytes scans;
  for (int i = 0; i < 500; ++i)
    scans.insert(scans.end(), scan.begin(), scan.end());
  file.insert(start, scans.begin(), scans.end());
  writeBytes(path("in.jpg"), file);
  expectRefused({"photo", path("in.jpg"), path("out.png")}, "more than 500 scans");
}

TEST_F(Photo, InterruptIsTold) {
  ASSERT_EQ(mkfifo(path("in.png").c_str(), 0600), 0);
  writeBytes(path("out.png"), {'o', 'l', 'd'});
  const auto before = contents();
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    const ProgramRun run = runProgram({"photo", path("in.png"), path("out.png")}, {.meanwhile = [&](pid_t program) {
                                        const int pipe = open(path("in.png").c_str(), O_WRONLY);  // it reads now
                                        kill(program, signal);
                                        close(pipe);
                                      }});
    EXPECT_EQ(run.signal, signal);
    EXPECT_EQ(run.err, "vlvk-makeup: interrupted\n");
    EXPECT_TRUE(contents() == before);
  }
}

TEST_F(Photo, UnusableOutputIsRefused) {
  writeRgba(path("in.png"), patternImage(40, 40));
  fs::create_directory(path("directory.png"));
  ASSERT_EQ(mkfifo(path("pipe.png").c_str(), 0600), 0);
  for (const std::string out : {"none/out.png", "directory.png", "pipe.png", "out.gif", "out", "in.png/out.png"}) {
    SCOPED_TRACE(out);
    expectRefused({"photo", path("in.png"), path(out)}, path(out) + ": ");
  }
  // The disk is full.
  writeBytes(path("old.png"), {'o', 'l', 'd'});
  for (const std::string out : {"old.png", "new.png", "new.jpg"}) {
    expectRefused({"photo", path("in.png"), path(out)}, path(out) + ": ", {.fileLimit = 512});
  }
  if (geteuid() == 0) return;  // to whom nothing is read-only
  fs::permissions(path("old.png"), fs::perms::owner_read);
  expectRefused({"photo", path("in.png"), path("old.png")}, path("old.png") + ": ");
  fs::permissions(directory_, fs::perms::owner_read | fs::perms::owner_exec);
  expectRefused({"photo", path("in.png"), path("new.png")}, path("new.png") + ": ");
  fs::permissions(directory_, fs::perms::owner_all);
}

TEST_F(Photo, ReplacedFileKeepsPermissionsAndLinks) {
  writeRgba(path("in.png"), patternImage(8, 8));
  writeBytes(path("target.png"), {});
  const auto mode = fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read;
  fs::permissions(path("target.png"), mode);
  fs::create_symlink("target.png", path("link.png"));
  process("in.png", "link.png");
  EXPECT_TRUE(fs::is_symlink(path("link.png")));
  EXPECT_EQ(readPng(path("target.png")).width, 8);
  EXPECT_EQ(fs::status(path("target.png")).permissions(), mode);
  fs::create_symlink("later.png", path("ahead.png"));
  process("in.png", "ahead.png");
  EXPECT_TRUE(fs::is_symlink(path("ahead.png")));
  EXPECT_EQ(readPng(path("later.png")).width, 8);
}

TEST_F(Photo, ValuesStayInTheirRanges) {
  writeRgba(path("in.png"), patternImage(30, 21));
  process("in.png", "low.jpg", {"--whiten=0", "--soften=0", "--radius=0", "--threads=1", "--quality=1"});
  process("in.png", "high.jpg", {"--whiten=100", "--soften=1000", "--radius=128", "--threads=64", "--quality=100"});
  process("in.png", "10.png", {"--whiten=10"});
  process("in.png", "010.png", {"--whiten=010"});
  EXPECT_TRUE(readBytes(path("010.png")) == readBytes(path("10.png")));
  const std::vector<std::vector<std::string>> cases = {
      {"--whiten", "-1"},   {"--whiten", "101"},        {"--soften", "-1"},
      {"--soften", "1001"}, {"--radius", "-1"},         {"--radius", "129"},
      {"--threads", "0"},   {"--threads", "65"},        {"--quality", "0"},
      {"--quality", "101"}, {"--whiten", "1.5"},        {"--whiten", "a\nb"},
      {"--whiten", "0x10"}, {"--whiten", ""},           {"--radius"},
      {"--nothing"},        {"--whiten", "9999999999"}, {"--whiten=1", "--whiten=2"},
      {"third.png"}};
  for (const std::vector<std::string>& options : cases) {
    SCOPED_TRACE(options[0] + " " + options.back());
    std::vector<std::string> arguments{"photo", path("in.png"), path("out.png")};
    arguments.insert(arguments.end(), options.begin(), options.end());
    expectRefused(arguments, path("in.png") + ": ");
  }
}

}  // namespace
}  // namespace vlvk::tool_test
