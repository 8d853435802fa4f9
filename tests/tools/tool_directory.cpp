/// See tool_directory.h.
#include "tests/tools/tool_directory.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace vlvk::tool_test {

namespace fs = std::filesystem;

void ToolDirectory::SetUp() {
  std::string name = (fs::temp_directory_path() / "vlvk-test-XXXXXX").string();
  ASSERT_NE(mkdtemp(name.data()), nullptr);
  directory_ = name;
}

void ToolDirectory::TearDown() {
  fs::remove_all(directory_);
}

std::map<fs::path, Bytes> ToolDirectory::contents() const {
  std::map<fs::path, Bytes> files;
  for (const auto& entry : fs::directory_iterator(directory_)) {
    files[entry.path()] = entry.is_regular_file() ? readBytes(entry.path()) : Bytes{};
  }
  return files;
}

void ToolDirectory::expectDone(const std::vector<std::string>& arguments) {
  const ProgramRun run = runProgram(arguments);
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out + run.err, "");
}

void ToolDirectory::expectRefused(const std::vector<std::string>& arguments, const std::string& text,
                                  const Surroundings& surroundings) const {
  const auto before = contents();
  const ProgramRun run = runProgram(arguments, surroundings);
  EXPECT_GT(run.exitCode, 0);
  EXPECT_EQ(run.out, "");
  EXPECT_LT(run.peakMemory, std::uint64_t{600} << 20);  // a sanitizer's own included; less than the largest picture has
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
  EXPECT_TRUE(run.err.ends_with('\n')) << run.err;
  EXPECT_NE(run.err.find(text), std::string::npos) << text << " is not in: " << run.err;
  EXPECT_TRUE(contents() == before) << "files changed after: " << run.err;
}

}  // namespace vlvk::tool_test
