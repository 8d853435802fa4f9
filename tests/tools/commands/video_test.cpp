/// `vlvk-makeup video` and `bench`, run as processes.
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <numeric>
#include <sstream>
#include <thread>
#include <tuple>
#include <vector>

#include <vlvk/makeup.h>
#include "tests/tools/tool_support.h"
#include "tools/engine/engine.h"
#include "tools/engine/frame_times.h"

namespace vlvk::tool_test {
namespace {

using Video = ToolDirectory;

struct Planes {
  int width;
  int height;
  Bytes y, u, v;
};

enum Order { kPlanar, kUThenV, kVThenU };

Bytes inOrder(const Planes& frame, Order order = kPlanar) {
  if (order == kPlanar) return frame.y + frame.u + frame.v;
  Bytes pairs;
  for (std::size_t i = 0; i < frame.u.size(); ++i)
    pairs = std::move(pairs) + (order == kUThenV ? Bytes{frame.u[i], frame.v[i]} : Bytes{frame.v[i], frame.u[i]});
  return frame.y + pairs;
}

// Frame `index` of a fixed video.
Planes frameOf(int width, int height, int index) {
  const int chroma = ((width + 1) / 2) * ((height + 1) / 2);
  const Bytes pattern = patternImage(width * height + 2 * chroma + 1, 1).pixels;
  const auto u = pattern.begin() + index + width * height;
  return {width, height, {pattern.begin() + index, u}, {u, u + chroma}, {u + chroma, u + 2 * chroma}};
}

Bytes y4mOf(int width, int height, int frames) {
  Bytes stream = bytesOf("YUV4MPEG2 W" + std::to_string(width) + " H" + std::to_string(height) + "\n");
  for (int i = 0; i < frames; ++i)
    stream = stream + bytesOf("FRAME\n") + inOrder(frameOf(width, height, i));
  return stream;
}

// What the library makes of a frame.
Planes beautified(Planes frame, VlvkMakeup* makeup, const VlvkMask& mask) {
  const int columns = (frame.width + 1) / 2;
  const VlvkFrame planes{sizeof planes,
                         VLVK_I420,
                         VLVK_BT601,
                         VLVK_LIMITED,
                         frame.width,
                         frame.height,
                         {frame.y.data(), frame.u.data(), frame.v.data()},
                         {frame.width, columns, columns}};
  EXPECT_EQ(vlvkMakeupProcess(makeup, &planes, &planes, &mask), VLVK_OK);
  return frame;
}

TEST_F(Video, FramesAreWhatTheLibraryMakesOfThem) {
  const Bytes values{0, 80, 255, 160, 255, 0};
  const VlvkMask mask{sizeof mask, 3, 2, 3, values.data()};
  writePng(path("mask.png"), 3, 2, [&](int x, int y, int) { return values[y * 3 + x]; });
  for (const auto& [format, order] :
       {std::pair{"", kPlanar}, {"i420", kPlanar}, {"nv12", kUThenV}, {"nv21", kVThenU}}) {
    for (const auto& [width, height] : {std::pair{1, 1}, {2, 2}, {17, 9}, {48, 33}, {33, 48}, {320, 200}}) {
      const std::string size = std::to_string(width) + "x" + std::to_string(height);
      const bool raw = *format != 0;
      Bytes source = raw ? Bytes{} : y4mOf(width, height, 0);
      Bytes expected = source;
      VlvkSettings settings;
      vlvkSettingsInit(&settings, sizeof settings);
      settings.whitening = 80;
      settings.softening = 700;
      settings.radius = 9;
      settings.contrast = VLVK_CONTRAST_ABSOLUTE;
      settings.whitenArea = VLVK_WHITEN_SKIN;
      settings.evenTone = 600;
      VlvkMakeup* makeup = nullptr;
      ASSERT_EQ(vlvkMakeupCreate(&makeup, &settings), VLVK_OK);
      for (int i = 0; i < 7; ++i) {
        const Bytes header = bytesOf(raw ? "" : i % 2 == 0 ? "FRAME\n" : "FRAME Ip XNOTE=2\n");
        source = source + header + inOrder(frameOf(width, height, i), order);
        expected = expected + header + inOrder(beautified(frameOf(width, height, i), makeup, mask), order);
      }
      vlvkMakeupDestroy(makeup);
      writeBytes(path("in"), source);
      expectDone(Arguments{"video", path("in"), path("in"), "--whiten", "80", "--soften", "700", "--radius=9",
                           "--contrast=absolute", "--whiten-area=skin", "--even-tone=600", "--mask", path("mask.png")} +
                 (raw ? Arguments{"--format", format, "--size", size} : Arguments{}));
      EXPECT_TRUE(readBytes(path("in")) == expected) << format << " " << size;
    }
  }
}

// The number is that of every machine.
TEST_F(Video, RecordsTellOfEveryFrame) {
  writeBytes(path("in.y4m"), y4mOf(67, 50, 20));
  std::vector<Arguments> ways{{"--threads", "1"}, {"--threads", "64"}};
  for (const std::string& target : tool::targetNames())
    ways.push_back({"--target", target});
  for (const Arguments& way : ways) {
    const ProgramRun run = runProgram(
        Arguments{"video", path("in.y4m"), "/dev/null", "--checksum", "-", "--frametimes", path("times")} + way);
    EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 21);
    expectHolds(run.out, "all 5cf66f8b\n");
    const Bytes times = readBytes(path("times"));
    EXPECT_EQ(std::count(times.begin(), times.end(), '\n'), 21);
  }
  const Arguments arguments{"video", path("in.y4m"), "-", "--checksum", path("sums"), "--frametimes"};
  expectRefused(arguments + Arguments{path("none/times")}, path("none/times") + ": ");
  expectRefused({"video", path("in.y4m"), path("out"), "--mask", path("no.png")}, path("no.png") + ": No such file");
  for (const std::string& taken : {directory_.string() + "/./sums", path("in.y4m")})
    expectRefused(arguments + Arguments{taken}, "the same file: " + taken);
  expectRefused(arguments + Arguments{"/dev/stdout"}, "vlvk-makeup: IN, OUT, --checksum and --frametimes: only one");
}

// What is whole goes to the output.
TEST_F(Video, BrokenStreamsKeepTheirFrames) {
  const std::pair<std::string, std::string> cases[] = {
      {"F", "inside the header of frame 4, after 1 bytes"},
      {"FRAME Ip", "inside the header of frame 4, after 8 bytes"},
      {"FRAME\n", "inside frame 4, after 0 of its 24 bytes"},
      {"FRAME\n0123456789abcdefghi", "inside frame 4, after 19 of its 24 bytes"},
      {"FRAMES\n", "frame 4 does not begin with FRAME but with 'FRAMES\\x0A'"},
      {"FRAME " + std::string(5000, 'x'), "header of frame 4 is longer"},
      {"0123456789abcdefghijklmnopq", "frame 4 does not begin with FRAME but with '0123456789abcdef'"}};
  writeBytes(path("in"), y4mOf(4, 4, 3));
  expectDone({"video", path("in"), path("whole")});
  for (const auto& [end, reason] : cases) {
    writeBytes(path("in"), y4mOf(4, 4, 3) + bytesOf(end));
    const ProgramRun run = runProgram({"video", path("in"), path("out")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.err.find("vlvk-makeup: " + path("in") + ": "), 0U) << run.err;
    expectHolds(run.err, reason);
    EXPECT_TRUE(readBytes(path("out")) == readBytes(path("whole"))) << end;
  }
  const Arguments raw{"video", path("in"), path("out"), "--format=i420", "--size=4x4"};
  writeBytes(path("in"), inOrder(frameOf(4, 4, 0)) + Bytes(23));
  expectHolds(runProgram(raw).err, "inside frame 2, after 23 of its 24 bytes");
  EXPECT_EQ(readBytes(path("out")).size(), 24U);
  writeBytes(path("in"), {});
  expectRefused(raw, "the stream is empty");
  expectRefused({"video", path("in"), path("out")}, "the stream is empty");
  writeBytes(path("in"), y4mOf(4, 4, 0));  // a video of no frames
  expectDone({"video", path("in"), path("out")});
  EXPECT_EQ(readBytes(path("out")), readBytes(path("in")));

  // 4 GiB of pixels in as many frames as are read at once cost nothing while none of them comes.
  writeBytes(path("in"), bytesOf("YUV4MPEG2 W32768 H8192\nFRAME\n12345"));
  const ProgramRun run = runProgram({"video", path("in"), path("out")});
  expectHolds(run.err, "after 5 of its 402653184 bytes");
  EXPECT_LT(run.peakMemory, std::uint64_t{300} << 20);
}

TEST_F(Video, PipesAndDevicesAreWrittenStraight) {
  writeBytes(path("in"), y4mOf(64, 40, 40));
  expectDone({"video", path("in"), path("expected")});
  const int in = open(path("in").c_str(), O_RDONLY);
  EXPECT_TRUE(bytesOf(runProgram({"video", "-", "-"}, {.in = in}).out) == readBytes(path("expected")));
  close(in);
  ASSERT_EQ(mkfifo(path("fifo").c_str(), 0600), 0);
  Bytes piped;
  runProgram({"video", path("in"), path("fifo")}, {.meanwhile = [&](pid_t) { piped = readBytes(path("fifo")); }});
  EXPECT_TRUE(piped == readBytes(path("expected")));
  expectRefused({"video", path("in"), "/dev/full"}, "/dev/full: cannot be written: No space left");
}

// Also while it waits for frames.
TEST_F(Video, InterruptIsReported) {
  ASSERT_EQ(mkfifo(path("in").c_str(), 0600), 0);
  writeBytes(path("out"), {'o', 'l', 'd'});
  const auto before = contents();
  const Bytes frames = y4mOf(8, 8, 2);
  for (const auto& [signal, out] :
       {std::pair{SIGTERM, path("out")}, {SIGINT, path("out")}, {SIGHUP, std::string("/dev/null")}}) {
    const ProgramRun run = runProgram({"video", path("in"), out}, {.meanwhile = [&, signal = signal](pid_t program) {
                                        const int pipe = open(path("in").c_str(), O_WRONLY);
                                        EXPECT_GT(write(pipe, frames.data(), frames.size()), 0);
                                        std::this_thread::sleep_for(std::chrono::milliseconds(300));
                                        kill(program, signal);
                                        waitid(P_PID, static_cast<id_t>(program), nullptr, WEXITED | WNOWAIT);
                                        close(pipe);
                                      }});
    EXPECT_EQ(run.signal, signal);
    EXPECT_EQ(run.err, "vlvk-makeup: interrupted\n");
    EXPECT_TRUE(contents() == before);
  }
}

TEST(Bench, NinetyNineOfAHundredFramesTakeNoLonger) {
  for (const auto& [frames, median, slowest] :
       {std::tuple{1, 1, 1}, {2, 1, 2}, {99, 50, 99}, {100, 50, 99}, {101, 51, 100}}) {
    std::vector<double> times(frames);
    std::iota(times.rbegin(), times.rend(), 1);
    EXPECT_EQ(tool::quantile(times, 99), slowest) << frames;
    EXPECT_EQ(tool::quantile(times, 50), median) << frames;
  }
}

TEST(Bench, HasARowForEachSizeAndTarget) {
  const Arguments rows{"--seconds", "0.001", "--size", "64x36", "--size=7x5"};
  const auto expectRows = [](const Arguments& arguments, const Arguments& targets) {
    std::istringstream out(runProgram(arguments).out);
    out.ignore(1000, '/');  // in the heads of the columns
    out.ignore(1000, '\n');
    for (const std::string expected : {"64x36", "7x5"}) {
      for (const std::string& expectedTarget : targets) {
        std::string size, target;
        double rate = 0, time = 0, slowest = 0, processor = 0;
        EXPECT_TRUE(out >> size >> target >> rate >> time >> slowest >> processor);
        EXPECT_EQ(size + target, expected + expectedTarget);
        EXPECT_NEAR(rate * time, 1000, 1 + 0.0006 * rate);  // both are rounded
        EXPECT_GT(processor, 0);
      }
    }
    EXPECT_FALSE(out >> std::ws && !out.eof());
  };
  expectRows(Arguments{"bench"} + rows, tool::targetNames());
  expectRows(Arguments{"bench", "--target", "scalar", "--threads", "3"} + rows, {"scalar"});
  expectRows(Arguments{"--target", "scalar", "bench"} + rows, {"scalar"});
  const auto begin = std::chrono::steady_clock::now();
  expectRows(Arguments{"--target", "scalar", "bench", "--pace", "40"} + rows, {"scalar"});
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(2 * 3 * 40)) << "three frames a row";
}

}  // namespace
}  // namespace vlvk::tool_test
