/// A directory for the files of one test of the desktop program, and what a refusal of the program must look like.
#ifndef VLVK_TESTS_TOOLS_TOOL_DIRECTORY_H
#define VLVK_TESTS_TOOLS_TOOL_DIRECTORY_H

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tests/tools/tool_support.h"

namespace vlvk::tool_test {

class ToolDirectory : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  /// The name of a file inside the directory.
  std::string path(const std::string& name) const { return (directory_ / name).string(); }

  std::map<std::filesystem::path, Bytes> contents() const;

  /// Runs the program and expects success without a word.
  static void expectDone(const std::vector<std::string>& arguments);

  /// Expects failure, one line that holds `text`, every file as it was, and memory for no more than was read.
  void expectRefused(const std::vector<std::string>& arguments, const std::string& text,
                     const Surroundings& surroundings = {}) const;

  std::filesystem::path directory_;
};

}  // namespace vlvk::tool_test

#endif
