/// The skin-weighted blends against the naive one.
#include <vlvk/skin_blend.h>

#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "tests/naive/naive.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/plane.h"
#include "tests/support/random_content.h"
#include "tests/support/target_test.h"

namespace {

using namespace testing_support;

struct BlendCase {
  int width, height;
  int padding;  // of both luma planes
  int chromaPadding;
  Guard guard;
  std::vector<std::uint8_t> curve;  // 48 weights
  int centre[2];
};

class SkinBlend : public TargetTest {
 protected:
  /// Runs both functions. The planes that are only read cannot be written, and chroma ends with its last whole pair.
  static void check(const BlendCase& c, const Plane& unsmoothed, const Plane& smoothed, const Plane& chroma) {
    GuardedBuffer table(48, c.guard, 0);
    for (int i = 0; i < 48; ++i)
      table.data()[naive::interleavedPosition48(i)] = c.curve[static_cast<std::size_t>(i)];
    table.makeReadOnly();
    GuardedBuffer centre(8, c.guard, 0);
    std::copy_n(c.centre, 2, centre.as<int>());
    centre.makeReadOnly();

    for (const bool intoSmoothed : {true, false}) {
      const Plane& from = intoSmoothed ? unsmoothed : smoothed;
      const Plane& onto = intoSmoothed ? smoothed : unsmoothed;
      Plane source(c.width, c.height, from.stride(), c.guard);
      std::copy_n(from.data(), source.bytes().size(), source.data());
      source.makeReadOnly();
      const Plane destination(c.width, c.height, onto.stride(), c.guard);
      std::vector<std::uint8_t> expected = onto.bytes();
      std::copy(expected.begin(), expected.end(), destination.data());
      naive::blend(unsmoothed.data(), smoothed.data(), expected.data(), onto.stride(), chroma.data(), chroma.stride(),
                   c.width, c.height, c.curve, c.centre[0], c.centre[1]);
      if (intoSmoothed) {
        MeanBlendImageWithSkin(source.data(), source.stride(), destination.data(), chroma.data(), chroma.stride(),
                               c.width, c.height, 12345, table.data(), centre.as<int>());
      } else {
        MeanBlendImageWithSkin_V3(destination.data(), destination.stride(), source.data(), chroma.data(),
                                  chroma.stride(), c.width, c.height, table.data(), centre.as<int>());
      }
      ASSERT_TRUE(sameBytes(destination, expected))
          << "into smoothed " << intoSmoothed << ", centre " << c.centre[0] << ' ' << c.centre[1];
    }
  }

  static void checkRandom(const BlendCase& c, Content chromaContent, Random& random) {
    const Plane unsmoothed(c.width, c.height, c.width + c.padding, c.guard, Content::kNoise, random);
    const Plane smoothed(c.width, c.height, c.width + c.padding, c.guard, Content::kNoise, random);
    const int chromaWidth = c.width & ~1;
    Plane chroma(chromaWidth, c.height >> 1, chromaWidth + c.chromaPadding, c.guard, chromaContent, random);
    chroma.makeReadOnly();
    check(c, unsmoothed, smoothed, chroma);
  }

  static std::vector<std::uint8_t> randomCurve(Random& random) {
    std::vector<std::uint8_t> curve(48);
    for (std::uint8_t& weight : curve)
      weight = static_cast<std::uint8_t>(random.between(0, 64));
    return curve;
  }

  const std::vector<std::uint8_t> liveCurve_ = naive::skinCurve(1.5f, 64.0f, 48);
};

TEST_P(SkinBlend, AllColumnRunsAndSizes) {
  Random random(41);
  for (int width = 0; width <= 50; ++width) {
    for (int height = 0; height <= 5; ++height) {
      for (const Guard guard : {Guard::kBehind, Guard::kBefore}) {
        const int padding = random.pick({0, 1, 5, 16});
        BlendCase c{width, height, padding, random.pick({0, 1, 2, 9}), guard, liveCurve_, {155, 110}};
        checkRandom(c, Content::kSkinPairs, random);
        c.curve = randomCurve(random);
        checkRandom(c, Content::kNoise, random);
        ASSERT_FALSE(HasFatalFailure());
      }
    }
  }
}

TEST_P(SkinBlend, CentresCountModulo256) {
  Random random(42);
  for (const int centre : {-1, -101, 256 + 155, 0x7FFFFF9B, INT_MIN, INT_MAX, 0, 255, 1 << 20}) {
    checkRandom({60, 4, 0, 0, Guard::kBehind, liveCurve_, {centre, 110 - 512}}, Content::kSkinPairs, random);
    checkRandom({60, 4, 0, 0, Guard::kBehind, liveCurve_, {110 - 512, centre}}, Content::kNoise, random);
    ASSERT_FALSE(HasFatalFailure());
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
    check({width, 2 * chromaRows, 0, 0, Guard::kBehind, randomCurve(random), {155, 110}}, unsmoothed, smoothed, chroma);
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
    BlendCase c{256, 256, 0, 0, Guard::kBehind, std::vector<std::uint8_t>(48, 64), {0, 1}};
    c.curve[1] = static_cast<std::uint8_t>(weight);
    check(c, unsmoothed, smoothed, chroma);
    ASSERT_FALSE(HasFatalFailure()) << "weight " << weight;
  }
}

VLVK_TEST_ALL_TARGETS(SkinBlend);

}  // namespace
