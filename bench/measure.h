/// What all benchmarks share: registration by name, time per pixel, targets.
#ifndef VLVK_BENCH_MEASURE_H
#define VLVK_BENCH_MEASURE_H

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "bench/options.h"
#include "rows/row_loops.h"

namespace vlvk_bench {

/// Reports the time of one pixel: wall clock where the benchmark uses real time, processor time elsewhere.
inline void countPixels(benchmark::State& state, std::size_t pixels) {
  state.counters["per_pixel"] = benchmark::Counter(
      static_cast<double>(pixels), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// Runs `work` as often as wanted.
template <class Work>
void measure(benchmark::State& state, std::size_t pixels, Work work) {
  for ([[maybe_unused]] auto run : state) {
    work();
    benchmark::ClobberMemory();
  }
  countPixels(state, pixels);
}

/// Adds a benchmark; `function` takes the state.
template <class Function>
benchmark::internal::Benchmark* add(const std::string& name, Function function) {
  return benchmark::RegisterBenchmark(name.c_str(), function)->Unit(benchmark::kMillisecond);
}

/// The sets of row loops that this processor runs, fastest first.
inline std::vector<const vlvk::RowLoops*> targets() {
  int count = 0;
  const vlvk::RowLoops* const* sets = vlvk::availableRowLoops(count);
  return {sets, sets + count};
}

/// Puts a target in use as long as it lives.
class ForcedTarget {
 public:
  explicit ForcedTarget(const vlvk::RowLoops* target) { vlvk::forceRowLoops(target->name); }
  ~ForcedTarget() { vlvk::forceRowLoops(nullptr); }
  ForcedTarget(const ForcedTarget&) = delete;
  ForcedTarget& operator=(const ForcedTarget&) = delete;
};

}  // namespace vlvk_bench

#endif
