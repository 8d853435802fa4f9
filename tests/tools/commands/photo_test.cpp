/// `vlvk-makeup photo`, run as a process.
#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <cstdlib>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/rgb_to_yuv.h>
#include "resource/neutral_colors.h"
#include "tests/tools/tool_support.h"

namespace vlvk::tool_test {
namespace {

namespace fs = std::filesystem;

class Photo : public ToolDirectory {
 protected:
  Image result(const std::string& in, const Arguments& options = {}) const {
    expectDone(Arguments{"photo", path(in), path("out.PNG")} + options);
    return readPng(path("out.PNG"));
  }
};

// Luma and chroma of a picture of even size.
std::pair<Bytes, Bytes> nv21Of(const Image& source) {
  const int width = source.width;
  Bytes luma(source.pixels.size() / 4);
  Bytes chroma(luma.size() / 2);
  VKRGBAToNV21_NeonCall(source.pixels.data(), width * 4, luma.data(), width, chroma.data(), width, width,
                        source.height);
  return {luma, chroma};
}

// What the library makes of an opaque picture of even size.
Bytes beautified(const Image& source, int whiten, int soften, int radius) {
  auto [luma, chroma] = nv21Of(source);
  NeutralColors colors;
  CFastEdgePreserved filter(4, &colors);
  filter.put_colorAdjustIntensity(0);
  filter.put_whitenIntensity(whiten);
  filter.put_softenSkinIntensity(soften);
  filter.radius = radius;
  const int width = source.width;
  Bytes result(source.pixels.size());
  EXPECT_EQ(filter.processVideo(luma.data(), width, chroma.data(), width, width, source.height, result.data(),
                                width * 4, true),
            0);
  return result;
}

TEST_F(Photo, PortraitIsWhatTheLibraryMakesOfIt) {
  fs::copy_file(VLVK_SAMPLES "/portrait.png", path("in.png"));
  const Image source = readPng(path("in.png"));
  const Image both = result("in.png", {"--compare"});
  EXPECT_TRUE(columnsOf(both, 0, source.width).pixels == source.pixels);
  EXPECT_TRUE(columnsOf(both, source.width, source.width).pixels == beautified(source, 50, 1000, 20));
  EXPECT_TRUE(result("in.png", {"--whiten=80", "--soften=400", "--radius=9", "--threads=3"}).pixels ==
              beautified(source, 80, 400, 9));
}

// 64ths of a distance from the skin centre, from the filter's interleaved table.
int skinWeight(const CFastEdgePreserved& filter, int distance) {
  if (distance >= 48) return 0;
  const int place = distance < 32 ? distance % 8 * 4 + distance / 8 : 32 + distance % 8 * 2 + (distance - 32) / 8;
  return filter.skinTable[place];
}

// Whatever the colours of the map are: a weight has one, and the more the lighter.
TEST_F(Photo, ShowWeightTellsSkin) {
  Image source{132, 128, {}};
  for (int i = 0; i < 132 * 128; ++i) {
    for (const int value : {120 + i % 132 / 2, 128, 230 - i / 264 * 3, 255})
      source.pixels.push_back(static_cast<std::uint8_t>(value));
  }
  writeRgba(path("in.png"), source);
  const Image map = columnsOf(result("in.png", {"--show-weight", "--compare", "--soften", "300"}), 132, 132);
  const Bytes chroma = nv21Of(source).second;
  const CFastEdgePreserved filter(1, nullptr);
  std::map<int, Bytes> colors;
  for (int i = 0; i < 132 * 128; ++i) {
    const std::uint8_t* pair = &chroma[i / 264 * 132 + i % 132 / 2 * 2];
    const int first = skinWeight(filter, std::abs(pair[0] - filter.skinCentre[1]));
    const int weight = first * skinWeight(filter, std::abs(pair[1] - filter.skinCentre[2])) >> 6;
    const Bytes color(&map.pixels[i * 4], &map.pixels[i * 4] + 3);
    ASSERT_EQ(colors.try_emplace(weight, color).first->second, color) << "pixel " << i << " weight " << weight;
  }
  ASSERT_TRUE(colors.contains(0) && colors.contains(64) && colors.size() > 40) << colors.size();
  int previous = -1;
  for (const auto& [weight, color] : colors) {
    const int lightness = 30 * color[0] + 59 * color[1] + 11 * color[2];
    EXPECT_GT(lightness, previous) << weight;
    previous = lightness;
  }
}

// An odd size is treated like the next even one with the last column and row repeated.
TEST_F(Photo, AnySizeKeepsItsAlpha) {
  for (const auto& [width, height] : {std::pair{1, 1}, {1, 2}, {2, 1}, {3, 5}, {17, 9}, {64, 33}}) {
    const Image source = patternImage(width, height);
    writeRgba(path("in.png"), source);
    writePng(path("even.png"), width + width % 2, height + height % 2, PNG_COLOR_TYPE_RGB, 8,
             [&, w = width, h = height](int x, int y, int c) {
               return source.at(std::min(x, w - 1), std::min(y, h - 1))[c];
             });
    expectDone({"photo", path("in.png"), path("in.png")});  // over itself
    Image expected = columnsOf(result("even.png"), 0, width);
    expected.pixels.resize(source.pixels.size());
    for (std::size_t i = 3; i < source.pixels.size(); i += 4)
      expected.pixels[i] = source.pixels[i];
    EXPECT_EQ(readPng(path("in.png")).pixels, expected.pixels) << width << " x " << height;
  }
}

TEST_F(Photo, UnusableInputIsRefused) {
  writeBytes(path("empty.png"), {});
  writeBytes(path("text.png"), bytesOf("hello\n"));
  fs::create_directory(path("directory.png"));
  writeRgba(path("good.png"), patternImage(40, 40));
  writeBytes(path("jpg.png"), corpusPicture("progressive_jpg"));
  for (const std::string copy : {"png.jpg", "picture.gif", "png"})
    fs::copy_file(path("good.png"), path(copy));
  for (const std::string name :
       {"missing.png", "empty.png", "text.png", "directory.png", "png.jpg", "jpg.png", "picture.gif", "png"}) {
    expectRefused({"photo", path(name), path("out.png")}, path(name) + ": ");
  }
  expectRefused({"photo", path("missing\nline\x1b[1m.png"), path("out.png")}, "missing\\x0Aline\\x1B[1m.png: ");
  for (const std::string& table : {path("missing.vlk"), path("text.png"), std::string()})
    expectRefused({"photo", path("good.png"), path("out.png"), "--table", table}, "vlvk-makeup: " + table + ": ");
  for (const std::string out : {"out.gif", "out", "none/out.png"})
    expectRefused({"photo", path("good.png"), path(out)}, path(out) + ": ");
}

// 32768 x 8192 pixels are 1 GiB, and the largest chunk 2 GiB.
TEST_F(Photo, ClaimsCostNoMemory) {
  const std::string header("\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR\0\0\x80\0\0\0\x20\0\x08\x06\0\0\0\x83\xD7\x70\x11", 33);
  for (const std::string chunk : {"IDAT", "tEXt", "zTXt", "iTXt", "sPLT", "pCAL", "iCCP", "eXIf", "abCd"}) {
    writeBytes(path("in.png"), bytesOf(header + "\x7F\xFF\xFF\xFF" + chunk));
    expectRefused({"photo", path("in.png"), path("out.png")}, path("in.png") + ": ");
  }
  for (const std::string name : {"progressive_jpg", "gray_ycc_jpg"}) {
    Bytes file = corpusPicture(name);
    const Bytes frame{0, 17, 8};  // the size follows
    const Bytes size{0x20, 0, 0x80, 0};
    std::copy(size.begin(), size.end(), std::search(file.begin(), file.end(), frame.begin(), frame.end()) + 3);
    writeBytes(path("in.jpg"), file);
    expectRefused({"photo", path("in.jpg"), path("out.png")}, path("in.jpg") + ": ");
  }
}

}  // namespace
}  // namespace vlvk::tool_test
