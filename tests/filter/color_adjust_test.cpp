/// The adjustment of a band through all of its mappings.
#include <gtest/gtest.h>

#include <utility>

#include "tests/frames/frame_rig.h"

namespace frame_rig {
namespace {

TEST(ColorAdjust, EveryMappingChangesTheBandAsTheModelDoes) {
  Random random(21);
  Rig rig(1);
  Filter& f = rig.filter;
  f.calcCharacteristic(16, 16, 16, -1, false);
  for (const bool rgbOrder : {true, false}) {
    for (const auto& [whiten, colorAdjust] :
         {std::pair{50, 100}, {0, 1}, {-5, 7}, {70, 0}, {1, -3}, {0, 0}, {-1, -1}}) {
      f.whitenIntensity = whiten;
      f.rgbOrder = rgbOrder;
      f.buildLookup(noisePicture().payload.data());
      const model::Tables tables = model::buildTables(noisePicture().payload, whiten, rgbOrder);
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
