/// Sizes that do not fit, and what is computed from them.
#include "base/checked_size.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace vlvk {
namespace {

constexpr std::size_t kMost = std::numeric_limits<std::size_t>::max();

TEST(CheckedSize, FitsUpToTheLargestSize) {
  EXPECT_EQ((CheckedSize(kMost / 2) * 2 + 1).bytes(), kMost);
  EXPECT_TRUE((CheckedSize(kMost / 2) * 2 + 1).fits());
  EXPECT_FALSE((CheckedSize(kMost / 2 + 1) * 2).fits());
  EXPECT_FALSE((CheckedSize(kMost) + 1).fits());
  EXPECT_EQ(larger(CheckedSize(kMost), 3).bytes(), kMost);
  EXPECT_EQ(larger(3, CheckedSize(kMost)).bytes(), kMost);
  EXPECT_TRUE(larger(3, CheckedSize(kMost)).fits());
}

TEST(CheckedSize, OnceItDoesNotFitNothingDoes) {
  const CheckedSize tooLarge = CheckedSize(kMost) * 2;
  for (const CheckedSize size : {CheckedSize(-1), CheckedSize(std::int64_t{INT64_MIN}), tooLarge}) {
    EXPECT_FALSE(size.fits());
    EXPECT_FALSE((size * 0).fits() || (0 * size).fits());
    EXPECT_FALSE((size + 1).fits() || (1 + size).fits());
    EXPECT_FALSE(larger(size, 5).fits() || larger(5, size).fits());
  }
  EXPECT_TRUE(CheckedSize(INT64_MAX).fits() == (sizeof(std::size_t) == 8)) << "wider than a size";
}

}  // namespace
}  // namespace vlvk
