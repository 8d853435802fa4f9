/// `vlvk-makeup sheet`, run as a process.
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "tests/tools/tool_support.h"

namespace vlvk::tool_test {
namespace {

using Place = std::pair<int, int>;

class Sheet : public ToolDirectory {
 protected:
  Image run(const std::string& command, const Arguments& options) const {
    expectDone(Arguments{command, path("in.png"), path("out.png")} + options);
    return readPng(path("out.png"));
  }
};

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
  writePng(path("in.png"), 96, 61,
           [](int x, int y, int channel) { return (channel == 0 ? 150 : 110) + (x * 5 + y * 3) % 64 + channel; });
  const Image sheet = run("sheet", {"--cell", "96", "--columns", "radius=40,0,8", "--rows", "soften=1000,70",
                                    "--whiten", "80", "--original"});
  const Place first = placeOf(readPng(path("in.png")), sheet);
  std::vector<Place> places;
  for (const std::string soften : {"1000", "70"}) {
    for (const std::string radius : {"40", "0", "8"})
      places.push_back(placeOf(run("photo", {"--radius", radius, "--soften", soften, "--whiten", "80"}), sheet));
  }
  places[4].first = places[3].first;  // without a radius softening is nothing: the cell above looks the same
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
  EXPECT_NE(placeOf(expected, run("sheet", {"--original", "--crop", "160x40+20+40", "--cell", "80"})).first, -1);
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
