/// Engines where 32 bits of an address are enough, when next to nothing is free there.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include "tests/bindings/engine.h"

namespace bindings_tests {
namespace {

using Ranges = std::vector<std::pair<char*, std::size_t>>;

/// Takes a range of addresses whole, or what is free of its halves.
void take(char* begin, std::size_t size, std::size_t page, Ranges* taken) {
  constexpr int kFlags = MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_FIXED_NOREPLACE;
  if (mmap(begin, size, PROT_NONE, kFlags, -1, 0) == begin) {
    taken->emplace_back(begin, size);
  } else if (size > page) {
    const std::size_t half = size / page / 2 * page;
    take(begin, half, page, taken);
    take(begin + half, size - half, page, taken);
  }
}

TEST(Handle, TheOnlyFreePageIsFound) {
  if (!kHandleIsNarrow) GTEST_SKIP() << "any address will do";
  FakeJava java;
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  Ranges taken;
  take(reinterpret_cast<char*>(page), (std::size_t{1} << 31) - page, page, &taken);
  EXPECT_EQ(makeup_Init(java.env(), nullptr, java.loader()), 0);
  EXPECT_EQ(java.takeCalls(), Calls{});
  for (char* free : {taken.front().first, taken.back().first + taken.back().second - page}) {
    munmap(free, page);
    const Engine engine(java);
    EXPECT_EQ(engine.handle, reinterpret_cast<jlong>(free));
  }
  for (const auto& [begin, size] : taken)
    munmap(begin, size);
}

}  // namespace
}  // namespace bindings_tests
