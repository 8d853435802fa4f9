/// The filter object: what native callers rely on in memory, settings, and the smoothing stages and a band's work order
/// on their own.
#include <gtest/gtest.h>
#include <sys/timeb.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <vector>

#include "tests/frames/frame_support.h"

namespace frame_tests {
namespace {

using model::Bytes;
using MakeupParam = CFastEdgePreserved::MakeupParam;
using BandTask = CFastEdgePreserved::BandTask;

/// Expects each member right behind the one before it, as its alignment allows.
template <typename Object, typename... Members>
void expectInOrder(const Object& object, std::size_t first, const Members&... members) {
  std::size_t end = first;
  int index = 0;
  const auto expectNext = [&](const void* address, std::size_t size, std::size_t alignment) {
    const std::size_t expected = (end + alignment - 1) / alignment * alignment;
    EXPECT_EQ(static_cast<std::size_t>(static_cast<const char*>(address) - reinterpret_cast<const char*>(&object)),
              expected)
        << "member " << index;
    end = expected + size;
    ++index;
  };
  (expectNext(&members, sizeof(Members), alignof(Members)), ...);
}

TEST(Filter, MembersStandInTheOrderThatNativeCallersKnow) {
  const CFastEdgePreserved f(1, nullptr);
  expectInOrder(f, sizeof(void*), f.whitenIntensity, f.radius, f.softenSkinIntensity, f.colorAdjustIntensity,
                f.toneCurve0, f.toneCurve1, f.toneCurve2, f.threadCount, f.colorTable, f.lookupDirty, f.rgbOrder,
                f.skinCentre, f.skinTable, f.mutex, f.meanBuffer, f.scratchA, f.scratchB, f.lineSums, f.nv12Scratch,
                f.rgbaBuffer, f.hasEdgeRows, f.edgeRows, f.cachedWidth, f.cachedHeight, f.cachedStride, f.cachedRadius,
                f.cachedThreads, f.loader);
  EXPECT_LT(sizeof(CFastEdgePreserved), 4096u);

  const BandTask t{};
  expectInOrder(t, 0, t.owner, t.stage, t.bandIndex, t.param);
  const MakeupParam p{};
  expectInOrder(p, 0, p.variant, p.rgbOrder, p.inPlace, p.yPlane, p.yStride, p.uvPlane, p.uvStride, p.dstPlane,
                p.dstStride, p.outPlane, p.outStride, p.width, p.rows, p.radius, p.whitenIntensity, p.softenLevel,
                p.colorAdjustIntensity, p.skinCentre, p.meanPlane, p.scratchA, p.scratchB, p.lineSums, p.edgeRows);
}

TEST(Filter, StartsWithDefaultsAndNoBuffers) {
  Loader loader(&noisePicture());
  CFastEdgePreserved f(7, &loader);
  EXPECT_EQ((std::array{f.whitenIntensity, f.radius, f.softenSkinIntensity, f.colorAdjustIntensity, f.threadCount}),
            (std::array{50, 20, 1000, 100, 7}));
  EXPECT_EQ((std::array{f.cachedWidth, f.cachedHeight, f.cachedStride, f.cachedRadius, f.cachedThreads, f.hasEdgeRows}),
            (std::array<int, 6>{}));
  EXPECT_EQ((std::vector{f.toneCurve0, f.toneCurve1, f.toneCurve2, f.colorTable, f.meanBuffer, f.scratchA, f.scratchB,
                         f.lineSums, f.nv12Scratch, f.rgbaBuffer, f.edgeRows}),
            std::vector<unsigned char*>(11));
  EXPECT_TRUE(f.lookupDirty);
  EXPECT_FALSE(f.rgbOrder);
  EXPECT_EQ(f.loader, &loader);
  EXPECT_EQ(loader.calls, 0);
  EXPECT_EQ((std::vector<int>(f.skinCentre, f.skinCentre + 3)), (std::vector{110, 155, 110}));
  const auto curve = naive::skinCurve(1.5f, 64.0f, 48);
  for (int i = 0; i < 48; ++i) {
    EXPECT_EQ(f.skinTable[naive::interleavedPosition48(i)], curve[static_cast<std::size_t>(i)]) << i;
  }
}

TEST(Filter, SettersMarkTheTablesOnlyWhenTheyNeedIt) {
  CFastEdgePreserved f(1, nullptr);
  struct Setter {
    void (CFastEdgePreserved::*put)(int);
    int CFastEdgePreserved::*field;
    bool marks;
  };
  for (const Setter& s :
       {Setter{&CFastEdgePreserved::put_whitenIntensity, &CFastEdgePreserved::whitenIntensity, true},
        {&CFastEdgePreserved::put_colorAdjustIntensity, &CFastEdgePreserved::colorAdjustIntensity, true},
        {&CFastEdgePreserved::put_softenSkinIntensity, &CFastEdgePreserved::softenSkinIntensity, false}}) {
    for (const int value : {-7, 2000000000, 5}) {
      f.lookupDirty = false;
      (f.*s.put)(value);
      EXPECT_EQ(f.*s.field, value);
      EXPECT_EQ(f.lookupDirty, s.marks);
      f.lookupDirty = false;
      (f.*s.put)(value);
      EXPECT_FALSE(f.lookupDirty) << "set to the value it has";
      f.lookupDirty = true;
      (f.*s.put)(value);
      EXPECT_TRUE(f.lookupDirty) << "set to the value it has";
    }
  }
}

TEST(Filter, SetOutputSizeChangesNothing) {
  CFastEdgePreserved f(1, nullptr);
  std::array<char, sizeof f> before;
  std::memcpy(before.data(), static_cast<const void*>(&f), sizeof f);
  EXPECT_EQ(f.setOutputSize(640, 480), -1);
  EXPECT_EQ(std::memcmp(before.data(), static_cast<const void*>(&f), sizeof f), 0);
}

TEST(Filter, DiffTimeCountsMillisecondsIn32Bits) {
  CFastEdgePreserved f(1, nullptr);
  timespec now;
  ASSERT_EQ(clock_gettime(CLOCK_REALTIME, &now), 0);
  struct Case {
    long long secondsAgo;
    int expected;
  };
  constexpr int kMinute = 60000;
  for (const Case& c : {Case{2, 2000}, {-3600, -3600000}, {3000000, -1294967296}}) {
    timeb start{};
    start.time = static_cast<time_t>(now.tv_sec - c.secondsAgo);
    start.millitm = static_cast<unsigned short>(now.tv_nsec / 1000000);
    EXPECT_GE(f.diffTime(&start), c.expected);
    EXPECT_LT(f.diffTime(&start), c.expected + kMinute);
  }
}

TEST(Filter, DestructorLeavesWhatItDoesNotOwn) {
  unsigned char* kept[2];
  for (auto& buffer : kept)
    buffer = static_cast<unsigned char*>(std::malloc(8));
  {
    CFastEdgePreserved f(1, nullptr);
    for (unsigned char** owned : {&f.colorTable, &f.toneCurve0, &f.toneCurve1, &f.toneCurve2, &f.meanBuffer,
                                  &f.scratchA, &f.scratchB, &f.lineSums, &f.rgbaBuffer}) {
      *owned = static_cast<unsigned char*>(std::malloc(8));
    }
    f.nv12Scratch = kept[0];
    f.edgeRows = kept[1];
  }
  for (auto* buffer : kept)
    std::free(buffer);  // twice, were one of them released already
}

/// A plane cut into three bands by hand, rows counted in reaches R of the box.
struct Cut {
  int firstRow, rows;
  CFastEdgePreserved::Stage stage;
  bool hasAbove, hasBelow;
};

class Bands : public testing::TestWithParam<int> {
 protected:
  static constexpr int kReach = 16;
  static constexpr int kHeight = 40 + 32 + 36;
  static constexpr Cut kCuts[] = {{0, 40, &CFastEdgePreserved::FastEdgePreservedTop, false, true},
                                  {40, 32, &CFastEdgePreserved::FastEdgePreservedMid, true, true},
                                  {72, 36, &CFastEdgePreserved::FastEdgePreservedBottom, true, false}};

