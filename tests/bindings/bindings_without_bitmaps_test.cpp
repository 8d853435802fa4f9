/// makeup_ProcessBitmap3 where nobody provides AndroidBitmap functions, as in this executable.
#include <gtest/gtest.h>

#include <vlvk/makeup_entry_points.h>

namespace {

TEST(WithoutBitmaps, ThereIsNothingToProcess) {
  EXPECT_EQ(makeup_ProcessBitmap3(nullptr, nullptr, 0, nullptr), -1);
}

}  // namespace
