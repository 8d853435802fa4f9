/// Work orders that no frame stands behind: the variant decides which kernels run and where results go. Tone
/// curves and colour table, and the adjustment of a band through all of its mappings.
#include "filter/band_worker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <utility>
#include <vector>

#include "filter/band_rows.h"
#include "tests/frames/frame_rig.h"

namespace frame_rig {
namespace {

using Class = CFastEdgePreserved;

class BandWorker : public testing::TestWithParam<int> {};

TEST_P(BandWorker, WorkOrdersRunOnTheirOwn) {
  constexpr Class::Stage kStages[] = {&Class::FastEdgePreservedTop, &Class::FastEdgePreservedMid,
                                      &Class::FastEdgePreservedBottom};
  constexpr int kReach = 16;
  const int width = GetParam();
  Random random(32);
  for (const bool rgbOrder : {true, false}) {
    for (const model::Settings& settings : {model::Settings{.radius = kReach},
                                            {.whiten = 80, .soften = 300, .radius = kReach, .colorAdjust = 0},
                                            {.soften = 0, .radius = kReach}}) {
      Rig rig(3);
      rig.put(settings);
      const Frame frame(kInternalToPixels, width, 114, rgbOrder, random);
      const auto& [luma, chroma, out] = frame.planes;
      const vlvk::FramePlan plan{width, 114, luma.stride, kReach, 3, true};
      rig.filter.rgbOrder = rgbOrder;
      rig.filter.calcCharacteristic(width, plan.height, luma.stride, kReach - 1, true);
      const Frame::Memory original = frame.content();
      Frame::Memory result = frame.predict(rig.expected);
      rig.expected.processVideo(&result[0][luma.offset(0)], luma.stride, &result[1][chroma.offset(0)], chroma.stride,
                                width, plan.height, nullptr, 0, rgbOrder);
      for (const auto& [variant, inPlace] : {std::pair{0, true}, {0, false}, {1, false}, {2, true}}) {
        for (int band = 0; band < plan.bands; ++band) {
          const auto begin = static_cast<int>(plan.bandBegin(band));
          const auto end = static_cast<int>(plan.bandEnd(band));
          const bool backToYuv = variant == 0 && inPlace;
          frame.put(original);
          Bytes saved(static_cast<std::size_t>(2 * kReach * luma.stride));
          vlvk::saveNeighbourRows(plan, luma.row(0), band, saved.data());
          for (int y = 0; backToYuv && y < plan.height; ++y) {
            if (y < begin || y >= end) std::fill_n(luma.row(y), width, Byte{0});  // as other bands may have left them
          }
          Frame::Memory expected = frame.content();
          for (std::size_t i = backToYuv ? 0 : 2; i < 3; ++i) {
            const int perRow = i == 1 ? 2 : 1;
            for (int y = begin / perRow; y < end / perRow; ++y) {
              const std::size_t at = frame.planes[i].offset(y);
              std::copy_n(&result[i][at], frame.planes[i].rowBytes, &expected[i][at]);
            }
          }
          const Plane mean(width, end - begin, luma.stride);
          std::vector<std::uint16_t> sums(64, 0xABCD);  // an earlier band has been here
          std::vector<std::uint32_t> squares(64, 0x12345678);
          Class::BandTask task{&rig.filter, kStages[band], band, {}};
          Class::MakeupParam& p = task.param;
          p.variant = variant;
          p.rgbOrder = rgbOrder;
          p.inPlace = inPlace;
          p.yPlane = luma.row(begin);
          p.yStride = luma.stride;
          p.uvPlane = chroma.row(begin / 2);
          p.uvStride = chroma.stride;
          p.outPlane = out.row(begin);
          p.outStride = out.stride;
          p.width = width;
          p.rows = end - begin;
          p.radius = kReach - 1;
          p.whitenIntensity = settings.whiten;
          p.softenLevel = 600 * settings.soften / 1000;
          p.colorAdjustIntensity = settings.colorAdjust;
          p.skinCentre = rig.filter.skinCentre + (rgbOrder ? 1 : 0);
          p.meanPlane = mean.row(0);
          p.scratchA = reinterpret_cast<unsigned char*>(sums.data());
          p.scratchB = reinterpret_cast<unsigned char*>(squares.data());
          p.edgeRows = saved.data();
          EXPECT_EQ(Class::thread_softskin_call(&task), nullptr);
          EXPECT_EQ(frame.difference(expected), "") << "variant " << variant << ", inPlace " << inPlace << ", soften "
                                                    << settings.soften << ", band " << band;
        }
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Widths, BandWorker, testing::Values(48, 29, 6));

TEST(ColorAdjust, EveryMappingChangesTheBandAsTheModelDoes) {
  constexpr std::pair<int, int> kMappings[] = {{50, 100}, {0, 1},        {-5, 7},      {70, 0},     {1, -3},
                                               {0, 0},    {-1, -1},      {99, 1},      {100, 0},    {300, 1},
                                               {-20, 0},  {40000000, 1}, {INT_MAX, 0}, {INT_MIN, 1}};
  Random random(21);
  Rig rig(1);
  Filter& f = rig.filter;
  f.calcCharacteristic(16, 16, 16, -1, false);
  for (const bool rgbOrder : {true, false}) {
    for (const auto& [whiten, colorAdjust] : kMappings) {
      f.whitenIntensity = whiten;
      f.rgbOrder = rgbOrder;
      f.buildLookup(noisePicture().payload.data());
      const model::Tables tables = model::buildTables(noisePicture().payload, whiten, rgbOrder);
      const unsigned char* curves[] = {f.toneCurve0, f.toneCurve1, f.toneCurve2};
      for (std::size_t i = 0; i < 3; ++i)
        EXPECT_TRUE(std::equal(tables.curves[i].begin(), tables.curves[i].end(), curves[i])) << whiten << ", " << i;
      EXPECT_TRUE(std::equal(tables.colors.begin(), tables.colors.end(), f.colorTable)) << whiten << rgbOrder;
      EXPECT_TRUE(whiten != 50 || f.toneCurve0[128] == 145);
      for (const auto& [variant, inPlace] : {std::pair{0, false}, {0, true}, {1, false}, {1, true}, {2, true}}) {
        for (const auto& [width, rows] : {std::pair{37, 5}, {16, 2}, {1, 1}, {0, 3}, {-4, 3}, {5, 0}, {5, -2}}) {
          const bool apart = variant == 1 && inPlace;
          const Plane band(37 * 4, 5, 37 * 4 + 9);
          const Plane target(37 * 4, 5, 37 * 4 + 22);
          band.fill(Content::kNoise, random);
          Bytes expectedBand = band.bytes();
          Bytes expectedTarget = target.bytes();
          model::adjustBand(tables, {.whiten = whiten, .colorAdjust = colorAdjust}, rgbOrder, width, rows,
                            expectedBand.data(), band.stride, apart ? expectedTarget.data() : nullptr, target.stride);
          CFastEdgePreserved::MakeupParam p{};
          p.variant = variant;
          p.inPlace = inPlace;
          p.rgbOrder = rgbOrder;
          p.outPlane = band.row(0);
          p.outStride = band.stride;
          p.dstPlane = apart ? target.row(0) : nullptr;
          p.dstStride = target.stride;
          p.width = width;
          p.rows = rows;
          p.whitenIntensity = whiten;
          p.colorAdjustIntensity = colorAdjust;
          for (const bool hasTable : {true, false}) {  // without one nothing changes any more
            unsigned char* table = hasTable ? f.colorTable : std::exchange(f.colorTable, nullptr);
            rgbOrder ? f.colorAdjustRGBA(&p) : f.colorAdjustBGRA(&p);
            f.colorTable = table;
            EXPECT_EQ(band.difference(expectedBand) + target.difference(expectedTarget), "")
                << "whiten " << whiten << ", colorAdjust " << colorAdjust << ", variant " << variant << ", inPlace "
                << inPlace << ", " << width << " x " << rows << (rgbOrder ? " RGBA" : " BGRA") << hasTable;
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace frame_rig
