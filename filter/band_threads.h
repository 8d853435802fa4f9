/// Threads for one frame, which take what there is to do in phases.
#ifndef VLVK_FILTER_BAND_THREADS_H
#define VLVK_FILTER_BAND_THREADS_H

#include <pthread.h>

namespace vlvk {

/// Tasks of a frame that may run at the same time: `run(frame, task)` for task = 0 .. tasks - 1.
struct Phase {
  void (*run)(const void* frame, int task);
  int tasks;  ///< 1 or more
};

/// A thread of a frame, where there is one.
struct BandThread {
  pthread_t thread;
  bool started;
};

/// Starts threads, runs the phases one after the other, and joins the threads.
///
/// Whichever thread is free takes the next task, the calling one included. A phase begins when all tasks of the one
/// before are finished, by whatever thread: one that cannot be had, or gets a processor late, holds up nothing and
/// finds its work done by others. Threads without a task sleep until the next phase.
///
/// @param phases   at least one
/// @param frame    handed to every task
/// @param threads  room for `threadCount` threads
void runPhases(const Phase* phases, int phaseCount, const void* frame, BandThread* threads, int threadCount);

}  // namespace vlvk

#endif
