/// Ratios of frames that alternate, so that a machine whose speed drifts slows both.
#ifndef VLVK_BENCH_COMPARE_H
#define VLVK_BENCH_COMPARE_H

#include <functional>
#include <string>

namespace vlvk_bench {

/// Something that processes a frame, and puts it back where it is in place.
struct Contender {
  std::function<bool()> process;
  std::function<void()> restore = [] {};
};

/// Adds a benchmark whose time is that of the first. `ratio` is the median over the rounds of the time of the first by
/// the time of the second, `ratio_cpu` the same of processor time; `first_ms` and `second_ms` are medians of a frame.
void compare(const std::string& name, const std::function<Contender()>& makeFirst,
             const std::function<Contender()>& makeSecond);

}  // namespace vlvk_bench

#endif
