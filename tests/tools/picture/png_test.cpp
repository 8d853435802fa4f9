/// PNG in memory: every kind, 16 bits, profiles, damage.
#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>

#include "tests/tools/tool_support.h"
#include "tools/picture/png.h"

namespace vlvk::tool_test {
namespace {

using Png = ToolDirectory;

Bytes pixelsOf(const tool::Picture& picture) {
  return {picture.pixels.get(), picture.pixels.get() + picture.rowBytes() * picture.height};
}

TEST_F(Png, EveryKindIsRead) {
  for (const std::string name :
       {"gray1_png", "ga_png", "palette_interlaced_png", "rgb_png", "rgba_png", "profile_png"}) {
    const Image expected = readPng(VLVK_CORPUS "/picture/" + name);
    const tool::Picture picture = tool::decodePng(corpusPicture(name));
    EXPECT_EQ(picture.width, expected.width) << name;
    EXPECT_EQ(pixelsOf(picture), expected.pixels) << name;
    EXPECT_EQ(picture.hasAlpha, name == "ga_png" || name == "palette_interlaced_png" || name == "rgba_png") << name;
  }
}

// Scaled and rounded, not cut off: 0x00FF is 1, 0x7F7F is 127, 0x7F80 is 127 as well.
TEST_F(Png, SixteenBitsAreRounded) {
  const auto sample = [](int x, int y, int channel) { return (x * 257 + y * 64 + channel * 21) & 65535; };
  writePng(path("16.png"), 256, 5, PNG_COLOR_TYPE_RGB, 16, sample);
  const tool::Picture picture = tool::decodePng(readBytes(path("16.png")));
  for (int i = 0; i < 256 * 5 * 3; ++i) {
    const int x = i / 3 % 256;
    ASSERT_EQ(picture.row(i / 768)[x * 4 + i % 3], (sample(x, i / 768, i % 3) + 128) / 257) << "sample " << i;
  }
  // The key is compared at full depth: of 0x0001 and 0x00FE, one is transparent.
  EXPECT_TRUE(tool::decodePng(corpusPicture("gray16_keyed_png")).hasAlpha);
}

TEST_F(Png, DamageAndSizesAreRefused) {
  const auto refusal = [](const Bytes& file) { return reasonOf([&] { tool::decodePng(file); }); };
  writeRgba(path("rgba.png"), patternImage(20, 20));
  const Bytes file = readBytes(path("rgba.png"));
  for (std::size_t size = 8; size < file.size(); size += 97)
    expectHolds(refusal({file.begin(), file.begin() + size}), "not a readable PNG");
  Bytes flipped = file;
  flipped[flipped.size() / 2] ^= 0x10;
  expectHolds(refusal(flipped), "not a readable PNG");
  writePng(path("wide.png"), 32769, 1, PNG_COLOR_TYPE_GRAY, 8, [](int, int, int) { return 0; });
  expectHolds(refusal(readBytes(path("wide.png"))), "32769 x 1 pixels is too large");
}

}  // namespace
}  // namespace vlvk::tool_test
