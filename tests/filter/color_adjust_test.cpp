/// Tone curves and colour table, and the adjustment of a band through all of its mappings.
#include <gtest/gtest.h>

#include <climits>
#include <utility>

#include "tests/frames/frame_rig.h"

namespace frame_rig {
namespace {

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
