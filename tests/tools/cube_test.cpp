/// Colour cubes and HALD pictures, read as colour tables.
#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "resource/color_picture.h"
#include "tests/tools/tool_directory.h"
#include "tools/io/error.h"
#include "tools/table/color_cube.h"
#include "tools/table/cube_file.h"

namespace vlvk::tool_test {
namespace {

constexpr int kSide = 512;

Bytes bytesOf(const std::string& text) {
  return {text.begin(), text.end()};
}

Bytes neutralTable() {
  Bytes table(kColorPictureSize);
  fillNeutralPicture(table.data());
  return table;
}

Bytes tableOf(const std::string& text) {
  return tool::pictureOfCube(tool::parseCube(text));
}

// Rows of a cube of which each node is the input it stands for.
std::string identityRows(int size, double low = 0, double high = 1) {
  std::ostringstream text;
  const auto input = [&](int node) { return low + (high - low) * node / (size - 1); };
  for (int i = 0; i < size * size * size; ++i)
    text << input(i % size) << ' ' << input(i / size % size) << ' ' << input(i / size / size) << '\n';
  return text.str();
}

TEST(Cube, IdentityOfAnySizeIsTheNeutralTable) {
  for (const int size : {2, 33, 64}) {
    EXPECT_TRUE(tableOf("LUT_3D_SIZE " + std::to_string(size) + "\n" + identityRows(size)) == neutralTable()) << size;
  }
  for (const int size : {17, 65}) {
    EXPECT_TRUE(tableOf("DOMAIN_MIN -.5 -.5 -.5\nDOMAIN_MAX 1.25 1.25 1.25\nLUT_3D_SIZE " + std::to_string(size) +
                        "\n" + identityRows(size, -.5, 1.25)) == neutralTable())
        << size;
  }
}

TEST(Cube, DialectsAndLooseWritingAreRead) {
  // Curves turn every channel round, and the cube turns it back.
  const std::string cube = "1 1 1\n0 1 1\n1 0 1\n0 0 1\n1 1 0\n0 1 0\n1 0 0\n0 0 0\n";
  EXPECT_TRUE(tableOf("TITLE a # b\nLUT_1D_SIZE 2\nLUT_1D_INPUT_RANGE 0 1\nLUT_3D_SIZE 2\nLUT_3D_INPUT_RANGE 2 4\n"
                      "4 4 4\n2 2 2\n" +
                      cube) == neutralTable());
  EXPECT_TRUE(tableOf("LUT_1D_SIZE 2\nDOMAIN_MIN 0 0 0\nLUT_3D_SIZE 2\n1 1 1\n0 0 0\n" + cube) == neutralTable());
  const tool::ColorCube curves = tool::parseCube("LUT_1D_SIZE 2\nLUT_1D_INPUT_RANGE 0 2\n1 1 3\n0 0 -1\n");
  EXPECT_EQ(tool::colorAt(curves, {0, 0.5, 1}), (tool::Color{1, 0.75, 1}));
  // Byte order mark, every line end, blanks, comments, and numbers in many forms.
  const tool::ColorCube loose = tool::parseCube(
      "\xEF\xBB\xBF#\r\n \t \r\rTITLE \"no end\n\tLUT_1D_SIZE\t+2 # two\r\nDOMAIN_MAX 1 1 2 \r+.5 1.5e-3 -1E+1\n1 2. "
      "3");
  EXPECT_EQ(loose.curves.values, (std::vector<float>{.5F, .0015F, -10, 1, 2, 3}));
  EXPECT_EQ(loose.curves.high, (tool::Color{1, 1, 2}));
}

TEST(Cube, FaultsAreToldWithTheirLine) {
  const std::pair<std::string, std::string> faults[] = {
      {"", "line 1: neither"},
      {"0 0 0\nLUT_3D_SIZE 2\n", "line 1: neither"},
      {"LUT_3D_SIZE 2\r\n0 0 0\r\n0 0", "line 3: a row has three"},
      {"LUT_3D_SIZE 2\n" + identityRows(2) + "1 1 1\n", "line 10: more rows than the 8"},
      {"LUT_3D_SIZE 200\n" + identityRows(2), "line 9: the file ends after 8 of 8000000"},
      {"\nLUT_3D_SIZE 1", "line 2: LUT_3D_SIZE is a whole number from 2 to 256, not '1'"},
      {"LUT_3D_SIZE 99999999999999999999", "'99999999999999999999'"},
      {"LUT_1D_SIZE 65537", "65536, not"},
      {"LUT_3D_SIZE 2 2", "takes 1 number"},
      {"LUT_3D_SIZE 2\nLUT_3D_SIZE 2", "line 2: LUT_3D_SIZE is stated a second time"},
      {"LUT_3D_SIZE 2\n0 0 0\nDOMAIN_MIN 0 0 0", "line 3: DOMAIN_MIN must stand before"},
      {"LUT_3D_SIZE 2\nDOMAIN_MAX 1 0 1\n\n0 0 0", "line 2: the inputs end"},
      {"LUT_1D_SIZE 2\nLUT_1D_INPUT_RANGE 1 1\n0 0 0", "line 2: the inputs end"},
      {"LUT_3D_SIZE 2\nDOMAIN_MAX 1 1 1\nLUT_3D_INPUT_RANGE 0 2\n0 0 0", "line 3: LUT_3D_INPUT_RANGE and DOMAIN"},
      {"LUT_3D_SIZE 2\nLUT_1D_SIZE 2\nDOMAIN_MAX 1 1 2\n0 0 0", "line 3: DOMAIN_MIN and DOMAIN_MAX do not tell"},
      {"LUT_1D_SIZE 2\n0 -nan 0", "line 2: '-nan'"},
      {"LUT_1D_SIZE 2\n0 0 inf", "'inf'"},
      {"LUT_1D_SIZE 2\n0 0 1.#INF", "'1.#INF'"},
      {"LUT_1D_SIZE 2\n0 0 1e39", "'1e39'"},
      {"LUT_1D_SIZE 2\n0 0 +-1", "'+-1'"},
      {"LUT_1D_SIZE 2\n0,5 0 0", "'0,5'"},
      {"LUT_IN_\x1B", "line 1: unknown keyword 'LUT_IN_?'"},
  };
  for (const auto& [text, expected] : faults) {
    try {
      tool::parseCube(text);
      ADD_FAILURE() << "taken: " << text;
    } catch (const tool::Error& error) {
      EXPECT_NE(std::string(error.what()).find(expected), std::string::npos)
          << expected << " is not in: " << error.what();
    }
  }
}

class CubeFile : public ToolDirectory {
 protected:
  void convert(const std::string& in, const std::string& out, std::vector<std::string> options = {}) const {
    options.insert(options.begin(), {"table", "convert", path(in), path(out)});
    expectDone(options);
  }
  bool same(const std::string& a, const std::string& b) const { return readBytes(path(a)) == readBytes(path(b)); }

