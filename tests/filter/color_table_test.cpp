/// Tone curves and colour table as buildLookup makes them.
#include <gtest/gtest.h>

#include <climits>

#include "tests/frames/frame_rig.h"

namespace frame_rig {
namespace {

TEST(ColorTable, FollowsTheWhitening) {
  Rig rig(1);
  Filter& f = rig.filter;
  f.calcCharacteristic(16, 16, 16, -1, false);
  for (const bool rgbOrder : {true, false}) {
    for (const int whiten : {0, 1, 99, 100, 300, -20, 40000000, INT_MAX, INT_MIN, 50}) {
      SCOPED_TRACE(testing::Message() << "whiten " << whiten << (rgbOrder ? " RGBA" : " BGRA"));
      f.whitenIntensity = whiten;
      f.rgbOrder = rgbOrder;
      f.buildLookup(noisePicture().payload.data());
      const model::Tables expected = model::buildTables(noisePicture().payload, whiten, rgbOrder);
      const unsigned char* curves[] = {f.toneCurve0, f.toneCurve1, f.toneCurve2};
      for (std::size_t i = 0; i < 3; ++i)
        EXPECT_TRUE(std::equal(expected.curves[i].begin(), expected.curves[i].end(), curves[i])) << "curve " << i;
      const auto at = std::mismatch(expected.colors.begin(), expected.colors.end(), f.colorTable).first;
      EXPECT_EQ(at - expected.colors.begin(), std::ssize(expected.colors)) << "the first byte that differs";
    }
  }
  EXPECT_EQ(f.toneCurve0[128], 145);
}

}  // namespace
}  // namespace frame_rig
