/// Files that are written whole or not at all.
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "tests/tools/tool_support.h"
#include "tools/io/output_file.h"

namespace vlvk::tool_test {
namespace {

namespace fs = std::filesystem;

class OutputFile : public ToolDirectory {
 protected:
  void expectRefusal(const std::string& name, std::size_t size = 8) const {
    const auto before = contents();
    const std::string reason = reasonOf([&] { tool::writeFile(path(name), Bytes(size)); });
    EXPECT_EQ(reason.find(path(name) + ": cannot be written: "), 0U) << reason;
    EXPECT_TRUE(contents() == before) << reason;
  }
};

TEST_F(OutputFile, WhatCannotBeWrittenIsRefused) {
  writeBytes(path("old"), {'o', 'l', 'd'});
  fs::create_directory(path("directory"));
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
  for (const std::string name : {"none/out", "directory", "pipe", "old/out"}) {
    expectRefusal(name);
    EXPECT_NE(reasonOf([&] { tool::requireWritable(path(name)); }), "none") << name;
  }
  if (geteuid() == 0) return;  // to whom nothing is read-only
  fs::permissions(path("old"), fs::perms::owner_read);
  expectRefusal("old");
  fs::permissions(directory_, fs::perms::owner_read | fs::perms::owner_exec);
  expectRefusal("new");
  fs::permissions(directory_, fs::perms::owner_all);
}

TEST_F(OutputFile, FullDiskLeavesNothing) {
  writeBytes(path("old"), {'o', 'l', 'd'});
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit limit{512, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &limit);
  for (const std::string name : {"old", "new"})
    expectRefusal(name, 600);
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
}

TEST_F(OutputFile, PermissionsAndLinksStay) {
  writeBytes(path("target"), {});
  const auto mode = fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read;
  fs::permissions(path("target"), mode);
  fs::create_symlink("target", path("link"));
  fs::create_symlink("later", path("ahead"));
  for (const std::string name : {"link", "ahead"}) {
    tool::writeFile(path(name), bytesOf(name));
    EXPECT_TRUE(fs::is_symlink(path(name)));
  }
  EXPECT_EQ(readBytes(path("target")), bytesOf("link"));
  EXPECT_EQ(fs::status(path("target")).permissions(), mode);
  EXPECT_EQ(readBytes(path("later")), bytesOf("ahead"));
}

}  // namespace
}  // namespace vlvk::tool_test
