/// `vlvk-makeup photo`, run as a process.
#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <cstring>

#include "tests/tools/tool_support.h"

namespace vlvk::tool_test {
namespace {

namespace fs = std::filesystem;

class Photo : public ToolDirectory {
 protected:
  Image result(const std::string& in, const Arguments& options = {}) const {
    expectDone(Arguments{"photo", in, path("out.PNG")} + options);
    return readPng(path("out.PNG"));
  }
};

// The numbers are those of every machine.
TEST_F(Photo, PortraitIsTheSameEverywhere) {
  const std::string portrait = VLVK_SAMPLES "/portrait.png";
  const auto crcOf = [](const Bytes& bytes) { return crc32_z(0, bytes.data(), bytes.size()); };
  EXPECT_EQ(crcOf(result(portrait).pixels), 0xfa292875U);
  EXPECT_EQ(crcOf(result(portrait, {"--whiten=80", "--soften=400", "--radius=9", "--threads=3"}).pixels), 0x64957ebeU);
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
}

}  // namespace
}  // namespace vlvk::tool_test
