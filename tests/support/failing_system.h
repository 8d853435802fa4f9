/// A malloc family and a pthread_create of the executable's own, which count, fail on demand and hand on to the C
/// library. What is tested must be linked as the shared library that hosts load: its calls come through them like
/// all others.
#ifndef VLVK_TESTS_SUPPORT_FAILING_SYSTEM_H
#define VLVK_TESTS_SUPPORT_FAILING_SYSTEM_H

#include <atomic>
#include <climits>
#include <cstddef>

namespace testing_support {

/// Counts requests while it is armed; those with the numbers first .. last fail. Memory: those of leastBytes or more.
struct Fault {
  std::atomic<bool> armed{false};
  std::atomic<int> requests{0}, first{INT_MAX}, last{INT_MAX};
  std::atomic<std::size_t> leastBytes{0};

  void arm(int from, int to) {
    requests = 0;
    first = from;
    last = to;
    armed = true;
  }
  bool hits() {
    if (!armed) return false;
    const int number = requests++;
    return number >= first && number <= last;
  }
};

extern Fault memoryFault, threadFault;

/// Bytes that are allocated now, threads' stacks left out.
extern std::atomic<long long> liveBytes;

}  // namespace testing_support

#endif
