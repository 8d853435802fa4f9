/// EXIF orientation and ICC profiles, whole and damaged.
#include <gtest/gtest.h>

#include <span>

#include "tests/tools/tool_support.h"
#include "tools/picture/metadata.h"

namespace vlvk::tool_test {
namespace {

TEST(Metadata, OrientationOfEitherByteOrderIsRead) {
  Bytes big = corpusPicture("exif");
  Bytes little{'I', 'I', 42, 0, 8, 0, 0, 0, 2, 0, 0, 1, 3, 0, 1, 0, 0, 0, 3, 0, 0, 0, 0x12, 1, 3, 0, 1, 0, 0, 0, 6, 0};
  for (int value = 0; value < 12; ++value) {
    big[19] = little[30] = static_cast<std::uint8_t>(value);
    EXPECT_EQ(tool::exifOrientation(big), value < 1 || value > 8 ? 1 : value);
    EXPECT_EQ(tool::exifOrientation(little), value < 1 || value > 8 ? 1 : value);
  }
}

TEST(Metadata, DamagedOrientationIsIgnored) {
  const Bytes exif = corpusPicture("exif");
  for (std::size_t size = 0; size < 20; ++size)  // the rest of the entry lies after the end
    EXPECT_EQ(tool::exifOrientation(std::span(exif).first(size)), 1) << size;
  EXPECT_EQ(tool::exifOrientation(corpusPicture("exif_far")), 1);
}

TEST(Metadata, OnlyRgbProfilesAreKept) {
  Bytes profile(128);
  for (const std::string space : {"RGB ", "GRAY", "CMYK"}) {
    std::copy(space.begin(), space.end(), profile.begin() + 16);
    EXPECT_EQ(tool::isRgbProfile(profile), space == "RGB ");
    EXPECT_FALSE(tool::isRgbProfile(std::span(profile).first(127)));
  }
}

}  // namespace
}  // namespace vlvk::tool_test
