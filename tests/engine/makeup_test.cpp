/// Frames through the handle: against the model, against the class where both do the same, and what must not change.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/engine/makeup_rig.h"
#include "tests/support/target_test.h"

namespace makeup_rig {
namespace {

int randomSide(Random& random) {
  return random.pick({random.between(1, 20), random.between(1, 40), random.between(1, 40), random.between(64, 100)});
}

/// One handle sees everything, so each frame also meets the buffers and tables of all sorts of earlier ones.
class Engine {
 public:
  explicit Engine(std::uint32_t seed) : random(seed) {}

  void change() {
    settings = settingsOf(random.pick({0, 0, 50, 100, random.between(1, 99)}),
                          random.pick({1000, 1000, 1000, 0, 2, random.between(0, 1000)}),
                          random.pick({0, 8, 20, 60, 128, random.between(1, 40), random.between(1, 40)}),
                          random.between(1, 5));
    EXPECT_EQ(vlvkMakeupConfigure(handle.get(), &settings), VLVK_OK);
    if (random.between(0, 5) == 0) setTable(!hasTable);
  }
  void setTable(bool wanted) {
    EXPECT_EQ(
        vlvkMakeupSetTable(handle.get(), wanted ? noiseTable().data() : nullptr, wanted ? noiseTable().size() : 0),
        VLVK_OK);
    hasTable = wanted;
  }
  void expectModel(int from, int to, int width, int height) {
    const Picture source(randomShape(from, random.between(0, 3), width, height, random));
    const Picture target(randomShape(to, random.between(0, 3), width, height, random));
    source.fill(random);
    ASSERT_EQ(check(handle.get(), settings, hasTable, source, target), "");
    if (from != to) return;
    ASSERT_EQ(check(handle.get(), settings, hasTable, source, source), "");
  }

