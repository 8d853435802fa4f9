/// Tone curves and colour table as buildLookup makes them, and the adjustment of a band through all of its mappings.
#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "tests/frames/frame_support.h"

namespace frame_tests {
namespace {

using model::Byte;
using model::Mapping;

/// A filter whose tables exist, built from the noise picture.
class ColorAdjust : public testing::Test {
 protected:
  void build(int whiten, bool rgbOrder) {
    rig_.filter.whitenIntensity = whiten;
    rig_.filter.rgbOrder = rgbOrder;
    if (rig_.filter.colorTable == nullptr) rig_.filter.calcCharacteristic(16, 16, 16, -1, false);
    rig_.filter.buildLookup(noisePicture().payload.data());
  }

  Rig rig_{1};
  CFastEdgePreserved& filter_ = rig_.filter;
};

TEST_F(ColorAdjust, TablesFollowTheWhitening) {
  for (const bool rgbOrder : {true, false}) {
    for (const int whiten : {0, 1, 50, 99, 100, 300, -20, 40000000, INT_MAX, INT_MIN}) {
      SCOPED_TRACE(testing::Message() << "whiten " << whiten << (rgbOrder ? " RGBA" : " BGRA"));
      build(whiten, rgbOrder);
      const model::Tables expected = model::buildTables(noisePicture().payload, whiten, rgbOrder);
      const unsigned char* curves[] = {filter_.toneCurve0, filter_.toneCurve1, filter_.toneCurve2};
      for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_TRUE(testing_support::sameBytes(curves[i], expected.curves[i].data(), 256, 256)) << "curve " << i;
      }
      EXPECT_TRUE(testing_support::sameBytes(filter_.colorTable, expected.colors.data(), model::kPictureSize, 256));
    }
  }
  build(50, true);
  EXPECT_EQ(filter_.toneCurve0[128], 145);
}

TEST_F(ColorAdjust, TilesOfThePictureBecomeBlocks) {
  build(0, true);
  model::Bytes picture(model::kPictureSize, 0);
  const auto at = [&](int column, int row) { return &picture[static_cast<std::size_t>(row * 512 + column) * 4]; };
  at(64, 0)[2] = 11;
  at(0, 64)[2] = 12;
  at(3, 2)[0] = 13;
  at(511, 511)[0] = 14;
  filter_.buildLookup(picture.data());
  EXPECT_EQ(filter_.colorTable[16384], 11);
  EXPECT_EQ(filter_.colorTable[8 * 16384], 12);
  EXPECT_EQ(filter_.colorTable[2 * 256 + 3 * 4 + 2], 13);
  EXPECT_EQ(filter_.colorTable[model::kPictureSize - 2], 14);
  EXPECT_EQ(filter_.colorTable[model::kPictureSize - 1], 255);
}

struct Settings {
  int whiten, colorAdjust;
};
constexpr Settings kMappings[] = {{50, 100}, {0, 1}, {-5, 7}, {70, 0}, {1, -3}, {0, 0}, {-1, -1}};

TEST_F(ColorAdjust, EveryMappingChangesTheBandAsTheModelDoes) {
  Random random(21);
  for (const bool rgbOrder : {true, false}) {
    for (const Settings& settings : kMappings) {
      build(settings.whiten, rgbOrder);
      const model::Tables tables = model::buildTables(noisePicture().payload, settings.whiten, rgbOrder);
      const Mapping mapping = model::mappingFor(settings.whiten, settings.colorAdjust);
      for (const auto& [variant, inPlace] : {std::pair{0, false}, {0, true}, {1, false}, {1, true}, {2, true}}) {
        for (const auto& [width, rows] : {std::pair{37, 5}, {16, 2}, {1, 1}, {0, 3}, {-4, 3}, {5, 0}, {5, -2}}) {
          SCOPED_TRACE(testing::Message() << "whiten " << settings.whiten << ", colorAdjust " << settings.colorAdjust
                                          << ", variant " << variant << ", inPlace " << inPlace << ", " << width
                                          << " x " << rows << (rgbOrder ? " RGBA" : " BGRA"));
          const bool separate = variant == 1 && inPlace;
          const Plane band(37 * 4, 5, 37 * 4 + 9, Guard::kBehind, Content::kNoise, random);
          const Plane target(37 * 4, 5, 37 * 4 + 22, Guard::kBehind, Content::kNoise, random);
          auto expectedBand = band.bytes();
          auto expectedTarget = target.bytes();
          for (int y = 0; y < rows; ++y) {
            for (int x = 0; x < width; ++x) {
              Byte* pixel = &expectedBand[static_cast<std::size_t>(y * band.stride() + 4 * x)];
              Byte* to = &expectedTarget[static_cast<std::size_t>(y * target.stride() + 4 * x)];
              const std::vector<Byte> before(pixel, pixel + 4);
              model::adjustPixel(tables, mapping, rgbOrder, pixel);
              if (!separate) continue;
              to[0] = pixel[0];
              to[2] = pixel[2];
              if (mapping == Mapping::kGreenOnly) continue;  // green changes in the source, bytes 1 and 3 stay here
              to[1] = pixel[1];
              to[3] = pixel[3];
              std::copy(before.begin(), before.end(), pixel);
            }
          }
          CFastEdgePreserved::MakeupParam param{};
          param.variant = variant;
          param.inPlace = inPlace;
          param.rgbOrder = rgbOrder;
          param.outPlane = band.data();
          param.outStride = band.stride();
          param.dstPlane = separate ? target.data() : nullptr;
          param.dstStride = target.stride();
          param.width = width;
          param.rows = rows;
          param.whitenIntensity = settings.whiten;
          param.colorAdjustIntensity = settings.colorAdjust;
          const auto adjust = [&] { rgbOrder ? filter_.colorAdjustRGBA(&param) : filter_.colorAdjustBGRA(&param); };
          adjust();
          EXPECT_TRUE(sameBytes(band, expectedBand));
          EXPECT_TRUE(sameBytes(target, expectedTarget));

          unsigned char* table = std::exchange(filter_.colorTable, nullptr);
          adjust();
          filter_.colorTable = table;
          EXPECT_TRUE(sameBytes(band, expectedBand)) << "without a table";
          EXPECT_TRUE(sameBytes(target, expectedTarget)) << "without a table";
        }
      }
    }
  }
}

}  // namespace
}  // namespace frame_tests
