/// See table_file.h.
#include "plugins/table_file.h"

#include <cerrno>
#include <cstdio>
#include <new>

namespace vlvk::plugins {
namespace {

// A header of 12 bytes and 2048 x 512 bytes of colours. No more is read, wherever the path leads: what a file has after
// them is not looked at.
constexpr std::size_t kMostBytes = 12 + std::size_t{2048} * 512;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

int readTable(const char* path, TableBytes& table) {
  table = {};
  if (*path == '\0') return 0;
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path, "rbe"));
  if (file == nullptr) return errno;
  table.data.reset(new (std::nothrow) unsigned char[kMostBytes]);
  if (table.data == nullptr) return ENOMEM;
  table.size = std::fread(table.data.get(), 1, kMostBytes, file.get());
  return std::ferror(file.get()) == 0 ? 0 : errno;
}

}  // namespace vlvk::plugins
