/// The choice among the compiled sets of row loops.
#include <gtest/gtest.h>

#include <iterator>
#include <set>
#include <string>

#include "rows/row_loops.h"

namespace {

TEST(Targets, EachSetIsCodeOfItsOwnAndCanBeForced) {
  int count = 0;
  const vlvk::RowLoops* const* sets = vlvk::availableRowLoops(count);
  ASSERT_GE(count, 1);
  std::set<std::string> names;
  std::set<vlvk::RowLoops::SmoothRow> smoothRows;
  std::set<vlvk::RowLoops::YuvToPixels> conversions;
  for (int i = 0; i < count; ++i) {
    names.insert(sets[i]->name);
    smoothRows.insert({sets[i]->smoothRow, sets[i]->smoothRowAnySums});
    for (const auto& ofColors : sets[i]->yuvToPixels) {
      for (const auto& ofChroma : ofColors)
        conversions.insert(std::begin(ofChroma), std::end(ofChroma));
    }
    EXPECT_TRUE(vlvk::forceRowLoops(sets[i]->name));
    EXPECT_EQ(&vlvk::rowLoops(), sets[i]);
    EXPECT_FALSE(vlvk::forceRowLoops("no such target"));
    EXPECT_EQ(&vlvk::rowLoops(), sets[i]) << "a refused choice must change nothing";
  }
  const auto number = static_cast<std::size_t>(count);
  EXPECT_EQ(names.size(), number);
  EXPECT_EQ(smoothRows.size(), 2 * number);
  EXPECT_EQ(conversions.size(), 16 * number);
  EXPECT_TRUE(names.contains("scalar"));
#if defined(__x86_64__) || defined(__aarch64__) || defined(__arm__)
  EXPECT_GE(count, 2) << "this processor has vector instructions";
#endif

  EXPECT_TRUE(vlvk::forceRowLoops(nullptr));
  EXPECT_EQ(&vlvk::rowLoops(), sets[0]);
}

}  // namespace
