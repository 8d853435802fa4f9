/// The line on the terminal.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "tools/video/progress.h"

namespace vlvk::tool_test {
namespace {

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
