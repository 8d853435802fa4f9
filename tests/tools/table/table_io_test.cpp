/// Colour tables of every format: what resource files are described as, and what is refused.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "tests/tools/tool_support.h"
#include "tools/table/table_io.h"

namespace vlvk::tool_test {
namespace {

using tool::TableLayout;

constexpr std::size_t kPayload = 1048576;

Bytes tableFile(const Bytes& factors, std::size_t payload = kPayload) {
  return Bytes(4, 't') + factors + Bytes(payload, 0x5A);
}

const Bytes kGoodFactors{0, 8, 0, 0, 0, 2, 0, 0};

TEST(TableIo, WholeTablesAreDescribed) {
  const std::pair<Bytes, std::vector<std::string>> files[] = {
      {tableFile(kGoodFactors),
       {"74 74 74 74", "A 2048 (00 08 00 00)", "B 512 (00 02 00 00)", "1048576 bytes", "1048588 bytes\n"}},
      {tableFile(kGoodFactors, kPayload + 7), {"1048595 bytes, the last 7 "}},
      {tableFile({0, 0xF8, 0, 0, 0, 0xFE, 0, 0}), {"A -2048 (00 F8 00 00)", "B -512 (00 FE 00 00)", "negative"}}};
  for (const auto& [file, texts] : files) {
    for (const std::string& text : texts)
      expectHolds(tool::describe(tool::parseVlk(file)), text);
  }
}

TEST(TableIo, WhatIsWrongIsSaid) {
  const Bytes good = tableFile(kGoodFactors);
  const std::pair<Bytes, std::vector<std::string>> faults[] = {
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
  for (const auto& [file, texts] : faults) {
    const std::string reason = reasonOf([&, &file = file] { tool::parseResource(file); });
    for (const std::string& text : texts)
      expectHolds(reason, text);
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
