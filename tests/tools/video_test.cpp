/// `vlvk-makeup video`, run as a process.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/IBeautyResourceLoader.h>
#include "tests/tools/tool_directory.h"
#include "tools/options/target.h"

namespace vlvk::tool_test {
namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;
using Video = ToolDirectory;

Bytes operator+(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

Bytes bytesOf(const std::string& text) {
  return {text.begin(), text.end()};
}

int chromaCount(int width, int height) {
  return ((width + 1) / 2) * ((height + 1) / 2);
}

// Frame `index` of a fixed video, planar.
Bytes frameOf(int width, int height, int index) {
  const int bytes = width * height + 2 * chromaCount(width, height);
  const Bytes pattern = patternImage(bytes + 1, 1).pixels;
  return {pattern.begin() + index, pattern.begin() + index + bytes};
}

Bytes y4mOf(int width, int height, int frames) {
  Bytes stream = bytesOf("YUV4MPEG2 W" + std::to_string(width) + " H" + std::to_string(height) + "\n");
  for (int i = 0; i < frames; ++i)
    stream = stream + bytesOf("FRAME\n") + frameOf(width, height, i);
  return stream;
}

enum Order { kPlanar, kUThenV, kVThenU };

// From planar to another order, or back.
Bytes reordered(const Bytes& frame, int width, int height, Order order, bool back) {
  Bytes result = frame;
  const int count = order == kPlanar ? 0 : chromaCount(width, height);
  for (int i = 0; i < 2 * count; ++i) {
    const int plane = i % 2 == (order == kVThenU ? 1 : 0) ? 0 : 1;
    const int planar = width * height + plane * count + i / 2;
    const int paired = width * height + i;
    result[back ? planar : paired] = frame[back ? paired : planar];
  }
  return result;
}

struct NeutralLoader final : IBeautyResourceLoader {
  int getResFromName(const char* /*name*/, unsigned char* /*dst*/) override { return 0; }
};

// What the library makes of a planar frame with its last column and row repeated.
Bytes beautified(const Bytes& frame, int width, int height, Order order, CFastEdgePreserved* filter) {
  const int columns = width + width % 2;
  const int rows = height + height % 2;
  Bytes luma(static_cast<std::size_t>(columns) * rows);
  for (int y = 0; y < rows; ++y) {
    for (int x = 0; x < columns; ++x)
      luma[y * columns + x] = frame[std::min(y, height - 1) * width + std::min(x, width - 1)];
  }
  const Order pairs = order == kVThenU ? kVThenU : kUThenV;
  Bytes result = reordered(frame, width, height, pairs, false);
  std::uint8_t* chroma = result.data() + static_cast<std::ptrdiff_t>(width) * height;
  EXPECT_EQ(filter->processVideo(luma.data(), columns, chroma, columns, columns, rows, nullptr, 0, pairs == kVThenU),
            0);
  for (int i = 0; i < width * height; ++i)
    result[i] = luma[i / width * columns + i % width];
  return reordered(result, width, height, pairs, true);
}

TEST_F(Video, FramesAreWhatTheLibraryMakesOfThem) {
  struct Format {
    const char* name;
    Order order;
  };
  for (const Format& format : {Format{"", kPlanar}, {"i420", kPlanar}, {"nv12", kUThenV}, {"nv21", kVThenU}}) {
    for (const auto& [width, height] : {std::pair{1, 1}, {2, 2}, {17, 9}, {48, 33}, {33, 48}, {320, 200}}) {
      SCOPED_TRACE(testing::Message() << format.name << " " << width << " x " << height);
      const std::string size = std::to_string(width) + "x" + std::to_string(height);
      const bool raw = *format.name != 0;
      Bytes source = bytesOf(raw ? ""
                                 : "YUV4MPEG2 H" + std::to_string(height) + " F30000:1001 Ip A4:3  Yx C420paldv W" +
                                       std::to_string(width) + " XCOLORRANGE=LIMITED X\n");
      Bytes expected = source;
      NeutralLoader loader;
      CFastEdgePreserved filter(3, &loader);
      filter.put_colorAdjustIntensity(0);
      filter.put_whitenIntensity(80);
      filter.put_softenSkinIntensity(700);
      filter.radius = 9;
      for (int i = 0; i < 7; ++i) {
        const Bytes header = bytesOf(raw ? "" : i % 2 == 0 ? "FRAME\n" : "FRAME Ip XNOTE=2\n");
        const Bytes frame = frameOf(width, height, i);
        source = source + header + reordered(frame, width, height, format.order, false);
        expected =
            expected + header +
            reordered(beautified(frame, width, height, format.order, &filter), width, height, format.order, false);
      }
      writeBytes(path("in"), source);
      Arguments arguments{"video", path("in"), path("in"), "--whiten", "80", "--soften", "700", "--radius=9"};
      if (raw) arguments.insert(arguments.end(), {"--format", format.name, "--size", size});
      expectDone(arguments);
      EXPECT_TRUE(readBytes(path("in")) == expected);
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
    Arguments arguments{"video", path("in.y4m"), "/dev/null", "--checksum", "-", "--frametimes", path("times")};
    arguments.insert(arguments.end(), way.begin(), way.end());
    const ProgramRun run = runProgram(arguments);
    EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 21);
    EXPECT_NE(run.out.find("all efc74102\n"), std::string::npos) << run.out;
    const Bytes times = readBytes(path("times"));
    EXPECT_EQ(std::count(times.begin(), times.end(), '\n'), 21);
  }
  Arguments arguments{"video", path("in.y4m"), "-", "--checksum", path("sums"), "--frametimes", path("none/times")};
  expectRefused(arguments, path("none/times") + ": ");
  for (const std::string& taken : {directory_.string() + "/./sums", path("in.y4m")}) {
    arguments.back() = taken;
    expectRefused(arguments, "the same file: " + taken);
  }
  arguments.back() = "/dev/stdout";
  expectRefused(arguments, "only one of them");
}

TEST_F(Video, UnusableStreamsAreRefused) {
  struct Case {
    std::string stream;
    std::string reason;
  };
  const std::string start = "YUV4MPEG2 ";
  const Case cases[] = {{"", "the stream is empty"},
                        {"YUV4MPEG", "--format"},
                        {"YUV4MPEG22 W2 H2\n", "--format"},
                        {"\n", "--format"},
                        {start + "W2 H2", "ends inside the Y4M header"},
                        {start + "W2 H2 X" + std::string(5000, 'x') + "\n", "longer than 4096"},
                        {start + "H2\n", "no width"},
                        {start + "W2\n", "no height"},
                        {start + "W0 H2\n", "width: W0"},
                        {start + "W2 H-2\n", "height: H-2"},
                        {start + "W2x H2\n", "width: W2x"},
                        {start + std::string("W2\0 H2\n", 7), "width: W2"},
                        {start + "W4294967298 H2\n", "width: W4294967298"},
                        {start + "W32769 H2\n", "too large"},
                        {start + "W32768 H32768\n", "too large"},
                        {start + "W2 H2 C422\n", "C422"},
                        {start + "W2 H2 C420p10\n", "C420p10"},
                        {start + "W2 H2 Cmono\n", "Cmono"},
                        {start + "W2 H2 C444alpha\n", "C444alpha"},
                        {start + "W2 H2 XYSCSS=411\n", "XYSCSS=411"},
                        {start + "W2 H2 XCOLORRANGE=FULL\n", "out_range=tv"}};
  for (const Case& wrong : cases) {
    writeBytes(path("in"), bytesOf(wrong.stream));
    expectRefused({"video", path("in"), path("out")}, wrong.reason);
  }
  writeBytes(path("in"), {});
  for (const Arguments& options : {Arguments{"--format", "nv12", "--size", "2x2"},
                                   {"--format", "nv12"},
                                   {"--size", "2x2"},
                                   {"--format", "yuy2", "--size", "2x2"},
                                   {"--format", "nv12", "--size", "0x2"}}) {
    Arguments arguments{"video", path("in"), path("out")};
    arguments.insert(arguments.end(), options.begin(), options.end());
    expectRefused(arguments, path("in") + ": ");
  }
  writeBytes(path("in"), bytesOf(start + "W2 H2\n"));  // a video of no frames
  expectDone({"video", path("in"), path("out")});
  EXPECT_EQ(readBytes(path("out")), readBytes(path("in")));
}

// What is whole goes to the output.
TEST_F(Video, BrokenStreamsKeepTheirFrames) {
  struct Case {
    std::string end;
    std::string reason;
  };
  const Case cases[] = {
      {"F", "inside the header of frame 4, after 1 bytes"},
      {"FRAME Ip", "inside the header of frame 4, after 8 bytes"},
      {"FRAME\n", "inside frame 4, after 0 of its 24 bytes"},
      {"FRAME\n0123456789abcdefghi", "inside frame 4, after 19 of its 24 bytes"},
      {"FRAMES\n", "frame 4 does not begin with FRAME but with 'FRAMES\\x0A'"},
      {"FRAME " + std::string(5000, 'x'), "header of frame 4 is longer"},
      {"0123456789abcdefghijklmnopq", "frame 4 does not begin with FRAME but with '0123456789abcdef'"}};
  writeBytes(path("in"), y4mOf(4, 4, 3));
  expectDone({"video", path("in"), path("whole")});
  for (const Case& broken : cases) {
    writeBytes(path("in"), y4mOf(4, 4, 3) + bytesOf(broken.end));
    const ProgramRun run = runProgram({"video", path("in"), path("out")});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find(path("in") + ": "), std::string::npos) << run.err;
    EXPECT_NE(run.err.find(broken.reason), std::string::npos) << run.err;
    EXPECT_TRUE(readBytes(path("out")) == readBytes(path("whole"))) << broken.end;
  }
  const Arguments raw{"video", path("in"), path("out"), "--format=i420", "--size=4x4"};
  writeBytes(path("in"), frameOf(4, 4, 0) + Bytes(23));
  EXPECT_NE(runProgram(raw).err.find("inside frame 2, after 23 of its 24 bytes"), std::string::npos);
  EXPECT_EQ(readBytes(path("out")).size(), 24U);

  // 4 GiB of pixels in as many frames as are read at once cost nothing while none of them comes.
  writeBytes(path("in"), bytesOf("YUV4MPEG2 W32768 H8192\nFRAME\n12345"));
  const ProgramRun run = runProgram({"video", path("in"), path("out")});
  EXPECT_NE(run.err.find("after 5 of its 402653184 bytes"), std::string::npos) << run.err;
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
  const ProgramRun run =
      runProgram({"video", path("in"), path("fifo")}, {.meanwhile = [&](pid_t) { piped = readBytes(path("fifo")); }});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_TRUE(piped == readBytes(path("expected")));

  int pipe[2] = {};
  ASSERT_EQ(::pipe(pipe), 0);
  close(pipe[0]);  // nobody reads
  expectRefused({"video", path("in"), "-"}, "standard output: cannot be written: Broken pipe", {.out = pipe[1]});
  close(pipe[1]);
  expectRefused({"video", path("in"), "/dev/full"}, "/dev/full: cannot be written: No space left");
  expectRefused({"video", path("in"), path("expected")}, path("expected") + ": ", {.fileLimit = 20000});
}

// Also while it waits for frames.
TEST_F(Video, InterruptIsTold) {
  ASSERT_EQ(mkfifo(path("in").c_str(), 0600), 0);
  writeBytes(path("out"), {'o', 'l', 'd'});
  const auto before = contents();
  const Bytes frames = y4mOf(8, 8, 2);
  for (const std::string& out : {path("out"), std::string("/dev/null")}) {
    const ProgramRun run = runProgram({"video", path("in"), out}, {.meanwhile = [&](pid_t program) {
                                        const int pipe = open(path("in").c_str(), O_WRONLY);
                                        EXPECT_GT(write(pipe, frames.data(), frames.size()), 0);
                                        std::this_thread::sleep_for(std::chrono::milliseconds(300));
                                        kill(program, SIGTERM);
                                        waitid(P_PID, static_cast<id_t>(program), nullptr, WEXITED | WNOWAIT);
                                        close(pipe);
                                      }});
    EXPECT_EQ(run.signal, SIGTERM);
    EXPECT_EQ(run.err, "vlvk-makeup: interrupted\n");
    EXPECT_TRUE(contents() == before);
  }
}

// Frames come until the line is there, on a busy machine too; where there is to be none, for longer than it takes.
TEST_F(Video, TerminalShowsProgress) {
  ASSERT_EQ(mkfifo(path("in").c_str(), 0600), 0);
  const Bytes header = y4mOf(8, 8, 0);
  const Bytes frame = bytesOf("FRAME\n") + frameOf(8, 8, 0);
  for (const bool quiet : {false, true}) {
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_EQ(grantpt(terminal) + unlockpt(terminal), 0);
    const int err = open(ptsname(terminal), O_RDWR | O_NOCTTY);
    Arguments arguments{"video", path("in"), "/dev/null"};
    if (quiet) arguments.emplace_back("--quiet");
    int count = 0;
    runProgram(arguments, {.err = err, .meanwhile = [&](pid_t) {
                             const int pipe = open(path("in").c_str(), O_WRONLY);
                             EXPECT_GT(write(pipe, header.data(), header.size()), 0);
                             pollfd line{terminal, POLLIN, 0};
                             for (; count < (quiet ? 10 : 1000) && poll(&line, 1, 50) == 0; ++count)
                               EXPECT_GT(write(pipe, frame.data(), frame.size()), 0);
                             close(pipe);
                           }});
    EXPECT_EQ(write(err, "end", 3), 3);
    std::string shown;  // arrives in pieces
    for (char c = 0; !shown.ends_with("end") && read(terminal, &c, 1) == 1;)
      shown += c;
    EXPECT_EQ(shown.find("\r" + std::to_string(count) + " frames, ") != std::string::npos && shown.ends_with("\r\nend"),
              !quiet)
        << shown;
    EXPECT_EQ(shown == "end", quiet) << shown;
    close(err);
    close(terminal);
  }
}

}  // namespace
}  // namespace vlvk::tool_test
