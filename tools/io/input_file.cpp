/// Reading a file whole, without trusting the size that the system states for it.
#include "tools/io/input_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>

#include "tools/io/messages.h"

namespace vlvk::tool {
namespace {

constexpr std::size_t kLeastBuffer = std::size_t{1} << 16;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

std::vector<std::uint8_t> readFile(const std::string& path, std::size_t limit) {
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rbe"));
  if (file == nullptr) throw Error(systemReason(errno));
  std::vector<std::uint8_t> bytes;
  std::size_t filled = 0;
  do {
    // One more than the limit shows that there is too much; the doubling must not stop just short of it.
    bytes.resize(std::min(std::max(filled * 2, kLeastBuffer), limit) + 1);
    filled += std::fread(bytes.data() + filled, 1, bytes.size() - filled, file.get());
    if (std::ferror(file.get()) != 0) throw Error(systemReason(errno));
    if (filled > limit) throw Error("the file is larger than " + std::to_string(limit >> 20) + " MiB");
  } while (filled == bytes.size());
  if (filled == 0) throw Error("the file is empty");
  bytes.resize(filled);
  return bytes;
}

}  // namespace vlvk::tool
