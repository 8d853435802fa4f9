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

namespace testing_support {

/// Names of the targets, fastest first. Never empty: a run without targets is aborted.
std::vector<std::string> targetNames();

class TargetTest : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override;
  /// Fails the test when another target was in use at its end.
  void TearDown() override;
};

}  // namespace testing_support

#define VLVK_TEST_ALL_TARGETS(Suite)                                                         \
  INSTANTIATE_TEST_SUITE_P(Target, Suite, testing::ValuesIn(testing_support::targetNames()), \
                           [](const testing::TestParamInfo<std::string>& p) { return p.param; })

#endif
