/// `vlvk-makeup bench`, run as a process.
#include <gtest/gtest.h>

#include <sstream>

#include "tests/tools/tool_support.h"
#include "tools/engine/engine.h"

namespace vlvk::tool_test {
namespace {

// The first two columns of the rows, "64x36 avx2".
Arguments rowsOfBench(const Arguments& arguments) {
  const ProgramRun run = runProgram(arguments + Arguments{"--seconds", "0.001", "--size", "64x36", "--size=7x5"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.err, "");
  Arguments rows;
  std::istringstream out(run.out.substr(run.out.find("size ")));
  std::string line;
  for (std::getline(out, line); std::getline(out, line);) {
    std::istringstream row(line);
    std::string size;
    std::string target;
    double rate = 0;
    double time = 0;
    EXPECT_TRUE(row >> size >> target >> rate >> time) << line;
    EXPECT_NEAR(rate * time, 1000, 100) << line;
    rows.push_back(size + " " + target);
  }
  return rows;
}

TEST(Bench, HasARowForEachSizeAndTarget) {
  Arguments rows;
  for (const std::string size : {"64x36", "7x5"}) {
    for (const std::string& target : tool::targetNames())
      rows.push_back(size + " " + target);
  }
  EXPECT_EQ(rowsOfBench({"bench"}), rows);
  const Arguments forced{"64x36 scalar", "7x5 scalar"};
  EXPECT_EQ(rowsOfBench({"bench", "--target", "scalar", "--threads", "3"}), forced);
  EXPECT_EQ(rowsOfBench({"--target", "scalar", "bench"}), forced);
}

}  // namespace
}  // namespace vlvk::tool_test
