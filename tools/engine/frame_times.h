/// What frames took, for measurements of speed; the benchmarks use it too.
#ifndef VLVK_TOOLS_ENGINE_FRAME_TIMES_H
#define VLVK_TOOLS_ENGINE_FRAME_TIMES_H

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <vector>

namespace vlvk::tool {

/// The least of the times that `percent` of 100 do not pass: 50 is the median, the lower of two; 99 of fewer than 100
/// times is the longest.
///
/// @param times    at least one; their order changes
/// @param percent  1 to 100
inline double quantile(std::vector<double>& times, std::size_t percent) {
  const std::size_t rank = (times.size() * percent + 99) / 100;
  const auto at = times.begin() + static_cast<std::ptrdiff_t>(rank) - 1;
  std::nth_element(times.begin(), at, times.end());
  return *at;
}

/// Milliseconds that all threads of the process have had a processor.
inline double processorTime() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

}  // namespace vlvk::tool

#endif
