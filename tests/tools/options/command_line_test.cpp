/// What the command line is read as, what is refused, and where help and results go.
#include <fcntl.h>
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

// --whiten, --soften, --radius, --contrast, --whiten-area, --even-tone.
std::vector<int> numbersOf(const VlvkSettings& settings) {
  return {settings.whitening, settings.softening,  settings.radius,
          settings.contrast,  settings.whitenArea, settings.evenTone};
}

// And --threads, --quality.
std::vector<int> numbersOf(const Arguments& options) {
  const auto photo = std::get<tool::PhotoOptions>(parsed(Arguments{"photo", "a", "b"} + options).command);
  const VlvkSettings& settings = photo.look.look.settings;
  return numbersOf(settings) + std::vector<int>{settings.threads, photo.quality.value_or(92)};
}

TEST(CommandLine, ValuesArrive) {
  VlvkSettings handle;
  vlvkSettingsInit(&handle, sizeof handle);
  EXPECT_EQ(numbersOf(Arguments{}), numbersOf(handle) + (std::vector<int>{4, 92}));
  EXPECT_EQ(numbersOf({"--whiten=010", "--soften=0", "--radius", "0", "--contrast=absolute", "--whiten-area=skin",
                       "--even-tone=1", "--threads=1", "--quality=1"}),
            (std::vector<int>{10, 0, 0, VLVK_CONTRAST_ABSOLUTE, VLVK_WHITEN_SKIN, 1, 1, 1}));
  EXPECT_EQ(numbersOf({"--whiten=100", "--soften=1000", "--radius=128", "--contrast=relative", "--whiten-area=all",
                       "--even-tone=1000", "--threads=64", "--quality=100"}),
            (std::vector<int>{100, 1000, 128, VLVK_CONTRAST_RELATIVE, VLVK_WHITEN_ALL, 1000, 64, 100}));
  EXPECT_EQ(numbersOf({"--radius=auto"})[2], VLVK_RADIUS_AUTO);
  for (const std::string& name : tool::targetNames()) {
    EXPECT_EQ(parsed({"--target", "scalar", "photo", "a", "b", "--target", name}).target, name);
    tool::useTarget(name);
    EXPECT_EQ(rowLoops().name, name);
  }
  forceRowLoops(nullptr);
}