  std::mt19937 random{7};
};

TEST_F(CubeFile, EveryFormatKeepsATable) {
  writePng(path("in.png"), kSide, kSide, {PNG_COLOR_TYPE_RGB, 8}, [&](int, int, int) { return random() & 255; });
  convert("in.png", "a.vlk", {"--in-layout", "lookup"});
  convert("a.vlk", "a\"b.cube");
  convert("a\"b.cube", "cube.vlk");
  EXPECT_TRUE(same("cube.vlk", "a.vlk"));
  for (const std::string layout : {"lookup", "hald"}) {
    convert("cube.vlk", layout + ".png", {"--out-layout", layout});
    convert(layout + ".png", layout + ".vlk", {"--in-layout", layout});
    EXPECT_TRUE(same(layout + ".vlk", "a.vlk")) << layout;
  }
  EXPECT_FALSE(same("lookup.png", "hald.png"));
  // The order of a HALD picture's pixels, 16 levels a channel.
  writePng(path("4.png"), 64, 64, {PNG_COLOR_TYPE_RGB, 16},
           [](int x, int y, int channel) { return ((y * 64 + x) >> (4 * channel) & 15) * 4369; });
  convert("4.png", "4.vlk");
  expectDone({"table", "neutral", path("neutral.vlk")});
  EXPECT_TRUE(same("4.vlk", "neutral.vlk"));
  expectDone({"photo", path("4.png"), path("out.png"), "--table", path("4.png")});
}

TEST_F(CubeFile, WhatCannotBeConvertedIsRefused) {
  expectDone({"table", "neutral", path("512.png")});
  writePng(path("64.png"), 64, 64, {PNG_COLOR_TYPE_RGB_ALPHA, 8},
           [](int, int, int channel) { return channel == 3 ? 7 : 0; });
  writePng(path("65.png"), 65, 65, {PNG_COLOR_TYPE_RGB, 8}, [](int, int, int) { return 0; });
  writeBytes(path("bad.cube"), bytesOf("LUT_3D_SIZE 256\n0 0 0\n"));
  const auto refuse = [&](const std::string& in, const std::string& text,
                          const std::vector<std::string>& options = {}) {
    std::vector<std::string> command{"table", "convert", path(in), path("out.vlk")};
    command.insert(command.end(), options.begin(), options.end());
    expectRefused(command, path(in) + ": " + text);
  };
  refuse("512.png", "512 x 512 pixels may be");
  refuse("64.png", "a colour table has no transparent");
  refuse("64.png", "a lookup picture has", {"--in-layout", "lookup"});
  refuse("65.png", "a lookup picture has");
  refuse("65.png", "a HALD picture", {"--in-layout", "hald"});
  refuse("65.png", "--in-layout: 'tiles'", {"--in-layout", "tiles"});
  refuse("bad.cube", "line 2: the file ends after 1 of 16777216");
  refuse("bad.cube", "a layout is stated", {"--in-layout", "hald"});
  writeBytes(path("png.cube"), readBytes(path("65.png")));
  refuse("png.cube", "not a .cube text, it holds a PNG");
  writeBytes(path("cube.vlk"), readBytes(path("bad.cube")));
  refuse("cube.vlk", "not a colour table of the engine, it holds the text of a .cube file");
  expectRefused({"table", "convert", path("bad.cube"), path("out.txt")}, path("out.txt") + ": the name must end");
}

// The colours of a table as a raw picture through another implementation. Half a level is ours, the rest its input of
// 16 bits. Its domain always begins at 0.
TEST_F(CubeFile, InterpolationEqualsAnotherImplementation) {
  if (std::system("ffmpeg -version >/dev/null 2>&1") != 0) GTEST_SKIP() << "ffmpeg is not installed";
  std::ostringstream cube;
  cube << "LUT_3D_SIZE 17\nDOMAIN_MIN 0 0 0\nDOMAIN_MAX 1.25 1.5 2\n";
  for (int i = 0; i < 17 * 17 * 17 * 3; ++i)
    cube << static_cast<double>(random() % 14001) / 10000 - 0.2 << (i % 3 == 2 ? '\n' : ' ');
  writeBytes(path("look.cube"), bytesOf(cube.str()));
  const auto levelAt = [](int x, int y, int channel) {
    return channel == 0 ? x % 64 : channel == 1 ? y % 64 : y / 64 * 8 + x / 64;
  };
  Bytes raw;
  for (int i = 0; i < kSide * kSide * 3; ++i) {
    const long value = std::lround(levelAt(i / 3 % kSide, i / 3 / kSide, i % 3) * 65535 / 63.0);
    raw.insert(raw.end(), {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8)});
  }
  writeBytes(path("in.raw"), raw);
  const std::string format = "-f rawvideo -pix_fmt rgb48le -s 512x512 ";
  ASSERT_EQ(std::system(("cd " + directory_.string() + " && ffmpeg -v error " + format +
                         "-i in.raw -vf lut3d=look.cube:interp=tetrahedral " + format + "out.raw </dev/null")
                            .c_str()),
            0);
  const Bytes expected = readBytes(path("out.raw"));
  ASSERT_EQ(expected.size(), raw.size());
  convert("look.cube", "look.png");
  const Image table = readPng(path("look.png"));
  for (int i = 0; i < kSide * kSide * 3; ++i) {
    const auto at = static_cast<std::size_t>(i) * 2;
    const double level = (expected[at] + 256 * expected[at + 1]) / 257.0;
    ASSERT_NEAR(table.at(i / 3 % kSide, i / 3 / kSide)[i % 3], level, 0.55)
        << "pixel " << i / 3 << ", channel " << i % 3;
  }
}

}  // namespace
}  // namespace vlvk::tool_test
