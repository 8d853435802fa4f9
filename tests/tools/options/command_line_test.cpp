/// What the command line is read as, what is refused, and where help and results go.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <variant>

#include "rows/row_loops.h"
#include "tests/tools/tool_support.h"
#include "tools/options/options.h"

namespace vlvk::tool_test {
namespace {

tool::CommandLine parsed(const Arguments& arguments) {
  std::vector<const char*> words{"vlvk-makeup"};
  for (const std::string& word : arguments)
    words.push_back(word.c_str());
  tool::CommandLine line;
  tool::parseCommandLine(static_cast<int>(words.size()), words.data(), &line);
  return line;
}

TEST(CommandLine, ValuesArrive) {
  const auto high =
      std::get<tool::PhotoOptions>(parsed({"photo", "a.png", "b.jpg", "--whiten=100", "--soften=1000", "--radius",
                                           "128", "--threads=64", "--quality=100", "--table", "c.vlk", "--compare"})
                                       .command);
  EXPECT_EQ(high.in + high.out + high.look.table.value_or(""), "a.pngb.jpgc.vlk");
  EXPECT_EQ(high.look.look.whiten + high.look.look.soften + high.look.look.radius, 1228);
  EXPECT_EQ(high.look.look.threads + high.quality, 164);
  EXPECT_TRUE(high.compare && !high.showWeight);
  const auto low = std::get<tool::PhotoOptions>(
      parsed({"photo", "a", "b", "--whiten=010", "--soften=0", "--radius=0", "--threads=1", "--quality=1"}).command);
  EXPECT_EQ(low.look.look.whiten, 10);
  EXPECT_EQ(low.look.look.soften + low.look.look.radius + low.look.look.threads + low.quality, 2);
  EXPECT_FALSE(low.look.table || low.compare);
  const auto defaults = std::get<tool::VideoOptions>(parsed({"video", "a", "b"}).command);
  EXPECT_EQ(defaults.look.look.whiten + defaults.look.look.soften + defaults.look.look.radius, 50 + 1000 + 20);
  EXPECT_FALSE(defaults.raw);
}

TEST(CommandLine, TargetIsPutInUse) {
  for (const std::string& name : tool::targetNames()) {
    EXPECT_EQ(parsed({"--target", name, "bench"}).target, name);
    EXPECT_EQ(parsed({"--target", "scalar", "photo", "a", "b", "--target", name}).target, name);
    tool::useTarget(name);
    EXPECT_EQ(rowLoops().name, name);
  }
  forceRowLoops(nullptr);
}

struct Refusal {
  Arguments words;
  std::vector<std::string> values;  // that the last word is refused with
};

TEST(CommandLine, WhatMakesNoSenseIsRefused) {
  const Arguments photo{"photo", "in.png", "out.png"};
  const Arguments sheet{"sheet", "in.png", "out.png"};
  const Arguments video{"video", "in", "out"};
  const Refusal refusals[] = {
      {photo + Arguments{"--whiten"}, {"-1", "101", "1.5", "a\nb", "0x10", "", "9999999999"}},
      {photo + Arguments{"--soften"}, {"-1", "1001"}},
      {photo + Arguments{"--radius"}, {"-1", "129"}},
      {photo + Arguments{"--threads"}, {"0", "65"}},
      {photo + Arguments{"--quality"}, {"0", "101"}},
      {photo + Arguments{"--target"}, {"", "mmx"}},
      {sheet + Arguments{"--columns"},
       {"whiten=", "whiten=1,,2", "whiten=1,", "radius=999", "whiten=0x1", "soften=1.5", "radius=8,0,8", "whiten", "=1",
        "--whiten=1", "threads=1,2", "", "soften=1"}},
      {sheet + Arguments{"--soften"}, {"500"}},
      {sheet + Arguments{"--cell"}, {"79", "32769"}},
      {sheet + Arguments{"--crop"}, {"", "9x9", "0x9+0+0", "9x9+0+-1", "9x9+0+0+0", "9x9+0+99999999999", "9x9+0+0 "}},
      {video + Arguments{"--size", "2x2", "--format"}, {"yuy2", ""}},
      {{"bench", "--seconds"}, {"nan", "0", "61"}},
      {{"bench", "--size", "8x8", "--size"},
       {"", "8", "8x", "x8", "8x8x", "8y8", "0x8", "8x-8", "32769x8", "32768x32768", "1e2x8"}},
      {{"table", "convert", "a", "b", "--in-layout"}, {"tiles"}},
      {{"table", "convert", "a", "b", "--out-layout"}, {""}},
  };
  for (const Refusal& refusal : refusals) {
    for (const std::string& value : refusal.values) {
      const std::string reason = reasonOf([&] { parsed(refusal.words + Arguments{value}); });
      EXPECT_EQ(reason.find(refusal.words.back() + ": "), 0U) << value << ": " << reason;
    }
  }
  const std::pair<Arguments, std::string> lines[] = {
      {{}, "a command is required"},
      {{"paint"}, "there is no 'paint'"},
      {{"table"}, "a command is required"},
      {{"table", "paint"}, "there is no 'paint'"},
      {{"table", "neutral"}, "OUT"},
      {{"table", "check", "a.vlk", "b.vlk"}, "b.vlk"},
      {{"photo", "in.png"}, "OUT"},
      {photo + Arguments{"third.png"}, "third.png"},
      {photo + Arguments{"--nothing"}, "--nothing"},
      {photo + Arguments{"--radius"}, "--radius"},
      {photo + Arguments{"--whiten=1", "--whiten=2"}, "--whiten"},
      {{"bench", "--target=scalar", "--target=scalar"}, "--target"},
      {{"bench", "8x8"}, "8x8"},
      {video + Arguments{"--format", "nv12"}, "--size"},
      {video + Arguments{"--size", "2x2"}, "--format"},
      {sheet + Arguments{"--columns", "soften=1"}, "both"},
  };
  for (const auto& [words, text] : lines)
    expectHolds(reasonOf([&, words = words] { parsed(words); }), text);
}

using Program = ToolDirectory;

TEST_F(Program, NamesTheInputOfARefusedLine) {
  expectRefused({"photo", "in.png", "out.png", "--whiten", "a\nb"}, "vlvk-makeup: in.png: --whiten: 'a\\x0Ab' is not");
  EXPECT_EQ(runProgram({"photo", "in.png"}).exitCode, 2);
  EXPECT_EQ(runProgram({"photo", "in.png"}).err, "vlvk-makeup: in.png: OUT is required\n");
}

TEST_F(Program, HelpAndVersionGoToStandardOutput) {
  for (const Arguments& command : {Arguments{}, {"photo"}, {"table"}, {"table", "pack"}}) {
    for (const std::string flag : {"--help", "--version"}) {
      const ProgramRun run = runProgram(command + Arguments{flag});
      EXPECT_TRUE(run.exitCode == 0 && run.err.empty()) << run.err;
      expectHolds(run.out, flag == "--version" ? "vlvk-makeup " : "--help");
    }
  }
}

TEST_F(Program, LostOutputIsAFailure) {
  expectDone({"table", "neutral", path("look.vlk")});
  int pipe[2] = {};
  ASSERT_EQ(::pipe(pipe), 0);
  close(pipe[0]);  // without a reader
  const int full = open("/dev/full", O_WRONLY);
  for (const int out : {pipe[1], full}) {
    for (const Arguments& arguments :
         {Arguments{"--help"}, {"--version"}, {"table", "check", path("look.vlk")}, {"bench", "--size", "8x8"}}) {
      expectRefused(arguments, out == full ? "No space left" : "Broken pipe", {.out = out});
    }
    close(out);
  }
}

}  // namespace
}  // namespace vlvk::tool_test
