/// Headers of Y4M streams, and the line on the terminal.
#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "tests/tools/tool_support.h"
#include "tools/video/progress.h"
#include "tools/video/y4m.h"

namespace vlvk::tool_test {
namespace {

TEST(Y4m, TagsOfAnyOrderAreRead) {
  const auto [size, range] =
      tool::parseY4mHeader("YUV4MPEG2 H32 F30000:1001 Ip A4:3  Yx C420paldv XYSCSS=411 W17 XCOLORRANGE=LIMITED X\n");
  EXPECT_EQ(size.width, 17);
  EXPECT_EQ(size.height, 32);
  EXPECT_EQ(range, VLVK_LIMITED);
  EXPECT_EQ(tool::parseY4mHeader("YUV4MPEG2 W2 H2 XCOLORRANGE=FULL\n").range, VLVK_FULL);
  EXPECT_TRUE(tool::isY4mFrameHeader("FRAME Ip\n"));
  EXPECT_FALSE(tool::isY4mFrameHeader("FRAMES\n"));
}

TEST(Y4m, UnusableHeadersAreRefused) {
  const std::string start = "YUV4MPEG2 ";
  const std::pair<std::string, Arguments> refusals[] = {
      {"--format", {"YUV4MPEG", "YUV4MPEG22 W2 H2\n", "\n"}},
      {"ends inside the Y4M header", {start + "W2 H2"}},
      {"longer than 4096", {start + std::string(5000, 'x')}},
      {"no width", {start + "H2\n"}},
      {"no height", {start + "W2\n"}},
      {"width: W2", {start + std::string("W2\0 H2\n", 7)}},
      {"too large", {start + "W32769 H2\n", start + "W32768 H32768\n"}},
      {"frames of C420", {start + std::string("W2 H2 C420\0x\n", 13)}}};
  const auto refusal = [](const std::string& header) { return reasonOf([&] { tool::parseY4mHeader(header); }); };
  for (const auto& [reason, headers] : refusals) {
    for (const std::string& header : headers)
      expectHolds(refusal(header), reason);
  }
  for (const std::string tag : {"C422", "C420p10", "Cmono", "XYSCSS=411"})
    expectHolds(refusal(start + "W2 H2 " + tag + "\n"), tag);
  for (const std::string width : {"W0", "W2x", "W4294967298"})
    expectHolds(refusal(start + width + " H2\n"), "width: " + width);
  expectHolds(refusal(start + "W2 H-2\n"), "height: H-2");
}

TEST(Progress, IsShownOnATerminalUnlessQuiet) {
  const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_EQ(grantpt(terminal) + unlockpt(terminal), 0);
  const int before = dup(STDERR_FILENO);
  const int end = open(ptsname(terminal), O_RDWR | O_NOCTTY);
  dup2(end, STDERR_FILENO);
  for (const bool quiet : {true, false}) {
    tool::Progress progress(quiet, 3);
    progress.frameDone();
    std::this_thread::sleep_for(std::chrono::milliseconds(250));
    progress.frameDone();
  }
  dup2(before, STDERR_FILENO);
  EXPECT_EQ(write(end, "end", 3), 3);
  std::string text;  // arrives in pieces
  for (char c = 0; !text.ends_with("end") && read(terminal, &c, 1) == 1;)
    text += c;
  EXPECT_EQ(text.find("\r2 of 3 frames, "), 0U) << text;
  EXPECT_EQ(text.rfind("\r2 of 3 frames, "), text.find('\r', 1)) << text;
  EXPECT_TRUE(text.ends_with(" left\r\nend")) << text;
  for (const int descriptor : {before, end, terminal})
    close(descriptor);
}

}  // namespace
}  // namespace vlvk::tool_test
