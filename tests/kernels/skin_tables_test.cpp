/// The skin weight tables, their layouts and the frame lookup.
#include <vlvk/skin_tables.h>

#include <gtest/gtest.h>

#include <vector>

#include "tests/naive/naive.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/plane.h"
#include "tests/support/random_content.h"

namespace {

using testing_support::Content;
using testing_support::Guard;
using testing_support::GuardedBuffer;
using testing_support::Plane;
using testing_support::Random;
using testing_support::sameBytes;

constexpr std::uint8_t kUnwritten = 0xEE;

TEST(SkinTables, LiveTable) {
  constexpr std::uint8_t kCurve[48] = {64, 64, 64, 64, 64, 64, 64, 64, 64, 64, 64, 64, 64, 63, 63, 61,
                                       60, 58, 55, 52, 49, 46, 43, 39, 36, 33, 29, 26, 23, 20, 18, 15,
                                       13, 11, 9,  8,  6,  5,  4,  3,  2,  2,  1,  1,  1,  0,  0,  0};
  std::uint8_t table[48];
  calcSkinProbilityInterleavingTable8x8x4_8x8x2(table, 1.5f, 64.0f);
  for (int row = 0; row < 8; ++row) {
    for (int part = 0; part < 4; ++part)
      EXPECT_EQ(table[4 * row + part], kCurve[8 * part + row]);
    for (int part = 0; part < 2; ++part)
      EXPECT_EQ(table[32 + 2 * row + part], kCurve[32 + 8 * part + row]);
  }
}

// No plateau, no spread, the capped spread, plateaus that end in, at and behind each part of the table, all of it
// plateau.
TEST(SkinTables, AllBuildersForAllKindsOfParameters) {
  struct {
    float a, b;
  } constexpr kParameters[] = {{1.5f, 64.0f},   {0.0f, 64.0f},   {1.5f, 0.0f},    {0.0f, 0.0f},    {0.01f, 1.0f},
                               {0.93f, 64.0f},  {1.0f, 143.9f},  {1.5f, 144.0f},  {1.5f, 1e4f},    {2.58f, 144.0f},
                               {2.63f, 144.0f}, {2.67f, 150.0f}, {2.75f, 144.0f}, {3.4f, 144.0f},  {3.95f, 144.0f},
                               {4.0f, 144.0f},  {5.0f, 64.0f},   {20.0f, 144.0f}, {100.0f, 64.0f}, {1e30f, 3.0f},
                               {1.5f, 1e-3f},   {0.7f, 37.3f},   {2.0f, 90.0f},   {21.2f, 144.0f}};
  for (const auto& parameters : kParameters) {
    const float a = parameters.a;
    const float b = parameters.b;
    SCOPED_TRACE(testing::Message() << "a " << a << ", b " << b);
    const int n = naive::skinPlateau(a, b);
    for (const Guard guard : {Guard::kBehind, Guard::kBefore}) {
      const auto check = [&](auto* builder, int entries, int step, auto positionOf, auto isWritten) {
        const GuardedBuffer table(static_cast<std::size_t>(entries), guard, kUnwritten);
        const std::vector<std::uint8_t> curve = naive::skinCurve(a, b, entries, step);
        builder(table.data(), a, b);
        for (int i = 0; i < entries; ++i) {
          ASSERT_EQ(table.data()[positionOf(i)], isWritten(i) ? curve[static_cast<std::size_t>(i)] : kUnwritten)
              << entries << " entries, entry " << i;
        }
      };
      const auto fourWay = [](int i) { return i / 32 * 32 + 4 * (i % 8) + i % 32 / 8; };
      const auto always = [](int) { return true; };
      check(calcSkinProbilityInterleavingTable8x8x4_8x8x2, 48, 1, naive::interleavedPosition48,
            [n](int i) { return i < 32 || i >= n; });
      check(calcSkinProbilityInterleavingTable8x8x4, 32, 8, fourWay, always);
      check(calcSkinProbilityInterleavingTable8x8x4x2, 64, 4, fourWay, always);
      ASSERT_FALSE(HasFatalFailure());

      const GuardedBuffer table(512, guard, kUnwritten);
      const std::vector<std::uint8_t> curve = naive::skinCurve(a, b, 256);
      calcSkinProbility256(table.data(), a, b);
      for (int t = -256; t <= 255; ++t) {
        ASSERT_EQ(table.data()[256 + t], curve[static_cast<std::size_t>(t >= 0 ? t : -t - 1)]) << "difference " << t;
      }
    }
  }
}

TEST(SkinTables, JointLookup) {
  const GuardedBuffer table(65536, Guard::kBehind, kUnwritten);
  MeanBuildSkinLookup(table.data());
  const std::vector<std::uint8_t> curve = naive::skinCurve(1.5f, 64.0f, 256);
  const auto weight = [&](int difference) {
    return int{curve[static_cast<std::size_t>(difference >= 0 ? difference : -difference - 1)]};
  };
  for (int row = 0; row < 256; ++row) {
    for (int column = 0; column < 256; ++column) {
      ASSERT_EQ(table.data()[256 * row + column], weight(row - 155) * weight(column - 110) / 32)
          << row << ' ' << column;
    }
  }
}

TEST(SkinTables, WeightOfEveryBlockOfAFrame) {
  Random random(51);
  Plane table(256, 256, 256, Guard::kBehind, Content::kNoise, random);
  table.makeReadOnly();
  for (int width = 0; width <= 19; ++width) {
    for (int height = 0; height <= 6; ++height) {
      for (const Guard guard : {Guard::kBehind, Guard::kBefore}) {
        const int chromaWidth = (width + 1) & ~1;
        // The luma plane is memory that cannot be read.
        const Plane chroma(chromaWidth, (height + 1) / 2, chromaWidth, guard, Content::kNoise, random);
        const Plane weights(width, height, width, guard);
        std::vector<std::uint8_t> expected = weights.bytes();
        for (int y = 0; y < height; ++y) {
          for (int x = 0; x < width; ++x) {
            const std::uint8_t* pair = chroma.row(y / 2) + (x & ~1);
            expected[static_cast<std::size_t>(y * width + x)] = table.data()[256 * pair[0] + pair[1]];
          }
        }
        MeanGetSkinWeight(chroma.data() - width * height, table.data(), weights.data(), width, height);
        ASSERT_TRUE(sameBytes(weights, expected)) << width << " x " << height;
      }
    }
  }
}

}  // namespace
