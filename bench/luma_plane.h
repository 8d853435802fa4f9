/// What the box filter benchmarks share: a luma plane with context rows, the radii, and the time of a pixel.
#ifndef VLVK_BENCH_LUMA_PLANE_H
#define VLVK_BENCH_LUMA_PLANE_H

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace vlvk_bench {

inline constexpr int kWidth = 1920;
inline constexpr int kHeight = 1080;
inline constexpr int kContextRows = 64;  ///< above and below: enough for the middle band of every radius
inline constexpr int kLevel = 600;
inline constexpr std::size_t kPixels = std::size_t{kWidth} * kHeight;

/// Shaded grain, the same every time, with context rows; the plane starts at element kWidth * kContextRows.
inline std::vector<std::uint8_t> lumaPlane() {
  std::mt19937 random(1);
  std::vector<std::uint8_t> plane;
  for (std::size_t i = 0; i < std::size_t{kWidth} * (kHeight + 2 * kContextRows); ++i)
    plane.push_back(static_cast<std::uint8_t>(60 + i % kWidth / 16 + random() % 24));
  return plane;
}

/// Runs `work` as often as wanted and reports the processor time of one pixel.
template <class Work>
void measure(benchmark::State& state, Work work) {
  for ([[maybe_unused]] auto run : state) {
    work();
    benchmark::ClobberMemory();
  }
  state.counters["per_pixel"] = benchmark::Counter(
      static_cast<double>(kPixels), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// For every family: a cost that grows with the radius would show.
inline void radii(benchmark::internal::Benchmark* bench) {
  bench->ArgName("radius")->Arg(4)->Arg(20)->Arg(60)->Unit(benchmark::kMillisecond);
}

}  // namespace vlvk_bench

#endif
