/// The command line of `vlvk-makeup`, and `bench`.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "rows/row_loops.h"
#include "tests/tools/tool_directory.h"
#include "tools/options/target.h"

namespace vlvk::tool_test {
namespace {

using Program = ToolDirectory;
using Arguments = std::vector<std::string>;

TEST_F(Program, HelpAndVersionGoToStandardOutput) {
  for (const Arguments& command :
       {Arguments{}, {"photo"}, {"video"}, {"sheet"}, {"bench"}, {"table"}, {"table", "pack"}}) {
    for (const std::string flag : {"--help", "--version"}) {
      Arguments arguments = command;
      arguments.push_back(flag);
      const ProgramRun run = runProgram(arguments);
      EXPECT_EQ(run.exitCode, 0);
      EXPECT_EQ(run.err, "");
      EXPECT_NE(run.out.find(flag == "--version" ? "vlvk-makeup " : "--help"), std::string::npos) << run.out;
    }
  }
}

TEST_F(Program, LostOutputIsAFailure) {
  expectDone({"table", "neutral", path("look.vlk")});
  int pipe[2] = {};
  ASSERT_EQ(::pipe(pipe), 0);
  close(pipe[0]);  // nobody reads
  const int full = open("/dev/full", O_WRONLY);
  for (const int out : {pipe[1], full}) {
    for (const Arguments& arguments :
         {Arguments{"--help"}, {"--version"}, {"table", "check", path("look.vlk")}, {"bench", "--size", "8x8"}}) {
      expectRefused(arguments, out == full ? "No space left" : "Broken pipe", {.out = out});
    }
    close(out);
  }
}

TEST_F(Program, CommandLinesThatMakeNoSenseAreRefused) {
  std::string targets;
  for (const std::string& name : tool::targetNames())
    targets += (targets.empty() ? "" : ", ") + name;
  struct Case {
    Arguments arguments;
    std::string reason;
  };
  const Case cases[] = {{{}, "a command is required"},
                        {{"paint"}, "there is no 'paint'"},
                        {{"photo", "in.png"}, "in.png: OUT"},
                        {{"--target", "mmx", "bench"}, "there is no 'mmx' on this machine, only " + targets + "\n"},
                        {{"photo", "in.png", "out.png", "--target", ""}, "in.png: --target"},
                        {{"bench", "--target=scalar", "--target=scalar"}, "--target"},
                        {{"bench", "--seconds", "nan"}, "'nan'"},
                        {{"bench", "--threads", "0"}, "'0'"},
                        {{"bench", "8x8"}, "8x8"}};
  for (const Case& wrong : cases)
    expectRefused(wrong.arguments, wrong.reason);
  for (const std::string size : {"", "8", "8x", "x8", "8x8x", "8y8", "0x8", "8x-8", "32769x8", "32768x32768", "1e2x8"})
    expectRefused({"bench", "--size", "8x8", "--size", size}, "--size: '" + size + "'");
}

TEST(Target, OptionPutsThatTargetInUse) {
  for (const std::string& name : tool::targetNames()) {
    CLI::App program;
    tool::addTargetOption(&program);
    program.parse("--target " + name);
    EXPECT_EQ(rowLoops().name, name);
  }
  forceRowLoops(nullptr);
}

// The first two columns of the rows, "64x36 avx2".
Arguments rowsOfBench(Arguments arguments) {
  arguments.insert(arguments.end(), {"--seconds", "0.001", "--size", "64x36", "--size=7x5"});
  const ProgramRun run = runProgram(arguments);
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
