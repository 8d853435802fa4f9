/// `vlvk-makeup sheet`, run as a process.
#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/tools/tool_directory.h"

namespace vlvk::tool_test {
namespace {

using Arguments = std::vector<std::string>;
using Place = std::pair<int, int>;

class Sheet : public ToolDirectory {
 protected:
  Image run(const std::string& command, const Arguments& options) const {
    Arguments arguments{command, path("in.png"), path("out.png")};
    arguments.insert(arguments.end(), options.begin(), options.end());
    expectDone(arguments);
    return readPng(path("out.png"));
  }
};

// Row and column where `part` stands in `whole`.
std::optional<Place> placeOf(const Image& part, const Image& whole) {
  const auto stands = [&](int left, int top) {
    for (int y = 0; y < part.height; ++y) {
      if (!std::equal(part.at(0, y), part.at(0, y) + part.width * 4, whole.at(left, top + y))) return false;
    }
    return true;
  };
  for (int y = 0; y + part.height <= whole.height; ++y) {
    for (int x = 0; x + part.width <= whole.width; ++x) {
      if (stands(x, y)) return Place{y, x};
    }
  }
  return std::nullopt;
}

TEST_F(Sheet, CellsAreWhatPhotoMakes) {
  writePng(path("in.png"), 96, 61, {PNG_COLOR_TYPE_RGB, 8},
           [](int x, int y, int channel) { return (channel == 0 ? 150 : 110) + (x * 5 + y * 3) % 64 + channel; });
  const Image sheet = run("sheet", {"--cell", "96", "--columns", "radius=40,0,8", "--rows", "soften=1000,70",
                                    "--whiten", "80", "--original"});
  std::vector<Place> places;
  for (const std::string soften : {"1000", "70"}) {
    for (const std::string radius : {"40", "0", "8"}) {
      const auto place = placeOf(run("photo", {"--radius", radius, "--soften", soften, "--whiten", "80"}), sheet);
      ASSERT_TRUE(place) << "radius " << radius << " soften " << soften;
      // Without a radius softening is nothing, so that the cell below looks the same.
      places.push_back(soften == "70" && radius == "0" ? Place{places[3].first, place->second} : *place);
    }
  }
  const auto first = placeOf(readPng(path("in.png")), sheet);
  ASSERT_TRUE(first);
  const int right = places[0].second - first->second;
  const int down = places[3].first - first->first;
  EXPECT_GE(right, 96);
  EXPECT_GE(down, 61);
  for (int i = 0; i < 6; ++i)
    EXPECT_EQ(places[i], Place(first->first + i / 3 * down, first->second + (i % 3 + 1) * right)) << "cell " << i;
}

// Each pixel of the detail below is the mean of four, which are far apart.
TEST_F(Sheet, DetailIsAveraged) {
  const auto mean = [](int x, int y, int channel) { return 40 + (x * 7 + y * 11 + channel * 50) % 160; };
  writePng(path("in.png"), 200, 100, {PNG_COLOR_TYPE_RGB, 8},
           [&](int x, int y, int channel) { return mean(x / 2, y / 2, channel) + ((x + y) % 2 == 0 ? 30 : -30); });
  Image expected{80, 20, {}};
  for (int y = 0; y < 20; ++y) {
    for (int x = 0; x < 80; ++x) {
      for (int c = 0; c < 3; ++c)
        expected.pixels.push_back(static_cast<std::uint8_t>(mean(x + 10, y + 20, c)));
      expected.pixels.push_back(255);
    }
  }
  EXPECT_TRUE(placeOf(expected, run("sheet", {"--original", "--crop", "160x40+20+40", "--cell", "80"})));
}

TEST_F(Sheet, WrongOptionsAreRefused) {
  writeRgba(path("in.png"), patternImage(40, 30));
  const auto refuse = [this](const Arguments& options, const std::string& reason) {
    Arguments arguments{"sheet", path("in.png"), path("out.png")};
    arguments.insert(arguments.end(), options.begin(), options.end());
    expectRefused(arguments, reason);
  };
  for (const std::string values : {"whiten=", "whiten=1,,2", "whiten=1,", "radius=999", "whiten=0x1", "soften=1.5",
                                   "radius=8,0,8", "whiten", "=1", "--whiten=1", "threads=1,2", ""}) {
    refuse({"--columns", values}, path("in.png") + ": --columns: ");
  }
  refuse({"--columns", "soften=1"}, "both");
  refuse({"--soften", "500"}, "--soften: ");
  refuse({"--cell", "32768"}, path("out.png") + ": the sheet would have ");
  for (const std::string part : {"", "9x9", "0x9+0+0", "9x9+0+-1", "9x9+0+0+0", "9x9+0+99999999999", "9x9+0+0 "})
    refuse({"--crop", part}, "--crop: '" + part + "'");
  for (const std::string part : {"41x1+0+0", "9x9+32+0", "9x9+0+22", "2147483647x9+2147483647+0"})
    refuse({"--crop", part}, "40 x 30");
  expectRefused({"sheet", path("in.png"), path("out.gif")}, path("out.gif") + ": ");
  expectRefused({"sheet", path("in.png"), path("none/out.png")}, path("none/out.png") + ": ");
}

}  // namespace
}  // namespace vlvk::tool_test
