/// Header and scrambling of resource files.
#include "resource/resource_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace vlvk {
namespace {

TEST(ResourceFile, SizeIsTheProductOfTwoFactorsWhoseHighBytesAreNegative) {
  struct {
    unsigned char header[kResourceHeaderSize];
    std::int32_t size;
  } constexpr kCases[] = {{{'V', 'L', 'K', 0xFF, 0x00, 0x08, 0, 0, 0x00, 0x02, 0, 0}, 2048 * 512},
                          {{0, 0, 0, 0, 0x01, 0x02, 0x03, 0x04, 1, 0, 0, 0}, 0x04030201},
                          {{0, 0, 0, 0, 0xFF, 0x08, 0, 0, 1, 0, 0, 0}, 8 * 256 - 1},
                          {{0, 0, 0, 0, 0x00, 0x80, 0x01, 0, 2, 0, 0, 0}, 2 * (65536 - 128 * 256)},
                          {{0, 0, 0, 0, 0x80, 0, 0, 0, 0xFE, 0, 0, 0}, 128 * 2},
                          // -128 * 2^24 = -2^31; times 1 it stays; times 0x80 = -128 it is 2^38, which wraps to 0.
                          {{0, 0, 0, 0, 0, 0, 0, 0x80, 1, 0, 0, 0}, INT32_MIN},
                          {{0, 0, 0, 0, 0, 0, 0, 0x80, 0x80, 0, 0, 0}, 0}};
  for (const auto& c : kCases)
    EXPECT_EQ(resourcePayloadSize(c.header), c.size);
}

TEST(ResourceFile, LimitsOfAPayload) {
  EXPECT_TRUE(isResourcePayloadAllowed(0));
  EXPECT_TRUE(isResourcePayloadAllowed(1048576));
  EXPECT_FALSE(isResourcePayloadAllowed(1048577));
  EXPECT_FALSE(isResourcePayloadAllowed(-1));
  EXPECT_FALSE(isResourcePayloadAllowed(INT32_MIN));
}

TEST(ResourceFile, ScramblingSwapsPairsAndMasksAndIsItsOwnInverse) {
  const std::vector<unsigned char> plain{0x00, 0xFF, 0x5A, 0x01, 0xA5};
  const std::vector<unsigned char> scrambled{0xA5, 0x5A, 0x5B, 0x00, 0xFF};
  for (int size = -1; size <= 5; ++size) {
    std::vector<unsigned char> result(5, 0x77);
    scrambleResource(plain.data(), size, result.data());
    std::vector<unsigned char> expected(5, 0x77);
    std::copy_n(scrambled.begin(), std::max(size, 0), expected.begin());
    if (size % 2 == 1) expected[static_cast<std::size_t>(size) - 1] = plain[static_cast<std::size_t>(size) - 1] ^ 0x5A;
    EXPECT_EQ(result, expected) << "size " << size;
    scrambleResource(result.data(), size, result.data());
    EXPECT_TRUE(std::equal(plain.begin(), plain.begin() + std::max(size, 0), result.begin())) << "in place, " << size;
  }
}

}  // namespace
}  // namespace vlvk
