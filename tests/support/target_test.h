/// Runs every test of a suite once for each set of row loops that this processor can run.
///
///     class Blend : public testing_support::TargetTest {};
///     TEST_P(Blend, ...) { ... }
///     VLVK_TEST_ALL_TARGETS(Blend);
#ifndef VLVK_TESTS_SUPPORT_TARGET_TEST_H
#define VLVK_TESTS_SUPPORT_TARGET_TEST_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rows/row_loops.h"

namespace testing_support {

/// Names of the targets, fastest first.
inline std::vector<std::string> targetNames() {
  int count = 0;
  const vlvk::RowLoops* const* sets = vlvk::availableRowLoops(count);
  std::vector<std::string> names;
  for (int i = 0; i < count; ++i)
    names.emplace_back(sets[i]->name);
  return names;
}

class TargetTest : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override { ASSERT_TRUE(vlvk::forceRowLoops(GetParam().c_str())) << GetParam(); }
  void TearDown() override {
    EXPECT_EQ(vlvk::rowLoops().name, GetParam()) << "the forced target was not the one that ran";
    vlvk::forceRowLoops(nullptr);
  }
};

}  // namespace testing_support

#define VLVK_TEST_ALL_TARGETS(Suite)                                                         \
  INSTANTIATE_TEST_SUITE_P(Target, Suite, testing::ValuesIn(testing_support::targetNames()), \
                           [](const testing::TestParamInfo<std::string>& p) { return p.param; })

#endif
