/// `vlvk-makeup bench`, run as a process.
#include <gtest/gtest.h>

#include <sstream>

#include "tests/tools/tool_support.h"
#include "tools/engine/engine.h"

namespace vlvk::tool_test {
namespace {

TEST(Bench, HasARowForEachSizeAndTarget) {
  const Arguments rows{"--seconds", "0.001", "--size", "64x36", "--size=7x5"};
  const auto expectRows = [](const Arguments& arguments, const Arguments& targets) {
    std::istringstream out(runProgram(arguments).out);
    out.ignore(1000, '/');  // in the heads of the columns
    out.ignore(1000, '\n');
    for (const std::string expected : {"64x36", "7x5"}) {
      for (const std::string& expectedTarget : targets) {
        std::string size, target;
        double rate = 0, time = 0;
        EXPECT_TRUE(out >> size >> target >> rate >> time);
        EXPECT_EQ(size + target, expected + expectedTarget);
        EXPECT_NEAR(rate * time, 1000, 1 + 0.0006 * rate);  // both are rounded
      }
    }
    EXPECT_FALSE(out >> std::ws && !out.eof());
  };
  expectRows(Arguments{"bench"} + rows, tool::targetNames());
  expectRows(Arguments{"bench", "--target", "scalar", "--threads", "3"} + rows, {"scalar"});
  expectRows(Arguments{"--target", "scalar", "bench"} + rows, {"scalar"});
}

}  // namespace
}  // namespace vlvk::tool_test
