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

VLVK_TEST_ALL_TARGETS(SkinBlend);

}  // namespace
