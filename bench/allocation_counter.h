/// Counts what this program asks the heap for. Calls from inside the C library, such as those of a thread's start, do
/// not count.
#ifndef VLVK_BENCH_ALLOCATION_COUNTER_H
#define VLVK_BENCH_ALLOCATION_COUNTER_H

#include <cstddef>

namespace vlvk_bench {

/// Calls of malloc and its relatives and of operator new so far, by any thread.
std::size_t allocationCount();

/// Bytes of the heap that are in use, the C library's own included, and bytes of all memory of the process.
std::size_t heapBytes();
std::size_t residentBytes();

}  // namespace vlvk_bench

#endif
