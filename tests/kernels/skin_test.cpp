/// The skin weight tables, their layouts and the frame lookup; the skin-weighted blends against the naive one.
#include <vlvk/skin_blend.h>
#include <vlvk/skin_tables.h>

#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "rows/row_loops.h"
#include "tests/naive/naive.h"
#include "tests/support/plane.h"
#include "tests/support/target_test.h"

namespace {

using namespace testing_support;

constexpr std::uint8_t kUnwritten = 0xEE;

TEST(SkinTables, LiveTable) {
  constexpr std::uint8_t kCurve[48] = {64, 64, 64, 64, 64, 64, 64, 64, 64, 64, 64, 64, 64, 63, 63, 61,
                                       60, 58, 55, 52, 49, 46, 43, 39, 36, 33, 29, 26, 23, 20, 18, 15,
                                       13, 11, 9,  8,  6,  5,  4,  3,  2,  2,  1,  1,  1,  0,  0,  0};
  std::uint8_t table[48];
  calcSkinProbilityInterleavingTable8x8x4_8x8x2(table, 1.5f, 64.0f);
  for (int i = 0; i < 48; ++i)
    EXPECT_EQ(table[i < 32 ? 4 * (i % 8) + i / 8 : 32 + 2 * (i % 8) + i / 8 - 4], kCurve[i]) << i;
}

// No plateau, no spread, the capped spread, plateaus that end in, at and past each part of the table, all of it
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
    for (const Guard guard : {Guard::kBehind, Guard::kBefore}) {
      /// Entry i of the table is entry curveAt(i) of the curve, or was not written where that is below 0.
      const auto check = [&](auto* builder, int size, int entries, int step, auto curveAt) {
        const GuardedBuffer table(static_cast<std::size_t>(size), guard, kUnwritten);
        const std::vector<std::uint8_t> curve = naive::skinCurve(a, b, entries, step);
        builder(table.data(), a, b);
        for (int i = 0; i < size; ++i) {
          const int at = curveAt(i);
          ASSERT_EQ(table.data()[i], at < 0 ? kUnwritten : curve[static_cast<std::size_t>(at)])
              << "a " << a << ", b " << b << ", " << entries << " entries, byte " << i;
        }
      };
      // By four, then by two; entries of the plateau are written in the first part only.
      const auto fourWay = [](int i) { return i / 32 * 32 + i % 4 * 8 + i % 32 / 4; };
      const int n = naive::skinPlateau(a, b);
      check(calcSkinProbilityInterleavingTable8x8x4_8x8x2, 48, 48, 1, [&](int i) {
        const int at = i < 32 ? fourWay(i) : 32 + i % 2 * 8 + i % 16 / 2;
        return i < 32 || at >= n ? at : -1;
      });
      check(calcSkinProbilityInterleavingTable8x8x4, 32, 32, 8, fourWay);
      check(calcSkinProbilityInterleavingTable8x8x4x2, 64, 64, 4, fourWay);
      check(calcSkinProbility256, 512, 256, 1, [](int i) { return i >= 256 ? i - 256 : 255 - i; });
      ASSERT_FALSE(HasFatalFailure());
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
  for (int i = 0; i < 65536; ++i)
    ASSERT_EQ(table.data()[i], weight(i / 256 - 155) * weight(i % 256 - 110) / 32) << i / 256 << ' ' << i % 256;
}

TEST(SkinTables, WeightOfEveryBlockOfAFrame) {
  Random random(51);
  const Plane table(256, 256, 256, Guard::kBehind, Content::kNoise, random);
  for (int width = 0; width <= 19; ++width) {
    for (int height = 0; height <= 6; ++height) {
      for (const Guard guard : {Guard::kBehind, Guard::kBefore}) {
        const int chromaWidth = (width + 1) & ~1;
        // The luma plane is memory that cannot be read.
        const Plane chroma(chromaWidth, (height + 1) / 2, chromaWidth, guard, Content::kNoise, random);
        const Plane weights(width, height, width, guard);
        MeanGetSkinWeight(chroma.data() - width * height, table.data(), weights.data(), width, height);
        const auto weight = [&](int x, int y) {
          const std::uint8_t* pair = chroma.row(y / 2) + (x & ~1);
          return table.data()[256 * pair[0] + pair[1]];
        };
        ASSERT_TRUE(holds(weights, weight)) << width << " x " << height;
      }
    }
  }
}

class SkinBlend : public TargetTest {
 protected:
  /// Runs both functions. The plane that is only read cannot be written, and chroma ends with its last whole pair.
  static void checkBlends(const Plane& unsmoothed, const Plane& smoothed, const Plane& chroma, Guard guard,
                          const std::vector<std::uint8_t>& curve, int centre0, int centre1) {
    GuardedBuffer table(48, guard, 0);
    for (int i = 0; i < 48; ++i)
      table.data()[naive::interleavedPosition48(i)] = curve[static_cast<std::size_t>(i)];
    GuardedBuffer centre(8, guard, 0);
    centre.as<int>()[0] = centre0;
    centre.as<int>()[1] = centre1;
    const int width = unsmoothed.width();
    const int height = unsmoothed.height();

    for (const bool intoSmoothed : {true, false}) {
      const Plane& from = intoSmoothed ? unsmoothed : smoothed;
      const Plane& onto = intoSmoothed ? smoothed : unsmoothed;
      Plane source(width, height, from.stride(), guard);
      std::copy_n(from.data(), source.bytes().size(), source.data());
      source.makeReadOnly();
      const Plane destination(width, height, onto.stride(), guard);
      std::vector<std::uint8_t> expected = onto.bytes();
      std::copy(expected.begin(), expected.end(), destination.data());
      naive::blend(unsmoothed.data(), smoothed.data(), expected.data(), onto.stride(), chroma.data(), chroma.stride(),
                   width, height, curve, centre0, centre1);
      if (intoSmoothed) {
        MeanBlendImageWithSkin(source.data(), source.stride(), destination.data(), chroma.data(), chroma.stride(),
                               width, height, 12345, table.data(), centre.as<int>());
      } else {
        MeanBlendImageWithSkin_V3(destination.data(), destination.stride(), source.data(), chroma.data(),
                                  chroma.stride(), width, height, table.data(), centre.as<int>());
      }
      ASSERT_TRUE(sameBytes(destination, expected))
          << "into smoothed " << intoSmoothed << ", centre " << centre0 << ' ' << centre1;
    }
  }