TEST(CommandLine, WhatMakesNoSenseIsRefused) {
  const Arguments photo{"photo", "in.png", "out.png"};
  const Arguments sheet{"sheet", "in.png", "out.png"};
  const Arguments video{"video", "in", "out"};
  const std::pair<Arguments, Arguments> refusals[] = {
      // The last word is refused with each of the values.
      {photo + Arguments{"--whiten"}, {"-1", "101", "1.5", "a\nb", "0x10", "", "9999999999"}},
      {photo + Arguments{"--soften"}, {"-1", "1001"}},
      {photo + Arguments{"--radius"}, {"-1", "129", "automatic", ""}},
      {photo + Arguments{"--contrast"}, {"0", "Relative", ""}},
      {video + Arguments{"--whiten-area"}, {"1", "skins"}},
      {sheet + Arguments{"--even-tone"}, {"-1", "1001"}},
      {photo + Arguments{"--threads"}, {"0", "65"}},
      {photo + Arguments{"--quality"}, {"0", "101"}},
      {photo + Arguments{"--target"}, {"", "mmx"}},
      {sheet + Arguments{"--columns"}, {"whiten=", "whiten=1,,2", "whiten=1,", "radius=999", "whiten=0x1", "whiten"}},
      {sheet + Arguments{"--columns"},
       {"radius=auto,8,auto", "contrast=0", "=1", "--whiten=1", "threads=1,2", "", "soften=1"}},
      {sheet + Arguments{"--soften"}, {"500"}},
      {sheet + Arguments{"--cell"}, {"79", "32769"}},
      {sheet + Arguments{"--crop"}, {"", "9x9", "0x9+0+0", "9x9+0+-1", "9x9+0+0+0", "9x9+0+99999999999", "9x9+0+0 "}},
      {video + Arguments{"--size", "2x2", "--format"}, {"yuy2", ""}},
      {{"bench", "--seconds"}, {"nan", "0", "61"}},
      {{"bench", "--pace"}, {"-1", "1001"}},
      {{"bench", "--size", "8x8", "--size"}, {"", "8", "8x", "x8", "8x8x", "8y8", "0x8", "8x-8", "1e2x8"}},
      {{"bench", "--size"}, {"32769x8", "32768x32768"}},
      {{"table", "convert", "a", "b", "--in-layout"}, {"tiles"}},
      {{"table", "convert", "a", "b", "--out-layout"}, {""}}};
  for (const auto& [words, values] : refusals) {
    for (const std::string& value : values) {
      const std::string reason = reasonOf([&, &words = words] { parsed(words + Arguments{value}); });
      EXPECT_TRUE(reason.starts_with(words.back() + ": ")) << value << ": " << reason;
    }
  }
  const std::pair<Arguments, std::string> lines[] = {
      {{}, "a command is required"},
      {{"paint"}, "there is no 'paint'"},
      {{"table", "paint"}, "there is no 'paint'"},
      {{"table", "check", "a.vlk", "b.vlk"}, "b.vlk"},
      {{"photo", "in.png"}, "OUT"},
      {photo + Arguments{"third.png"}, "third.png: several files need"},
      {{"photo", "-a.jpg", "out.png"}, "-a.jpg is taken for an option"},
      {{"photo", "-h.jpg", "out.png"}, "-h.jpg is taken for an option"},
      {photo + Arguments{"--table-layout", "hald"}, "--table-layout req"},
      {photo + Arguments{"--out-dir", ""}, "--out-dir: "},
      {video + Arguments{"--out-dir=d", "--checksum=c"}, "--checksum: not"},
      {{"video", "-", "--out-dir=d"}, "-: standard input has no name"},
      {photo + Arguments{"--compare=1"}, "--compare: takes no value"},
      {photo + Arguments{"--nothing"}, "--nothing"},
      {photo + Arguments{"--whiten=1", "--whiten=2"}, "--whiten"},
      {{"bench", "--target=scalar", "--target=scalar"}, "--target"},
      {{"bench", "8x8"}, "8x8"},
      {video + Arguments{"--format", "nv12"}, "--size"},
      {video + Arguments{"--size", "2x2"}, "--format"},
      {{"video", "a", "b.mp4", "--size", "2x2", "--format", "nv12"}, "OUT ends in .mp4"},
      {sheet + Arguments{"--columns", "soften=1"}, "both"}};
  for (const auto& [words, text] : lines)
    expectHolds(reasonOf([&, words = words] { parsed(words); }), text);
}

using Program = ToolDirectory;

TEST_F(Program, HelpGoesToStandardOutputAndRefusalsNameTheOption) {
  EXPECT_TRUE(runProgram({"--version"}).out.starts_with("vlvk-makeup "));
  for (const Arguments& command : {Arguments{}, {"photo"}, {"table", "pack"}}) {
    const ProgramRun run = runProgram(command + Arguments{"--help"});
    EXPECT_TRUE(run.exitCode == 0 && run.err.empty()) << run.err;
    expectHolds(run.out, "--help");
  }
  expectRefused({"photo", "in.png", "out.png", "--whiten", "a\nb"}, "vlvk-makeup: --whiten: 'a\\x0Ab' is not");
  EXPECT_EQ(runProgram({"photo", "in.png"}).exitCode, 2);
}

TEST_F(Program, LostOutputIsAFailure) {
  expectDone({"table", "neutral", path("look.vlk")});
  writeBytes(path("in"), bytesOf("YUV4MPEG2 W1 H1\nFRAME\nyuv"));
  int pipe[2] = {};
  ASSERT_EQ(::pipe(pipe), 0);
  close(pipe[0]);  // without a reader
  const int full = open("/dev/full", O_WRONLY);
  for (const int out : {pipe[1], full}) {
    const std::string reason = std::string("cannot be written: ") + (out == full ? "No space left" : "Broken pipe");
    for (const Arguments& arguments :
         {Arguments{"--help"}, {"--version"}, {"table", "check", path("look.vlk")}, {"bench", "--size", "8x8"}}) {
      expectRefused(arguments, reason, {.out = out});
    }
    expectRefused({"video", path("in"), "-"}, "standard output: " + reason, {.out = out});
    close(out);
  }
}

}  // namespace
}  // namespace vlvk::tool_test
