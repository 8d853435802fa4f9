/// See compare.h.
#include "bench/compare.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <vector>

#include "bench/measure.h"

namespace vlvk_bench {

namespace {

constexpr int kRounds = 41;
constexpr int kFramesOfARound = 2;

/// Seconds of a frame.
struct Times {
  double wall;
  double processor;
};

Times timeOf(benchmark::State& state, const Contender& contender) {
  contender.restore();
  const auto begin = std::chrono::steady_clock::now();
  const std::clock_t processor = std::clock();
  for (int i = 0; i < kFramesOfARound; ++i) {
    if (!contender.process()) state.SkipWithError("the frame failed");
  }
  const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - begin;
  const double used = static_cast<double>(std::clock() - processor) / CLOCKS_PER_SEC;
  return {wall.count() / kFramesOfARound, used / kFramesOfARound};
}

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + values.size() / 2, values.end());
  return values[values.size() / 2];
}

}  // namespace

void compare(const std::string& name, const std::function<Contender()>& makeFirst,
             const std::function<Contender()>& makeSecond) {
  add(name,
      [=](benchmark::State& state) {
        const Contender first = makeFirst();
        const Contender second = makeSecond();
        timeOf(state, first);
        timeOf(state, second);
        std::vector<double> wall;
        std::vector<double> processor;
        std::vector<double> times[2];
        for ([[maybe_unused]] auto round : state) {
          const Times a = timeOf(state, first);
          const Times b = timeOf(state, second);
          wall.push_back(a.wall / b.wall);
          processor.push_back(a.processor / b.processor);
          times[0].push_back(1e3 * a.wall);
          times[1].push_back(1e3 * b.wall);
          state.SetIterationTime(a.wall);
        }
        if (wall.empty()) return;
        state.counters["ratio"] = median(wall);
        state.counters["ratio_cpu"] = median(processor);
        state.counters["first_ms"] = median(times[0]);
        state.counters["second_ms"] = median(times[1]);
      })
      ->UseManualTime()
      ->Iterations(kRounds);
}

}  // namespace vlvk_bench
