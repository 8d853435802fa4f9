/// Runs a fuzzer's inputs once, without a fuzzing engine: files, or folders of them. Fails where there is none.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> filesOf(const std::filesystem::path& path) {
  if (!std::filesystem::is_directory(path)) return {path};
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(path))
    files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

void run(const std::filesystem::path& path) {
  std::printf("%s\n", path.c_str());
  std::fflush(stdout);  // the last name printed is the one to look at
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  if (!file) throw std::runtime_error(path.string() + " cannot be read");
  // An array of its exact size, so that a byte read past it is noticed.
  std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
  LLVMFuzzerTestOneInput(input.data(), input.size());
}

}  // namespace

int main(int argc, char** argv) {
  try {
    int count = 0;
    for (int i = 1; i < argc; ++i) {
      for (const auto& file : filesOf(argv[i])) {
        run(file);
        ++count;
      }
    }
    std::printf("%d inputs\n", count);
    return count > 0 ? 0 : 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
