/// Colour cubes: text, interpolation, faults. Colour tables: what resource files are described as, and what is refused.
#include <algorithm>
#include <array>
#include <optional>
#include <sstream>

#include "tests/tools/tool_support.h"
#include "tools/table/cube_file.h"
#include "tools/table/table_io.h"

namespace vlvk::tool_test {
namespace {

tool::ColorCube cubeOf(const std::string& text) {
  return tool::parseCube(bytesOf(text));
}

Bytes tableOf(const std::string& text) {
  return tool::pictureOfCube(cubeOf(text));
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
  for (const int size : {2, 33, 64})
    EXPECT_TRUE(tableOf("LUT_3D_SIZE " + std::to_string(size) + "\n" + identityRows(size)) == tool::neutralTable());
  for (const int size : {17, 65}) {
    EXPECT_TRUE(tableOf("DOMAIN_MIN -.5 -.5 -.5\nDOMAIN_MAX 1.25 1.25 1.25\nLUT_3D_SIZE " + std::to_string(size) +
                        "\n" + identityRows(size, -.5, 1.25)) == tool::neutralTable());
  }
}

// From black to white along the axes, the largest fraction first: the four corners of a tetrahedron.
TEST(Cube, BetweenNodesLieTetrahedra) {
  const tool::ColorCube cube = cubeOf("LUT_3D_SIZE 2\n0 0 1\n7 1 3\n5 2 0\n3 9 8\n1 8 4\n2 4 6\n9 6 2\n4 7 5\n");
  std::array<int, 3> axes{0, 1, 2};
  do {
    const std::array<double, 5> edges{1, 0.75, 0.5, 0.125, 0};  // fractions along the axes, in their order
    tool::Color input{};
    tool::Color expected{};
    int corner = 0;
    for (int i = 0; i < 4; ++i) {
      for (int c = 0; c < 3; ++c)
        expected.at(c) += (edges.at(i) - edges.at(i + 1)) * cube.nodes.values.at(corner * 3 + c);
      if (i == 3) break;
      corner += 1 << axes.at(i);
      input.at(axes.at(i)) = edges.at(i + 1);
    }
    EXPECT_EQ(tool::colorAt(cube, input), expected) << axes[0] << axes[1] << axes[2];
  } while (std::next_permutation(axes.begin(), axes.end()));
}

TEST(Cube, DialectsAndLooseWritingAreRead) {
  // Curves turn every channel round, and the cube turns it back.
  const std::string cube = "1 1 1\n0 1 1\n1 0 1\n0 0 1\n1 1 0\n0 1 0\n1 0 0\n0 0 0\n";
  EXPECT_TRUE(tableOf("TITLE a # b\nLUT_1D_SIZE 2\nLUT_1D_INPUT_RANGE 0 1\nLUT_3D_SIZE 2\nLUT_3D_INPUT_RANGE 2 4\n"
                      "4 4 4\n2 2 2\n" +
                      cube) == tool::neutralTable());
  EXPECT_TRUE(tableOf("LUT_1D_SIZE 2\nDOMAIN_MIN 0 0 0\nLUT_3D_SIZE 2\n1 1 1\n0 0 0\n" + cube) == tool::neutralTable());
  EXPECT_EQ(tool::colorAt(cubeOf("LUT_1D_SIZE 2\nLUT_1D_INPUT_RANGE 0 2\n1 1 3\n0 0 -1\n"), {0, 0.5, 1}),
            (tool::Color{1, 0.75, 1}));
  // Byte order mark, every line end, blanks, comments, and numbers in many forms.
  const tool::ColorCube loose = cubeOf(
      "\xEF\xBB\xBF#\r\n \t \r\rTITLE \"no end\n\tLUT_1D_SIZE\t+2 # two\r\nDOMAIN_MAX 1 1 2 \r+.5 1.5e-3 -1E+1\n1 2. "
      "3");
  EXPECT_EQ(loose.curves.values, (std::vector<float>{.5F, .0015F, -10, 1, 2, 3}));
  EXPECT_EQ(loose.curves.high, (tool::Color{1, 1, 2}));
}

TEST(Cube, FaultsHaveTheirLine) {
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
  for (const auto& [text, expected] : faults)
    expectHolds(reasonOf([&, &t = text] { cubeOf(t); }), expected);
}

using tool::TableLayout;

constexpr std::size_t kPayload = 1048576;

Bytes tableFile(const Bytes& factors, std::size_t payload = kPayload) {
  return Bytes(4, 't') + factors + Bytes(payload, 0x5A);
}

const Bytes kGoodFactors{0, 8, 0, 0, 0, 2, 0, 0};

TEST(TableIo, WholeTablesAreDescribedAndFaultsOfOthersSaid) {
  const Bytes good = tableFile(kGoodFactors);
  const std::pair<Bytes, std::vector<std::string>> files[] = {
      {good, {"74 74 74 74", "A 2048 (00 08 00 00)", "B 512 (00 02 00 00)", "1048576 bytes", "1048588 bytes\nnone"}},
      {tableFile(kGoodFactors, kPayload + 7), {"1048595 bytes, the last 7 ", "none"}},
      {tableFile({0, 0xF8, 0, 0, 0, 0xFE, 0, 0}),
       {"A -2048 (00 F8 00 00)", "B -512 (00 FE 00 00)", "negative", "none"}},
      {Bytes(good.begin(), good.begin() + 11), {"11 bytes"}},
      {Bytes(good.begin(), good.begin() + 12), {"only 0 "}},
      {Bytes(good.begin(), good.end() - 1), {"74 74 74 74", "only 1048575 "}},
      {corpusPicture("rgb_png"), {"not a colour table of the engine, it holds a PNG"}},
      {bytesOf("LUT_3D_SIZE 256\n"), {"not a colour table of the engine, it holds the text of a .cube file"}},
      {Bytes(40, 0x9E), {"not a colour table, nor any other resource file of the engine"}},
      {Bytes(40, 'a'), {"not a colour table, nor any other resource file of the engine"}},
      {tableFile({0, 4, 0, 0, 0, 2, 0, 0}), {"states 524288 bytes", "A 1024 (00 04 00 00)"}},
      {tableFile({0, 8, 0, 0, 0, 4, 0, 0}), {"states 2097152 bytes", "B 1024 (00 04 00 00)"}},
      {tableFile({0, 8, 0, 0, 0, 0, 0, 0}), {"states 0 bytes"}},
      {tableFile({0, 0, 1, 0, 0, 0, 1, 0}), {"states 0 bytes", "A 65536", "B 65536"}},  // 2^32 wraps
      {tableFile({0xFF, 8, 0, 0, 0, 2, 0, 0}), {"states 1048064 bytes", "A 2047 (FF 08 00 00)", "negative"}},
      {tableFile({0x80, 0, 0, 0, 0, 0x20, 0, 0}), {"states -1048576 bytes", "A -128 (80 00 00 00)", "negative"}}};
  for (const auto& [file, texts] : files) {
    std::string said;
    said += reasonOf([&, &file = file] { said = tool::describe(tool::parseResource(file)); });
    for (const std::string& text : texts)
      expectHolds(said, text);
  }
}

TEST(TableIo, SizesAndTransparencyThatDoNotSuitAreRefused) {
  const auto refusal = [](int width, int height, std::optional<TableLayout> layout, int lastAlpha = 255) {
    tool::Picture picture(width, height);
    std::fill_n(picture.pixels.get(), picture.rowBytes() * height, 255);
    picture.pixels[picture.rowBytes() * height - 1] = static_cast<std::uint8_t>(lastAlpha);
    picture.hasAlpha = lastAlpha < 255;
    return reasonOf([&] { tool::tableOfPicture(picture, layout); });
  };
  EXPECT_EQ(refusal(512, 512, TableLayout::kLookup), "none");
  EXPECT_EQ(refusal(64, 64, std::nullopt), "none");
  expectHolds(refusal(512, 512, std::nullopt), "512 x 512 pixels may be");
  expectHolds(refusal(512, 512, TableLayout::kLookup, 254), "no transparent pixels");
  expectHolds(refusal(64, 64, std::nullopt, 254), "no transparent pixels");
  expectHolds(refusal(65, 65, std::nullopt), "this one 65 x 65");
  expectHolds(refusal(511, 512, TableLayout::kLookup), "this one 511 x 512");
  expectHolds(refusal(512, 513, TableLayout::kLookup), "this one 512 x 513");
  expectHolds(refusal(64, 65, TableLayout::kHald), "this one 64 x 65");
}

}  // namespace
}  // namespace vlvk::tool_test