  Random random;
  VlvkSettings settings = settingsOf(50, 1000, 20, 1);
  Handle handle = create(settings);
  bool hasTable = false;
};

class MakeupOfTarget : public testing_support::TargetTest {};

TEST_P(MakeupOfTarget, MatchesTheModelFromEveryFormatToEvery) {
  Engine engine(301);
  for (int round = 0; round < 6 && !HasFailure(); ++round) {
    for (const int from : kFormats) {
      for (const int to : kFormats) {
        engine.change();
        engine.expectModel(from, to, randomSide(engine.random), randomSide(engine.random));
      }
    }
  }
}

TEST_P(MakeupOfTarget, MatchesTheModelAtTinySizes) {
  Engine engine(302);
  for (int i = 0; i < 18 * 4 * 3 && !HasFailure(); ++i) {
    const int from = kFormats[engine.random.between(0, 8)];
    const int to = engine.random.pick({from, kFormats[engine.random.between(0, 8)]});
    if (i % 4 == 0) engine.change();
    engine.expectModel(from, to, 1 + i / 4 % 18, 1 + i % 4);
  }
}

VLVK_TEST_ALL_TARGETS(MakeupOfTarget);

/// The luma and chroma of a picture without padding, chroma as NV12 has it.
Bytes samplesOf(const Picture& picture) {
  Bytes bytes = picture.planes[0].bytes();
  const Bytes first = picture.planes[1].bytes();
  const Bytes second = picture.planes[2].bytes();
  for (std::size_t i = 0; i < first.size(); ++i) {
    if (picture.shape.format == VLVK_I420) bytes.insert(bytes.end(), {first[i], second[i]});
    if (picture.shape.format == VLVK_NV12) bytes.push_back(first[i]);
    if (picture.shape.format == VLVK_NV21) bytes.push_back(first[i ^ 1]);
  }
  return bytes;
}

TEST(Makeup, HasTheBytesOfTheClass) {
  Random random(303);
  for (int i = 0; i < 60; ++i) {
    const bool rgbOrder = i % 2 == 1;
    const bool hasTable = i / 2 % 2 == 1;
    const int width = 16 * random.between(1, 12);
    const int height = 2 * random.between(1, 60);
    const VlvkSettings settings = settingsOf(random.between(1, 100), random.pick({0, 500, 1000, 1000}),
                                             random.pick({0, 8, 20, 60, 70}), random.between(1, 4));
    frame_rig::Rig rig(random.between(1, 4));
    rig.put({settings.whitening, settings.softening, settings.radius, hasTable ? 100 : 0});
    const Handle handle = create(settings);
    if (hasTable) vlvkMakeupSetTable(handle.get(), noiseTable().data(), noiseTable().size());

    const Picture source({rgbOrder ? VLVK_NV21 : VLVK_NV12, 0, width, height});
    source.fill(random);
    const Picture planar({VLVK_I420, 0, width, height});
    for (std::size_t k = 0; k < source.planes[1].memory.size(); ++k)
      planar.planes[(k % 2 == 0) == rgbOrder ? 2 : 1].row(0)[k / 2] = source.planes[1].row(0)[k];
    planar.planes[0].put(source.planes[0].bytes());

    const frame_rig::Frame toPixels({frame_rig::kVideoToPixels, rgbOrder, width, height, {width, width, 4 * width}});
    const frame_rig::Frame inPlace({frame_rig::kVideoInPlace, rgbOrder, width, height, {width, width, 0}});
    for (const auto* frame : {&toPixels, &inPlace}) {
      frame->put({source.planes[0].bytes(), source.planes[1].bytes(), {}});
      ASSERT_EQ(frame->run(rig.filter), 0);
    }
    const Picture pixels({rgbOrder ? VLVK_RGBA : VLVK_BGRA, 0, width, height});
    VlvkFrame from = source.frame();
    const VlvkFrame to = pixels.frame();
    ASSERT_EQ(vlvkMakeupProcess(handle.get(), &from, &to, nullptr), VLVK_OK);
    ASSERT_EQ(pixels.planes[0].difference(toPixels.planes[2].bytes()), "") << i;
    ASSERT_EQ(vlvkMakeupProcess(handle.get(), &from, &from, nullptr), VLVK_OK);
    ASSERT_EQ(source.difference({inPlace.planes[0].bytes(), inPlace.planes[1].bytes(), {}}), "") << i;
    from = planar.frame();
    ASSERT_EQ(vlvkMakeupProcess(handle.get(), &from, &from, nullptr), VLVK_OK);
    ASSERT_EQ(samplesOf(planar), samplesOf(source)) << i;
  }
}

TEST(Makeup, WithNothingToChangeTheSourceComesOut) {
  Random random(304);
  for (const auto& settings : {settingsOf(0, 0, 20), settingsOf(0, 1000, 0), settingsOf(0, 1, 20)}) {
    const Handle handle = create(settings);
    for (const int format : kFormats) {
      for (int colors = 0; colors < (makeup_model::isPixels(format) ? 1 : 4); ++colors) {
        const Picture source(randomShape(format, colors, random.between(1, 70), random.between(1, 40), random));
        source.fill(random);
        const bool hasX = format == VLVK_RGBX || format == VLVK_BGRX;
        for (int x = 3; x < source.planes[0].rowBytes && hasX; x += 4) {
          for (int y = 0; y < source.planes[0].rows; ++y)
            source.planes[0].row(y)[x] = 255;
        }
        const Picture target(source.shape);
        const Picture::Memory before = source.content();
        const VlvkFrame from = source.frame();
        for (const Picture* to : {&target, &source}) {
          const VlvkFrame frame = to->frame();
          ASSERT_EQ(vlvkMakeupProcess(handle.get(), &from, &frame, nullptr), VLVK_OK);
          EXPECT_EQ(to->difference(before), "") << format;
        }
      }
    }
  }
}

TEST(Makeup, WithoutAChangeOfColoursChromaStays) {
  Random random(305);
  const Handle handle = create(settingsOf(0, 1000, 20));
  for (const int format : {VLVK_NV12, VLVK_NV21, VLVK_I420}) {
    const Picture picture({format, random.between(0, 3), 61, 33});
    picture.fill(random);
    picture.planes[0].fill(Content::kNoise, random);
    const Picture::Memory before = picture.content();
    const VlvkFrame frame = picture.frame();
    ASSERT_EQ(vlvkMakeupProcess(handle.get(), &frame, &frame, nullptr), VLVK_OK);
    EXPECT_NE(picture.planes[0].bytes(), before[0]) << "nothing to see";
    EXPECT_EQ(picture.planes[1].difference(before[1]) + picture.planes[2].difference(before[2]), "");
  }
}

}  // namespace
}  // namespace makeup_rig
