/// The kernels that allocate, without memory: nothing is written, nothing is left behind.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <vector>

#include <vlvk/integral_mean.h>
#include <vlvk/line_mean.h>
#include <vlvk/reference_filter.h>
#include "tests/support/failing_system.h"

namespace {

using testing_support::liveBytes;
using testing_support::memoryFault;

constexpr int kWidth = 40;
constexpr int kRows = 24;
constexpr int kContext = 20;
constexpr std::uint32_t kUntouched = 0xC5C5C5C5;

/// A band in the middle of a plane, and everything that a kernel may write.
struct Memory {
  std::vector<std::uint8_t> plane = std::vector<std::uint8_t>(std::size_t{kWidth} * (kRows + 2 * kContext), 90);
  const std::uint8_t* in = plane.data() + std::size_t{kWidth} * kContext;
  std::vector<std::uint8_t> out = std::vector<std::uint8_t>(std::size_t{kWidth} * kRows, 0xC5);
  std::vector<std::uint32_t> sums = std::vector<std::uint32_t>(out.size(), kUntouched);
  std::vector<std::uint32_t> squares = sums;

  bool untouched() const {
    const auto all = [](const auto& values, auto value) {
      return std::all_of(values.begin(), values.end(), [=](auto v) { return v == value; });
    };
    return all(out, 0xC5) && all(sums, kUntouched) && all(squares, kUntouched);
  }
};

struct Kernel {
  const char* name;
  void (*run)(Memory& m);
};

using Smoother = decltype(&Integral_Mean_Neon);
using Statistics = decltype(&Integral_Mean_Neon2);
using Reference = decltype(&Mean);

template <Smoother kKernel, int kRadius = 9>
void smooth(Memory& m) {
  kKernel(m.in, m.out.data(), kWidth, kRows, kWidth, kRadius, 100);
}
template <Statistics kKernel, int kRadius = 9>
void writeSums(Memory& m) {
  kKernel(m.in, m.sums.data(), m.squares.data(), kWidth, kRows, kWidth, kRadius);
}
void writeWideSums(Memory& m) {
  MeanMid_Window_Neon2(m.in, m.sums.data(), m.squares.data(), kWidth, kRows, kWidth, 9, 100);
}
template <Reference kKernel>
void writeReferenceSums(Memory& m) {
  kKernel(m.in, kWidth, kRows, kWidth, m.sums.data(), m.squares.data(), 9);
}

constexpr Kernel kKernels[] = {
    {"Integral_Mean_Neon", smooth<Integral_Mean_Neon>},
    {"Integral_MeanTop_Neon", smooth<Integral_MeanTop_Neon>},
    {"Integral_MeanMid_Neon", smooth<Integral_MeanMid_Neon>},
    {"Integral_MeanBottom_Neon", smooth<Integral_MeanBottom_Neon>},
    {"Integral_Mean_Neon2", writeSums<Integral_Mean_Neon2>},
    {"Mean_Window_Neon", smooth<Mean_Window_Neon>},
    {"MeanTop_Window_V2_Neon", writeSums<MeanTop_Window_V2_Neon>},
    {"MeanMid_Window_V2_Neon", writeSums<MeanMid_Window_V2_Neon>},
    {"MeanBottom_Window_V2_Neon", writeSums<MeanBottom_Window_V2_Neon>},
    {"MeanMid_Window_Neon2", writeWideSums},
    {"Mean", writeReferenceSums<Mean>},
    {"MeanTop", writeReferenceSums<MeanTop>},
    {"MeanMid", writeReferenceSums<MeanMid>},
    {"MeanBottom", writeReferenceSums<MeanBottom>},
};

TEST(KernelMemory, WithoutItNothingIsWrittenAndNothingStays) {
  for (const Kernel& kernel : kKernels) {
    for (int n = 0;; ++n) {
      Memory memory;
      const long long before = liveBytes;
      memoryFault.arm(n, n);
      kernel.run(memory);
      memoryFault.armed = false;
      EXPECT_EQ(liveBytes, before) << kernel.name << ", allocation " << n;
      if (memoryFault.requests > n) {
        EXPECT_TRUE(memory.untouched()) << kernel.name << ", allocation " << n << " failed";
        continue;
      }
      EXPECT_FALSE(memory.untouched()) << kernel.name;
      EXPECT_GE(n, 1) << kernel.name << " allocates past this executable";
      break;
    }
  }
}

// A ring that is larger than the address space, and one whose size cannot be expressed.
TEST(KernelMemory, RingsBeyondAllMemoryAreRefused) {
  constexpr int kMemory = 1 << 22;
  constexpr int kSizes = INT_MAX / 2;
  for (const auto run :
       {smooth<Integral_Mean_Neon, kMemory>, smooth<Integral_Mean_Neon, kSizes>, smooth<Integral_MeanTop_Neon, kSizes>,
        smooth<Integral_MeanMid_Neon, kSizes>, smooth<Integral_MeanBottom_Neon, kSizes>,
        writeSums<Integral_Mean_Neon2, kMemory>, writeSums<Integral_Mean_Neon2, kSizes>}) {
    Memory memory;
    run(memory);
    EXPECT_TRUE(memory.untouched());
  }
}

}  // namespace
