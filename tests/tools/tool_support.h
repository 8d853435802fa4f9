/// What tests of the desktop program need: running it in a directory of its own, what a refusal must look like, and
/// making and reading picture files without its own code.
#ifndef VLVK_TESTS_TOOLS_TOOL_SUPPORT_H
#define VLVK_TESTS_TOOLS_TOOL_SUPPORT_H

#include <gtest/gtest.h>
#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tools/io/messages.h"

namespace vlvk::tool_test {

using Bytes = std::vector<std::uint8_t>;
using Arguments = std::vector<std::string>;

template <class T>
std::vector<T> operator+(std::vector<T> left, const std::vector<T>& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

/// A run of the program.
struct ProgramRun {
  int exitCode;              ///< -1: killed by a signal
  int signal;                ///< which one; 0: none
  std::uint64_t peakMemory;  ///< bytes that it had in use at once
  std::string out;
  std::string err;
};

/// What a run meets with.
struct Surroundings {
  int out = -1;                                    ///< descriptor of its standard output; -1: into ProgramRun::out
  int in = -1;                                     ///< of its standard input; -1: that of the test
  std::function<void(pid_t)> meanwhile = nullptr;  ///< called with the process while it runs
};

ProgramRun runProgram(const Arguments& arguments, const Surroundings& surroundings = {});

/// The reason why `work` of the program's code fails.
template <typename Work>
std::string reasonOf(const Work& work) {
  try {
    work();
  } catch (const tool::Error& error) {
    return error.what();
  }
  return "none";
}

/// An RGBA picture.
struct Image {
  int width = 0;
  int height = 0;
  Bytes pixels;

  const std::uint8_t* at(int x, int y) const { return &pixels[(static_cast<std::size_t>(y) * width + x) * 4]; }
};

/// A picture whose bytes, alpha included, follow a fixed irregular pattern.
Image patternImage(int width, int height);

/// Expects that `text` has `part` in it.
void expectHolds(const std::string& text, const std::string& part);

Bytes bytesOf(const std::string& text);
Bytes readBytes(const std::filesystem::path& path);
void writeBytes(const std::filesystem::path& path, const Bytes& bytes);

/// A file of the corpus of pictures.
Bytes corpusPicture(const std::string& name);

Image readPng(const std::filesystem::path& path);

void writeRgba(const std::filesystem::path& path, const Image& image);
/// Without transparency.
void writePng(const std::filesystem::path& path, int width, int height,
              const std::function<int(int x, int y, int channel)>& sample);

class ToolDirectory : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  /// The name of a file inside the directory.
  std::string path(const std::string& name) const { return (directory_ / name).string(); }

  std::map<std::filesystem::path, Bytes> contents() const;

  /// Runs the program and expects success without a word.
  static void expectDone(const Arguments& arguments);

  /// Expects failure, one line that holds `text`, every file as it was, and memory for no more than was read.
  void expectRefused(const Arguments& arguments, const std::string& text, const Surroundings& surroundings = {}) const;

  std::filesystem::path directory_;
};

}  // namespace vlvk::tool_test

#endif
