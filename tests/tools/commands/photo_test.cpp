/// `vlvk-makeup photo` and `sheet`, run as processes.
#include <zlib.h>

#include <algorithm>
#include <cstring>

#include "tests/tools/tool_support.h"

namespace vlvk::tool_test {
namespace {

namespace fs = std::filesystem;

class Photo : public ToolDirectory {
 protected:
  Image result(const std::string& in, const Arguments& options = {}, const std::string& command = "photo") const {
    expectDone(Arguments{command, in, path("out.PNG")} + options);
    return readPng(path("out.PNG"));
  }
};

// The numbers are those of every machine.
TEST_F(Photo, PortraitIsTheSameEverywhere) {
  const std::string portrait = VLVK_SAMPLES "/portrait.png";
  const auto crcOf = [](const Bytes& bytes) { return crc32_z(0, bytes.data(), bytes.size()); };
  EXPECT_EQ(crcOf(result(portrait).pixels), 0xc5622425U);
  EXPECT_EQ(crcOf(result(portrait, {"--whiten-area=skin", "--even-tone=700", "--radius=9"}).pixels), 0x1e95acb2U);
  const Arguments absolute{"--contrast=absolute", "--radius"};
  EXPECT_EQ(crcOf(result(portrait, absolute + Arguments{"20"}).pixels), 0xfa292875U);
  EXPECT_EQ(crcOf(result(portrait, absolute + Arguments{"9", "--whiten=80", "--soften=400", "--threads=3"}).pixels),
            0x64957ebeU);
  EXPECT_EQ(crcOf(result(portrait, {"--show-weight", "--soften=300"}).pixels), 0xcd368b18U);
  const Image source = readPng(portrait);
  const Image both = result(portrait, {"--compare", "--radius=0", "--whiten=0"});
  ASSERT_EQ(both.width, 2 * source.width);
  for (int i = 0; i < source.width * source.height; ++i)
    ASSERT_EQ(std::memcmp(both.at(i % source.width, i / source.width), &source.pixels[i * 4], 4), 0) << i;
}

// An odd size is treated like the next even one with the last column and row repeated.
TEST_F(Photo, AnySizeKeepsItsAlpha) {
  for (const auto& [width, height] : {std::pair{1, 1}, {1, 2}, {2, 1}, {3, 5}, {17, 9}, {64, 33}}) {
    const Image source = patternImage(width, height);
    writeRgba(path("in.png"), source);
    writePng(path("even.png"), width + width % 2, height + height % 2, [&, w = width, h = height](int x, int y, int c) {
      return source.at(std::min(x, w - 1), std::min(y, h - 1))[c];
    });
    const auto upperLeft = [&, w = width, h = height](const std::string& in, const Arguments& options) {
      const Image image = result(path(in), options);
      Bytes pixels;
      for (int y = 0; y < h; ++y)
        pixels.insert(pixels.end(), image.at(0, y), image.at(0, y) + w * 4);
      return pixels;
    };
    EXPECT_EQ(upperLeft("in.png", {"--show-weight"}), upperLeft("even.png", {"--show-weight"}));
    Bytes expected = upperLeft("even.png", {});
    for (std::size_t i = 3; i < expected.size(); i += 4)
      expected[i] = source.pixels[i];
    expectDone({"photo", path("in.png"), path("in.png")});  // over itself
    EXPECT_EQ(readPng(path("in.png")).pixels, expected) << width << " x " << height;
  }
}

// Skin with grain, lighter to the right.
int skin(int x, int y, int channel) {
  return (channel == 0 ? 150 : 110) + (x * 5 + y * 3) % 64 + channel;
}

TEST_F(Photo, MaskLeavesAloneWhatIsBlack) {
  const Arguments options{"--whiten=90", "--whiten-area=skin", "--radius=8"};
  const Arguments masked = options + Arguments{"--mask", path("mask.png")};
  writePng(path("in.png"), 97, 61, skin);
  const auto withMask = [&](const Bytes& pixel, const Arguments& shown = {}) {  // of a single one
    writeRgba(path("mask.png"), {1, 1, pixel});
    return result(path("in.png"), masked + shown);
  };
  for (const Arguments& shown : {Arguments{}, {"--show-weight"}}) {
    const Image everywhere = result(path("in.png"), options + shown);
    const Image nowhere = withMask({0, 0, 0, 255}, shown);
    writePng(path("mask.png"), 5, 3, [](int x, int y, int) { return (x + y) % 2 == 0 ? 255 : 0; });
    const Image inSquares = result(path("in.png"), masked + shown);
    for (int i = 0; i < 97 * 61; ++i) {
      const int x = i % 97;
      const int y = i / 97;
      const bool isBlack = ((2 * x + 1) * 5 / 194 + (2 * y + 1) * 3 / 122) % 2 != 0;
      ASSERT_EQ(std::memcmp(inSquares.at(x, y), (isBlack ? nowhere : everywhere).at(x, y), 4), 0) << x << ", " << y;
    }
  }
  // What is transparent counts as black, and colours by their luma.
  EXPECT_EQ(withMask({255, 255, 255, 0}).pixels, readPng(path("in.png")).pixels);
  EXPECT_EQ(withMask({255, 255, 255, 100}).pixels, withMask({100, 100, 100, 255}).pixels);
  EXPECT_EQ(withMask({200, 100, 50, 255}).pixels, withMask({124, 124, 124, 255}).pixels);
  const Bytes black{0, 0, 4, 255};  // of the heat map
  EXPECT_TRUE(std::equal(black.begin(), black.end(), withMask({0, 0, 0, 255}, {"--show-weight"}).at(50, 30)));
}

TEST_F(Photo, MaskIsThatOfTheUprightPicture) {
  const auto writeUpsideDown = [&](const std::string& name, int width, int height, const auto& sample) {
    writePng(path(name), width, height,
             [&](int x, int y, int channel) { return sample(width - 1 - x, height - 1 - y, channel); });
    const std::string tiff("eXIfMM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x03\0\0\0\0\0\0", 30);
    Bytes chunk = bytesOf(std::string("\0\0\0\x1A", 4) + tiff);
    const auto crc = crc32_z(0, chunk.data() + 4, tiff.size());
    for (int shift = 24; shift >= 0; shift -= 8)
      chunk.push_back(static_cast<std::uint8_t>(crc >> shift));
    Bytes file = readBytes(path(name));
    file.insert(file.begin() + 33, chunk.begin(), chunk.end());  // after the header
    writeBytes(path(name), file);
  };
  const auto mask = [](int x, int y, int) { return x * 60 + y * 20; };
  writePng(path("in.png"), 40, 30, skin);
  writePng(path("mask.png"), 4, 3, mask);
  writeUpsideDown("turned.png", 40, 30, skin);
  writeUpsideDown("turned_mask.png", 4, 3, mask);
  EXPECT_EQ(result(path("turned.png"), {"--mask", path("turned_mask.png")}).pixels,
            result(path("in.png"), {"--mask", path("mask.png")}).pixels);
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
  expectRefused({"photo", path("a\nb\x1b[1m\xC2\x85\xC2\xA1\xE2\x80\xA8.png"), path("out.png")},
                "a\\x0Ab\\x1B[1m\\xC2\\x85\xC2\xA1\\xE2\\x80\\xA8.png: ");
  for (const std::string& table : {path("missing.vlk"), path("text.png"), std::string()})
    expectRefused({"photo", path("good.png"), path("out.png"), "--table", table}, "vlvk-makeup: " + table + ": ");
  for (const std::string& mask : {path("missing.png"), path("text.png"), path("picture.gif"), std::string()})
    expectRefused({"photo", path("good.png"), path("out.png"), "--mask", mask}, "vlvk-makeup: " + mask + ": ");
  for (const std::string out : {"out.gif", "out", "none/out.png"})
    expectRefused({"photo", path("good.png"), path(out)}, path(out) + ": ");
  // Claims cost no memory: 32768 x 8192 pixels are 1 GiB, and the largest chunk 2 GiB.
  const std::string header("\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR\0\0\x80\0\0\0\x20\0\x08\x06\0\0\0\x83\xD7\x70\x11", 33);
  for (const std::string chunk : {"IDAT", "tEXt", "zTXt", "iTXt", "sPLT", "pCAL", "iCCP", "eXIf", "abCd"}) {
    writeBytes(path("in.png"), bytesOf(header + "\x7F\xFF\xFF\xFF" + chunk));
    expectRefused({"photo", path("in.png"), path("out.png")}, path("in.png") + ": ");
  }
}

using Place = std::pair<int, int>;

using Sheet = Photo;

// Row and column where `part` stands in `whole`; -1: nowhere.
Place placeOf(const Image& part, const Image& whole) {
  for (int i = 0; i < whole.width * (whole.height - part.height + 1); ++i) {
    const int left = i % whole.width;
    int y = left + part.width <= whole.width ? 0 : part.height + 1;
    while (y < part.height &&
           std::equal(part.at(0, y), part.at(0, y) + part.width * 4, whole.at(left, i / whole.width + y)))
      ++y;
    if (y == part.height) return {i / whole.width, left};
  }
  return {-1, -1};
}

TEST_F(Sheet, CellsAreWhatPhotoMakes) {
  writePng(path("in.png"), 96, 61, [](int x, int y, int channel) { return skin(x, y, channel) - 70; });  // dim
  const Image sheet = result(path("in.png"),
                             {"--cell", "96", "--columns", "radius=40,0,auto", "--rows", "contrast=relative,absolute",
                              "--whiten", "80", "--original"},
                             "sheet");
  const Place first = placeOf(readPng(path("in.png")), sheet);
  std::vector<Place> places;
  for (const std::string contrast : {"relative", "absolute"}) {
    for (const std::string radius : {"40", "0", "auto"})
      places.push_back(
          placeOf(result(path("in.png"), {"--radius", radius, "--contrast", contrast, "--whiten", "80"}), sheet));
  }
  places[4].first = places[3].first;  // without a radius contrast is nothing: the cell above looks the same
  const int right = places[0].second - first.second;
  const int down = places[3].first - first.first;
  EXPECT_TRUE(first.first >= 0 && right >= 96 && down >= 61) << first.first << ", " << right << ", " << down;
  for (int i = 0; i < 6; ++i)
    EXPECT_EQ(places[i], Place(first.first + i / 3 * down, first.second + (i % 3 + 1) * right)) << "cell " << i;
}

// Each pixel of the detail below is the mean of four, which are far apart.
TEST_F(Sheet, DetailIsAveraged) {
  const auto mean = [](int x, int y, int channel) { return 40 + (x * 7 + y * 11 + channel * 50) % 160; };
  writePng(path("in.png"), 200, 100,
           [&](int x, int y, int channel) { return mean(x / 2, y / 2, channel) + ((x + y) % 2 == 0 ? 30 : -30); });
  Image expected{80, 20, {}};
  for (int i = 0; i < 80 * 20 * 4; ++i)
    expected.pixels.push_back(static_cast<std::uint8_t>(i % 4 == 3 ? 255 : mean(i / 4 % 80 + 10, i / 320 + 20, i % 4)));
  EXPECT_NE(placeOf(expected, result(path("in.png"), {"--original", "--crop", "160x40+20+40", "--cell", "80"}, "sheet"))
                .first,
            -1);
}

TEST_F(Sheet, WhatDoesNotFitIsRefused) {
  writeRgba(path("in.png"), patternImage(40, 30));
  const Arguments sheet{"sheet", path("in.png"), path("out.png")};
  expectRefused(sheet + Arguments{"--cell", "32768"}, path("out.png") + ": the sheet would have ");
  for (const std::string part : {"41x1+0+0", "9x9+32+0", "9x9+0+22", "2147483647x9+2147483647+0"})
    expectRefused(sheet + Arguments{"--crop", part}, path("in.png") + ": the part of --crop reaches beyond");
  expectRefused({"sheet", path("in.png"), path("out.gif")}, path("out.gif") + ": ");
}

}  // namespace
}  // namespace vlvk::tool_test
