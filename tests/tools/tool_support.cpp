/// See tool_support.h. A picture that cannot be made ends the test program.
#include "tests/tools/tool_support.h"

#include <png.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace vlvk::tool_test {
namespace {

[[noreturn]] void becomeProgram(const Arguments& arguments) {
  std::vector<char*> words{const_cast<char*>(VLVK_TOOL_PROGRAM)};  // NOLINT(cppcoreguidelines-pro-type-const-cast)
  for (const std::string& word : arguments)
    words.push_back(const_cast<char*>(word.c_str()));  // NOLINT
  words.push_back(nullptr);
  for (const int signal : {SIGHUP, SIGINT})  // which nohup and shells may have ignored, and the program would, too
    std::signal(signal, SIG_DFL);
  execv(VLVK_TOOL_PROGRAM, words.data());
  _exit(126);
}

std::string textOf(std::FILE* file) {
  const Bytes bytes = readBytes("/proc/self/fd/" + std::to_string(fileno(file)));  // from its start
  std::fclose(file);
  return {bytes.begin(), bytes.end()};
}

}  // namespace

ProgramRun runProgram(const Arguments& arguments, const Surroundings& surroundings) {
  std::FILE* out = std::tmpfile();
  std::FILE* err = std::tmpfile();
  const pid_t child = fork();
  if (child == 0) {
    if (surroundings.in >= 0) dup2(surroundings.in, STDIN_FILENO);
    dup2(surroundings.out >= 0 ? surroundings.out : fileno(out), STDOUT_FILENO);
    dup2(fileno(err), STDERR_FILENO);
    becomeProgram(arguments);
  }
  if (child > 0 && surroundings.meanwhile) surroundings.meanwhile(child);
  int status = 0;
  rusage usage{};
  if (child < 0 || wait4(child, &status, 0, &usage) != child) {
    throw std::runtime_error("the program cannot be started");
  }
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, WIFSIGNALED(status) ? WTERMSIG(status) : 0,
          static_cast<std::uint64_t>(usage.ru_maxrss) * 1024, textOf(out), textOf(err)};
}

Image patternImage(int width, int height) {
  Image image{width, height, Bytes(static_cast<std::size_t>(width) * height * 4)};
  std::uint32_t state = 12345;
  for (std::uint8_t& byte : image.pixels) {
    state = state * 1664525 + 1013904223;
    byte = static_cast<std::uint8_t>(state >> 24);
  }
  return image;
}

void expectHolds(const std::string& text, const std::string& part) {
  EXPECT_NE(text.find(part), std::string::npos) << part << " is not in: " << text;
}

Bytes bytesOf(const std::string& text) {
  return {text.begin(), text.end()};
}

Bytes readBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void writeBytes(const std::filesystem::path& path, const Bytes& bytes) {
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
}

Bytes corpusPicture(const std::string& name) {
  return readBytes(std::filesystem::path(VLVK_CORPUS) / "picture" / name);
}

Image readPng(const std::filesystem::path& path) {
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  if (png_image_begin_read_from_file(&png, path.c_str()) == 0) throw std::runtime_error(png.message);
  png.format = PNG_FORMAT_RGBA;
  Image image{static_cast<int>(png.width), static_cast<int>(png.height), Bytes(PNG_IMAGE_SIZE(png))};
  if (png_image_finish_read(&png, nullptr, image.pixels.data(), 0, nullptr) == 0) throw std::runtime_error(png.message);
  return image;
}

void writeRgba(const std::filesystem::path& path, const Image& image) {
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  png.width = static_cast<png_uint_32>(image.width);
  png.height = static_cast<png_uint_32>(image.height);
  png.format = PNG_FORMAT_RGBA;
  if (png_image_write_to_file(&png, path.c_str(), 0, image.pixels.data(), 0, nullptr) == 0) {
    throw std::runtime_error(png.message);
  }
}

void writePng(const std::filesystem::path& path, int width, int height,
              const std::function<int(int x, int y, int channel)>& sample) {
  Image image{width, height, {}};
  for (int i = 0; i < width * height * 4; ++i)
    image.pixels.push_back(static_cast<std::uint8_t>(i % 4 == 3 ? 255 : sample(i / 4 % width, i / 4 / width, i % 4)));
  writeRgba(path, image);
}

void ToolDirectory::SetUp() {
  std::string name = (std::filesystem::temp_directory_path() / "vlvk-test-XXXXXX").string();
  ASSERT_NE(mkdtemp(name.data()), nullptr);
  directory_ = name;
}

void ToolDirectory::TearDown() {
  std::filesystem::remove_all(directory_);
}

std::map<std::filesystem::path, Bytes> ToolDirectory::contents() const {
  std::map<std::filesystem::path, Bytes> files;
  for (const auto& entry : std::filesystem::directory_iterator(directory_)) {
    files[entry.path()] = entry.is_regular_file() ? readBytes(entry.path()) : Bytes{};
  }
  return files;
}

void ToolDirectory::expectDone(const Arguments& arguments) {
  const ProgramRun run = runProgram(arguments);
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out + run.err, "");
}

void ToolDirectory::expectRefused(const Arguments& arguments, const std::string& text,
                                  const Surroundings& surroundings) const {
  const auto before = contents();
  const ProgramRun run = runProgram(arguments, surroundings);
  EXPECT_GT(run.exitCode, 0);
  EXPECT_EQ(run.out, "");
  EXPECT_LT(run.peakMemory, std::uint64_t{600} << 20);  // a sanitizer's own included; less than the largest picture has
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
  EXPECT_TRUE(run.err.ends_with('\n')) << run.err;
  expectHolds(run.err, text);
  EXPECT_TRUE(contents() == before) << "files changed after: " << run.err;
}

}  // namespace vlvk::tool_test
