/// `vlvk-makeup table`, run as a process.
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <random>

#include "tests/tools/tool_support.h"

namespace vlvk::tool_test {
namespace {

constexpr int kSide = 512;

class Table : public ToolDirectory {
 protected:
  void convert(const std::string& in, const std::string& out, const Arguments& options = {}) const {
    expectDone(Arguments{"table", "convert", path(in), path(out)} + options);
  }

  bool same(const std::string& a, const std::string& b) const { return readBytes(path(a)) == readBytes(path(b)); }
};

TEST_F(Table, ColoursOfPhotosGoThroughIt) {
  std::string cube = "LUT_3D_SIZE 2\n";  // red is 250 where there is much of it, else 10; blue 240, else 20
  for (const char* blue : {" 0 .0784\n", " 0 .9412\n"})
    cube += std::string(".0392") + blue + ".9804" + blue + ".0392" + blue + ".9804" + blue;
  writeBytes(path("look.cube"), bytesOf(cube));
  convert("look.cube", "look.png");
  expectDone({"table", "pack", path("look.png"), path("look.vlk")});
  for (const int red : {0, 255}) {
    writePng(path("in.png"), 16, 16, [&](int, int, int c) { return std::abs(red - c / 2 * 255); });
    expectDone({"photo", path("in.png"), path("out.png"), "--table", path("look.vlk"), "--radius=0", "--whiten=0"});
    const Image image = readPng(path("out.png"));
    EXPECT_EQ(Bytes(image.at(7, 9), image.at(8, 9)), red == 0 ? (Bytes{10, 0, 240, 255}) : (Bytes{250, 0, 20, 255}));
  }
  const ProgramRun check = runProgram({"table", "check", path("look.vlk")});
  expectHolds(check.out, path("look.vlk") + ": a colour table that the engine takes whole");
  expectHolds(check.out, "A 2048 (00 08 00 00) times B 512 (00 02 00 00)");
}

TEST_F(Table, EveryFormatKeepsATable) {
  std::mt19937 random(7);
  writePng(path("in.png"), kSide, kSide, [&](int, int, int) { return random() & 255; });
  convert("in.png", "a.VLK", {"--in-layout", "lookup"});
  convert("a.VLK", "a\"b.cube");
  convert("a\"b.cube", "cube.vlk");
  EXPECT_TRUE(same("cube.vlk", "a.VLK"));
  for (const std::string layout : {"lookup", "hald"}) {
    convert("cube.vlk", layout + ".png", {"--out-layout", layout});
    convert(layout + ".png", layout + ".vlk", {"--in-layout", layout});
    EXPECT_TRUE(same(layout + ".vlk", "a.VLK")) << layout;
  }
  EXPECT_FALSE(same("lookup.png", "hald.png"));
  const Arguments photo{"photo", VLVK_SAMPLES "/portrait.png"};
  expectDone(photo + Arguments{path("tinted.png"), "--table", path("a.VLK")});
  for (const std::string layout : {"lookup", "hald"}) {
    const Arguments table{path("by.png"), "--table", path(layout + ".png")};
    expectRefused(photo + table, "with --table-layout lookup");
    expectDone(photo + table + Arguments{"--table-layout", layout});
    EXPECT_TRUE(same("by.png", "tinted.png")) << layout;
    std::filesystem::remove(path("by.png"));
  }
  expectRefused(photo + Arguments{path("by.png"), "--table", path("a.VLK"), "--table-layout=hald"},
                "a layout is stated");
  expectDone({"table", "unpack", path("a.VLK"), path("back.PNG")});
  EXPECT_TRUE(readPng(path("back.PNG")).pixels == readPng(path("in.png")).pixels);
  // The order of a HALD picture's pixels, 16 levels a channel.
  writePng(path("4.png"), 64, 64, [](int x, int y, int channel) { return ((y * 64 + x) >> (4 * channel) & 15) * 17; });
  convert("4.png", "4.vlk");
  expectDone({"table", "neutral", path("neutral.vlk")});
  EXPECT_TRUE(same("4.vlk", "neutral.vlk"));
  expectDone({"photo", path("4.png"), path("out.png"), "--table", path("4.png")});
}

TEST_F(Table, UnusableFilesAreRefused) {
  writeBytes(path("bad.cube"), bytesOf("LUT_3D_SIZE 256\n0 0 0\n"));
  writeBytes(path("png.cube"), corpusPicture("rgb_png"));
  writeBytes(path("cube.vlk"), readBytes(path("bad.cube")));
  const auto refuse = [this](const std::string& command, const std::string& in, const std::string& out,
                             const std::string& text, const Arguments& options = {}) {
    expectRefused(Arguments{"table", command, path(in), path(out)} + options, directory_.string() + "/" + text);
  };
  refuse("convert", "bad.cube", "out.vlk", "bad.cube: line 2: the file ends after 1 of 16777216");
  refuse("convert", "bad.cube", "out.vlk", "bad.cube: a layout is stated", {"--in-layout", "hald"});
  refuse("convert", "bad.cube", "out.vlk", "out.vlk: a layout is stated", {"--out-layout", "hald"});
  refuse("convert", "bad.cube", "out.txt", "out.txt: the name must end");
  refuse("convert", "png.cube", "out.vlk", "png.cube: not a .cube text, it holds a PNG");
  refuse("convert", "cube.vlk", "out.png", "cube.vlk: not a colour table of the engine, it holds the text of a .cube");
  refuse("pack", "in.jpg", "out.vlk", "in.jpg: the name of the picture must end in .png");
  refuse("pack", "in.png", "out.png", "out.png: the name of the colour table must end in .vlk");
  refuse("pack", "in.png", "out.vlk", "in.png: No such file");
  refuse("unpack", "cube.vlk", "out.vlk", "out.vlk: the name of the picture must end in .png");
  expectRefused({"table", "check", path("cube.vlk")}, path("cube.vlk") + ": not a colour table");
  expectRefused({"table", "neutral", path("none/out.png")}, path("none/out.png") + ": cannot be written");
  writeBytes(path("large.vlk"), Bytes(std::size_t{17} << 20));
  refuse("unpack", "large.vlk", "out.png", "large.vlk: the file is larger than 16 MiB");
}

// Whenever it comes, the file is the old or the new one, and there is no other.
TEST_F(Table, InterruptLeavesAWholeFile) {
  expectDone({"table", "neutral", path("new.vlk")});
  const Bytes old{'o', 'l', 'd'};
  for (int delay = 0; delay < 40; ++delay) {
    writeBytes(path("look.vlk"), old);
    auto expected = contents();
    const ProgramRun run = runProgram({"table", "neutral", path("look.vlk")}, {.meanwhile = [delay](pid_t program) {
                                        usleep(static_cast<useconds_t>(delay * 250));
                                        kill(program, SIGTERM);
                                      }});
    EXPECT_TRUE(run.exitCode == 0 || run.signal == SIGTERM) << run.err;
    if (run.exitCode == 0 || readBytes(path("look.vlk")) != old) {
      expected[path("look.vlk")] = expected[path("new.vlk")];
    }
    EXPECT_TRUE(contents() == expected) << "interrupted after " << delay;
  }
}

}  // namespace
}  // namespace vlvk::tool_test