  /// Saved neighbours as a band in place wants them: R rows above, then R rows from its own last one.
  static Bytes savedRows(const Plane& luma, const Cut& cut) {
    Bytes saved;
    const auto save = [&](int first) {
      for (int y = first; y < first + kReach; ++y)
        saved.insert(saved.end(), luma.row(y), luma.row(y) + luma.stride());
    };
    if (cut.hasAbove) save(cut.firstRow - kReach);
    if (cut.hasBelow) save(cut.firstRow + cut.rows - 1);
    return saved;
  }

  /// The band's own memory; column sums first hold what an earlier band may have left.
  struct Memory {
    explicit Memory(int width)
        : sums(static_cast<std::size_t>(width / 8 + 1) * 8, 0xABCD),
          squares(sums.size(), 0x12345678),
          lines(static_cast<std::size_t>(kReach * 2 * width * 2)) {}
    std::vector<std::uint16_t> sums;
    std::vector<std::uint32_t> squares;
    Bytes lines;
  };

  static MakeupParam paramFor(const Plane& luma, const Cut& cut, int level, Memory& memory, Bytes& saved) {
    MakeupParam p{};
    p.yPlane = luma.row(cut.firstRow);
    p.yStride = luma.stride();
    p.width = luma.width();
    p.rows = cut.rows;
    p.radius = kReach - 1;
    p.softenLevel = level;
    p.scratchA = reinterpret_cast<unsigned char*>(memory.sums.data());
    p.scratchB = reinterpret_cast<unsigned char*>(memory.squares.data());
    p.lineSums = memory.lines.data();
    p.edgeRows = saved.data();
    return p;
  }
};

// The stages of three bands together smooth like one plane: with saved neighbours from a band that stands alone in
// memory, without them from the plane itself.
TEST_P(Bands, StagesSmoothLikeOnePlane) {
  const int width = GetParam();
  Random random(31);
  CFastEdgePreserved f(3, nullptr);
  for (const int level : {600, 37}) {
    const Plane luma(width, kHeight, width + 11, Guard::kBehind, Content::kNoise, random);
    const Bytes smooth = naive::smoothPlane(luma.data(), width, kHeight, luma.stride(), kReach - 1, level);
    for (const auto& [variant, inPlace] : {std::pair{0, true}, {0, false}, {1, true}, {2, true}}) {
      for (const Cut& cut : kCuts) {
        const bool alone = variant == 0 && inPlace;
        const Plane band(width, cut.rows, luma.stride());
        std::copy_n(luma.row(cut.firstRow), band.bytes().size(), band.data());
        const Plane mean(width, cut.rows, luma.stride());
        Bytes expected = mean.bytes();
        for (int y = 0; y < cut.rows; ++y) {
          std::copy_n(&smooth[static_cast<std::size_t>((cut.firstRow + y) * width)], width & ~7,
                      &expected[static_cast<std::size_t>(y * mean.stride())]);
        }
        Memory memory(width);
        Bytes saved = alone ? savedRows(luma, cut) : Bytes{};
        MakeupParam p = paramFor(luma, cut, level, memory, saved);
        if (alone) p.yPlane = band.data();
        p.variant = variant;
        p.inPlace = inPlace;
        (f.*cut.stage)(&p, mean.data());
        EXPECT_TRUE(sameBytes(mean, expected)) << "width " << width << ", level " << level << ", variant " << variant
                                               << ", inPlace " << inPlace << ", band at row " << cut.firstRow;
      }
    }
  }
}

// A work order that no frame stands behind: the variant decides where results go.
TEST_P(Bands, WorkOrdersRunOnTheirOwn) {
  const int width = GetParam();
  Random random(32);
  for (const bool rgbOrder : {true, false}) {
    for (const model::Settings& settings : {model::Settings{.radius = kReach},
                                            {.whiten = 80, .soften = 300, .radius = kReach, .colorAdjust = 0},
                                            {.whiten = 0, .soften = 0, .radius = kReach, .colorAdjust = 0}}) {
      Rig rig(3);
      rig.put(settings);
      rig.filter.rgbOrder = rgbOrder;
      rig.filter.calcCharacteristic(width, kHeight, width, kReach - 1, true);
      const model::Tables tables = model::buildTables(noisePicture().payload, settings.whiten, rgbOrder);
      const auto mapping = model::mappingFor(settings.whiten, settings.colorAdjust);
      for (const auto& [variant, inPlace] : {std::pair{0, true}, {0, false}, {1, true}, {1, false}, {2, true}}) {
        for (const Cut& cut : kCuts) {
          SCOPED_TRACE(testing::Message()
                       << "width " << width << ", variant " << variant << ", inPlace " << inPlace << ", soften "
                       << settings.soften << ", row " << cut.firstRow << (rgbOrder ? " NV21" : " NV12"));
          const Plane luma(width, kHeight, width, Guard::kBehind, Content::kNoise, random);
          const Plane chroma(width & ~1, kHeight / 2, width + 3, Guard::kBehind, Content::kNoise, random);
          for (int y = 0; y < chroma.height(); ++y) {
            for (int x = 0; x < chroma.width(); ++x) {
              const int centre = (x % 2 == 0) == rgbOrder ? 155 : 110;
              chroma.row(y)[x] = static_cast<unsigned char>(centre + random.between(-40, 40));
            }
          }
          const Plane mean(width, cut.rows, width);
          const Plane out(width * 4, cut.rows, width * 4 + 6, Guard::kBehind, Content::kNoise, random);
          const Plane target(width * 4, cut.rows, width * 4 + 1, Guard::kBehind, Content::kNoise, random);

          const Bytes blended =
              model::beautifiedLuma(luma.bytes(), chroma.data(), chroma.stride(), width, kHeight, rgbOrder, settings);
          const auto* blendedBand = &blended[static_cast<std::size_t>(cut.firstRow * width)];
          Bytes expectedLuma = luma.bytes();
          Bytes expectedChroma = chroma.bytes();
          Bytes expectedOut = out.bytes();
          Bytes expectedTarget = target.bytes();
          const auto chromaOrder = rgbOrder ? naive::ChromaOrder::kVU : naive::ChromaOrder::kUV;
          const auto pixelOrder = rgbOrder ? naive::PixelOrder::kRGBA : naive::PixelOrder::kBGRA;
          auto* pairs = &expectedChroma[static_cast<std::size_t>(cut.firstRow / 2 * chroma.stride())];
          naive::yuvToPixels(blendedBand, width, pairs, chroma.stride(), expectedOut.data(), out.stride(), width,
                             cut.rows, chromaOrder, pixelOrder);
          const bool separate = variant == 1 && inPlace;
          for (int y = 0; y < cut.rows; ++y) {
            for (int x = 0; x < width; ++x) {
              auto* pixel = &expectedOut[static_cast<std::size_t>(y * out.stride() + 4 * x)];
              auto* to = &expectedTarget[static_cast<std::size_t>(y * target.stride() + 4 * x)];
              const Bytes before(pixel, pixel + 4);
              model::adjustPixel(tables, mapping, rgbOrder, pixel);
              if (!separate) continue;
              const bool greenOnly = mapping == model::Mapping::kGreenOnly;
              for (int i = 0; i < 4; i += greenOnly ? 2 : 1)
                to[i] = pixel[i];
              if (!greenOnly) std::copy(before.begin(), before.end(), pixel);
            }
          }
          const bool backToYuv = variant == 0 && inPlace;
          if (backToYuv) {
            naive::pixelsToYuv(expectedOut.data(), out.stride(),
                               &expectedLuma[static_cast<std::size_t>(cut.firstRow * width)], width, pairs,
                               chroma.stride(), width, cut.rows, pixelOrder, chromaOrder);
          }

          Memory memory(width);
          Bytes saved = savedRows(luma, cut);
          BandTask task{};
          task.owner = &rig.filter;
          task.stage = cut.stage;
          task.param = paramFor(luma, cut, model::softenLevelFor(settings.soften), memory, saved);
          MakeupParam& p = task.param;
          p.variant = variant;
          p.inPlace = inPlace;
          p.rgbOrder = rgbOrder;
          p.uvPlane = chroma.row(cut.firstRow / 2);
          p.uvStride = chroma.stride();
          p.outPlane = out.data();
          p.outStride = out.stride();
          p.dstPlane = target.data();
          p.dstStride = target.stride();
          p.whitenIntensity = settings.whiten;
          p.colorAdjustIntensity = settings.colorAdjust;
          p.skinCentre = rig.filter.skinCentre + (rgbOrder ? 1 : 0);
          p.meanPlane = mean.data();
          EXPECT_EQ(CFastEdgePreserved::thread_softskin_call(&task), nullptr);
          EXPECT_TRUE(sameBytes(luma, expectedLuma)) << "luma";
          EXPECT_TRUE(sameBytes(chroma, expectedChroma)) << "chroma";
          EXPECT_TRUE(sameBytes(out, expectedOut)) << "out";
          EXPECT_TRUE(sameBytes(target, expectedTarget)) << "separate destination";
          if (!backToYuv && settings.soften > 0) {
            EXPECT_TRUE(sameBytes(mean, {blendedBand, blendedBand + width * cut.rows})) << "blended luma";
          }
        }
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Widths, Bands, testing::Values(48, 29, 6));

}  // namespace
}  // namespace frame_tests