  static std::vector<std::uint8_t> randomCurve(Random& random) {
    std::vector<std::uint8_t> curve(48);
    for (std::uint8_t& weight : curve)
      weight = static_cast<std::uint8_t>(random.between(0, 64));
    return curve;
  }
};

// The live curve around skin, any curve elsewhere; centres count modulo 256.
TEST_P(SkinBlend, AllColumnRunsAndSizes) {
  Random random(41);
  const std::vector<std::uint8_t> liveCurve = naive::skinCurve(1.5f, 64.0f, 48);
  const auto check = [&](int width, int height, Guard guard, Content content, auto curve, int centre0, int centre1) {
    const int stride = width + random.pick({0, 1, 5, 16});
    const Plane unsmoothed(width, height, stride, guard, Content::kNoise, random);
    const Plane smoothed(width, height, stride, guard, Content::kNoise, random);
    const int chromaWidth = width & ~1;
    const Plane chroma(chromaWidth, height / 2, chromaWidth + random.pick({0, 1, 2, 9}), guard, content, random);
    checkBlends(unsmoothed, smoothed, chroma, guard, curve, centre0, centre1);
  };
  for (int width = 0; width <= 50; ++width) {
    for (int height = 0; height <= 5; ++height) {
      for (const Guard guard : {Guard::kBehind, Guard::kBefore}) {
        check(width, height, guard, Content::kSkinPairs, liveCurve, random.pick({155, -101, 256 + 155, 0x7FFFFF9B}),
              random.pick({110, 110 - 512}));
        check(width, height, guard, Content::kNoise, randomCurve(random), random.pick({-1, INT_MIN, INT_MAX, 0}),
              random.pick({255, 1 << 20}));
        ASSERT_FALSE(HasFatalFailure()) << width << " x " << height;
      }
    }
  }
}

// Every pair of distances, in the vector runs (512 columns) and in the scalar tail (6 columns).
TEST_P(SkinBlend, EveryChromaPair) {
  Random random(43);
  for (const int width : {512, 6}) {
    const int pairs = width / 2;
    const int chromaRows = (65536 + pairs - 1) / pairs;
    const Plane chroma(width, chromaRows, width);
    for (int i = 0; i < pairs * chromaRows; ++i) {
      chroma.data()[2 * i] = static_cast<std::uint8_t>(i >> 8);
      chroma.data()[2 * i + 1] = static_cast<std::uint8_t>(i);
    }
    const Plane unsmoothed(width, 2 * chromaRows, width, Guard::kBehind, Content::kNoise, random);
    const Plane smoothed(width, 2 * chromaRows, width, Guard::kBehind, Content::kNoise, random);
    checkBlends(unsmoothed, smoothed, chroma, Guard::kBehind, randomCurve(random), 155, 110);
    ASSERT_FALSE(HasFatalFailure());
  }
}

// Every weight with every pair of luma values.
TEST_P(SkinBlend, EveryWeightAndLumaPair) {
  const Plane unsmoothed(256, 256, 256);
  const Plane smoothed(256, 256, 256);
  for (int i = 0; i < 65536; ++i) {
    unsmoothed.data()[i] = static_cast<std::uint8_t>(i >> 8);
    smoothed.data()[i] = static_cast<std::uint8_t>(i);
  }
  Random random(44);
  const Plane chroma(256, 128, 256, Guard::kBehind, Content::kBlack, random);
  for (int weight = 0; weight <= 64; ++weight) {
    std::vector<std::uint8_t> curve(48, 64);
    curve[1] = static_cast<std::uint8_t>(weight);
    checkBlends(unsmoothed, smoothed, chroma, Guard::kBehind, curve, 0, 1);
    ASSERT_FALSE(HasFatalFailure()) << "weight " << weight;
  }
}

// Pairs at every distance from the centre; the library's own tables may end anywhere below 64.
TEST_P(SkinBlend, WeightsOfAnyDistanceCount) {
  constexpr int kColumns = 160;
  constexpr std::uint8_t kCentre[2] = {90, 130};
  for (const int end : {47, 48, 49, 64}) {
    std::uint8_t weights[64] = {};
    for (int d = 0; d < end; ++d)
      weights[d] = static_cast<std::uint8_t>(64 - d);
    std::vector<std::uint8_t> chroma;
    for (int pair = 0; pair < kColumns / 2; ++pair)
      chroma.insert(chroma.end(), {static_cast<std::uint8_t>(90 + pair), 130});
    const std::vector<std::uint8_t> unsmoothed(kColumns, 0);
    std::vector<std::uint8_t> rows[2] = {std::vector<std::uint8_t>(kColumns, 64),
                                         std::vector<std::uint8_t>(kColumns, 128)};
    vlvk::rowLoops().blendRowPair(unsmoothed.data(), unsmoothed.data(), rows[0].data(), rows[1].data(), rows[0].data(),
                                  rows[1].data(), chroma.data(), kColumns, weights, kCentre);
    for (int c = 0; c < kColumns; ++c) {
      const int weight = c / 2 < end ? 64 - c / 2 : 0;
      ASSERT_EQ(rows[0][static_cast<std::size_t>(c)], weight) << "column " << c << " of " << end;
      ASSERT_EQ(rows[1][static_cast<std::size_t>(c)], 2 * weight) << "column " << c << " of " << end;
    }
  }
}

VLVK_TEST_ALL_TARGETS(SkinBlend);

}  // namespace
