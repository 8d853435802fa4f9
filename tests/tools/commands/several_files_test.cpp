/// `--out-dir` of `photo` and `video`, run as processes, and what keeps several pictures within memory.
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <limits>
#include <set>
#include <thread>

#include "tests/tools/tool_support.h"
#include "tools/commands/memory_budget.h"
#include "tools/picture/picture_file.h"
#include "tools/picture/stated_size.h"

namespace vlvk::tool_test {
namespace {

namespace fs = std::filesystem;

class SeveralFiles : public ToolDirectory {
 protected:
  // What `command` makes of `name` alone.
  Bytes alone(const std::string& command, const std::string& name, const Arguments& options = {}) const {
    const std::string out = path("alone" + fs::path(name).extension().string());
    runProgram(Arguments{command, path(name), out} + options);
    return readBytes(out);
  }

  std::set<std::string> namesIn(const std::string& directory) const {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(path(directory)))
      names.insert(entry.path().filename().string());
    return names;
  }

  // Expects exit code 1 and, in any order, a line for each of `reasons`, which begin with a name.
  void expectFailures(const Arguments& arguments, const Arguments& reasons) const {
    const ProgramRun run = runProgram(arguments);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(static_cast<std::size_t>(std::count(run.err.begin(), run.err.end(), '\n')), reasons.size()) << run.err;
    for (const std::string& reason : reasons)
      expectHolds(run.err, "vlvk-makeup: " + path(reason));
  }
};

TEST_F(SeveralFiles, EachPictureIsAsAloneWhateverBecomesOfOthers) {
  Arguments command{"photo"};
  for (const std::string name : {"a.png", "b.PNG", "c.png", "d.png", "e.png"}) {
    writeRgba(path(name), patternImage(90 + name[0], 57));
    command.push_back(path(name));
  }
  writeBytes(path("f.jpg"), corpusPicture("progressive_jpg"));
  writeBytes(path("text.png"), bytesOf("hello\n"));
  writePng(path("mask.png"), 3, 2, [](int x, int y, int) { return x * 100 + y * 50; });
  const Arguments options{"--radius=16", "--compare", "--mask", path("mask.png")};
  for (const std::string name : {"text.png", "missing.png", "picture.gif", "f.jpg"})
    command.push_back(path(name));
  expectFailures(command + options + Arguments{"--out-dir", path("new/folder")},
                 {"text.png: not a PNG", "missing.png: No such file", "picture.gif: unknown kind"});
  EXPECT_EQ(namesIn("new/folder"), (std::set<std::string>{"a.png", "b.PNG", "c.png", "d.png", "e.png", "f.jpg"}));
  for (const std::string& name : namesIn("new/folder"))
    EXPECT_TRUE(readBytes(path("new/folder/" + name)) == alone("photo", name, options)) << name;
}

TEST_F(SeveralFiles, VideosFollowEachOther) {
  const std::string frame = "FRAME\n123456";
  writeBytes(path("a.y4m"), bytesOf("YUV4MPEG2 W2 H2\n" + frame + frame));
  writeBytes(path("cut.y4m"), bytesOf("YUV4MPEG2 W2 H2\n" + frame + "FRAME\n12"));
  writeBytes(path("b.y4m"), bytesOf("YUV4MPEG2 W2 H2\n" + frame));
  expectFailures({"video", path("a.y4m"), path("cut.y4m"), path("none"), path("b.y4m"), "--out-dir", path("out")},
                 {"cut.y4m: the stream ends", "none: No such file"});
  EXPECT_EQ(namesIn("out"), (std::set<std::string>{"a.y4m", "b.y4m", "cut.y4m"}));  // the whole frames of a cut one
  for (const std::string& name : namesIn("out"))
    EXPECT_TRUE(readBytes(path("out/" + name)) == alone("video", name)) << name;
}

TEST_F(SeveralFiles, ResultsThatWouldMeetAreRefusedBeforeAnythingIsDone) {
  for (const std::string name : {"a.png", "b.png"})
    writeRgba(path(name), patternImage(8, 8));
  fs::create_directory(path("other"));
  fs::copy_file(path("a.png"), path("other/a.png"));
  fs::create_symlink(directory_, path("other/link"));
  const Arguments photos{"photo", path("b.png"), path("a.png")};
  expectRefused(photos + Arguments{path("other/a.png"), "--out-dir", path("new")}, "would both become");
  expectRefused({"photo", path("a.png"), path("other")}, path("other") + ": a folder, which needs --out-dir");
  expectRefused({"photo", path("x.heic"), path("x.jpg"), "--out-dir", path("new")}, "would both become");
  for (const std::string out : {"", "other/..", "other/link"})
    expectRefused(photos + Arguments{"--out-dir", path(out)}, "is to be read and would be replaced");
  expectRefused(photos + Arguments{"--out-dir", path("b.png")}, path("b.png") + ": cannot be made: Not a directory");
  expectRefused(photos + Arguments{"--out-dir", path("new"), "--mask", path("none.png")}, path("none.png") + ": ");
}

TEST_F(SeveralFiles, InterruptLeavesWholeFiles) {
  Arguments command{"photo"};
  for (int i = 0; i < 8; ++i) {
    command.push_back(path(std::to_string(i) + ".png"));
    writePng(command.back(), 300, 200, [](int x, int y, int c) { return (x * y + 50 * c) % 256; });
  }
  const Bytes whole = alone("photo", "0.png");
  for (int delay = 0; delay < 40; ++delay) {
    const ProgramRun run = runProgram(command + Arguments{"--out-dir", path("out")}, {.meanwhile = [=](pid_t program) {
                                        usleep(static_cast<useconds_t>(delay * 2000));
                                        kill(program, SIGTERM);
                                      }});
    EXPECT_TRUE(run.signal == SIGTERM || run.exitCode == 0) << run.err;
    EXPECT_EQ(run.err, run.signal == SIGTERM && !run.err.empty() ? "vlvk-makeup: interrupted\n" : "");
    if (!fs::exists(path("out"))) continue;
    for (const std::string& name : namesIn("out"))
      EXPECT_TRUE(!name.starts_with('.') && readBytes(path("out/" + name)) == whole) << name << " after " << delay;
    fs::remove_all(path("out"));
  }
}

TEST(MemoryBudget, WhatIsLargerThanAllOfItHasItAlone) {
  tool::MemoryBudget budget;
  std::atomic<int> inUse = 0;
  std::atomic<int> most = 0;
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([&] {
        const tool::MemoryBudget::Share share(&budget, std::numeric_limits<std::uint64_t>::max());
        most = std::max(most.load(), ++inUse);
        usleep(5000);
        --inUse;
      });
    }
  }
  EXPECT_EQ(most, 1);
}

TEST_F(SeveralFiles, StatedSizeIsThatOfThePixels) {
  int known = 0;
  for (const auto& entry : fs::directory_iterator(fs::path(VLVK_CORPUS) / "picture")) {
    const Bytes file = readBytes(entry.path());
    const auto kind = tool::kindOfContent(file);
    std::uint64_t pixels = 0;
    reasonOf([&] {
      if (!kind) return;
      const tool::Picture picture = tool::decodePicture(*kind, file);
      pixels = static_cast<std::uint64_t>(picture.width) * static_cast<std::uint64_t>(picture.height);
    });
    if (pixels == 0) continue;
    const std::uint64_t stated = tool::statedPixels(entry.path()).value_or(0);
    EXPECT_GE(stated, pixels) << entry.path();
    EXPECT_LE(stated, kind == tool::PictureKind::kHeif ? 2 * pixels : pixels) << entry.path();  // coded in whole blocks
    ++known;
  }
  EXPECT_GT(known, 4);
  EXPECT_EQ(tool::statedPixels(path("none.png")), std::nullopt);
}

}  // namespace
}  // namespace vlvk::tool_test
