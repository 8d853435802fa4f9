/// The kernels that allocate, without memory: nothing is written, nothing stays.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <type_traits>
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

template <auto kKernel>
void run(Memory& m) {
  constexpr int kRadius = 9;
  using Kernel = decltype(kKernel);
  if constexpr (std::is_same_v<Kernel, decltype(&Mean_Window_Neon)>) {
    kKernel(m.in, m.out.data(), kWidth, kRows, kWidth, kRadius, 100);
  } else if constexpr (std::is_same_v<Kernel, decltype(&Mean)>) {
    kKernel(m.in, kWidth, kRows, kWidth, m.sums.data(), m.squares.data(), kRadius);
  } else if constexpr (std::is_same_v<Kernel, decltype(&MeanMid_Window_Neon2)>) {
    kKernel(m.in, m.sums.data(), m.squares.data(), kWidth, kRows, kWidth, kRadius, 100);
  } else {
    kKernel(m.in, m.sums.data(), m.squares.data(), kWidth, kRows, kWidth, kRadius);
  }
}

TEST(KernelMemory, WithoutItNothingIsWrittenAndNothingStays) {
  int number = 0;
  for (const auto kernel : {run<Integral_Mean_Neon>, run<Integral_MeanTop_Neon>, run<Integral_MeanMid_Neon>,
                            run<Integral_MeanBottom_Neon>, run<Integral_Mean_Neon2>, run<Mean_Window_Neon>,
                            run<MeanTop_Window_V2_Neon>, run<MeanMid_Window_V2_Neon>, run<MeanBottom_Window_V2_Neon>,
                            run<MeanMid_Window_Neon2>, run<Mean>, run<MeanTop>, run<MeanMid>, run<MeanBottom>}) {
    SCOPED_TRACE(testing::Message() << "kernel " << number++);
    for (int n = 0;; ++n) {
      Memory memory;
      const long long before = liveBytes;
      memoryFault.arm(n, n);
      kernel(memory);
      memoryFault.armed = false;
      EXPECT_EQ(liveBytes, before) << "allocation " << n;
      const bool failed = memoryFault.requests > n;
      EXPECT_EQ(memory.untouched(), failed) << "allocation " << n;
      if (failed) continue;
      EXPECT_GE(n, 1) << "allocates past this executable";
      break;
    }
  }
}

}  // namespace
