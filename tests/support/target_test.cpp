/// See target_test.h.
#include "tests/support/target_test.h"

#include <cstdio>
#include <cstdlib>

#include "rows/row_loops.h"

namespace testing_support {

std::vector<std::string> targetNames() {
  int count = 0;
  const vlvk::RowLoops* const* sets = vlvk::availableRowLoops(count);
  if (count < 1) {
    std::fputs("no target to test\n", stderr);
    std::abort();
  }
  std::vector<std::string> names;
  for (int i = 0; i < count; ++i)
    names.emplace_back(sets[i]->name);
  return names;
}

void TargetTest::SetUp() {
  ASSERT_TRUE(vlvk::forceRowLoops(GetParam().c_str())) << GetParam();
  ASSERT_EQ(vlvk::rowLoops().name, GetParam());
}

void TargetTest::TearDown() {
  EXPECT_EQ(vlvk::rowLoops().name, GetParam()) << "the forced target was not the one that ran";
  vlvk::forceRowLoops(nullptr);
}

}  // namespace testing_support
