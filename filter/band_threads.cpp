/// See band_threads.h.
#include "filter/band_threads.h"

#include "base/mutex_lock.h"

namespace vlvk {

namespace {

/// The frame on its way, guarded by `mutex` but for what never changes.
struct Progress {
  const Phase* phase;  ///< in work; `end` when all are finished
  const Phase* const end;
  const void* const frame;
  int next = 0;  ///< first task of the phase that was not taken
  int unfinished = phase->tasks;
  pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
  pthread_cond_t begun = PTHREAD_COND_INITIALIZER;  ///< another phase than before, or none
};

/// With the mutex held.
void finishTask(Progress& progress) {
  if (--progress.unfinished > 0) return;
  ++progress.phase;
  progress.next = 0;
  progress.unfinished = progress.phase != progress.end ? progress.phase->tasks : 0;
  pthread_cond_broadcast(&progress.begun);
}

/// Start routine of a thread: takes tasks until the last one is taken. Tasks run without the mutex.
void* takeTasks(void* argument) {
  auto& progress = *static_cast<Progress*>(argument);
  const MutexLock lock(progress.mutex);
  while (progress.phase != progress.end) {
    const Phase& phase = *progress.phase;
    if (progress.next < phase.tasks) {
      const int task = progress.next++;
      pthread_mutex_unlock(&progress.mutex);
      phase.run(progress.frame, task);
      pthread_mutex_lock(&progress.mutex);
      finishTask(progress);
    } else if (progress.phase + 1 == progress.end) {
      break;
    } else {
      pthread_cond_wait(&progress.begun, &progress.mutex);
    }
  }
  return nullptr;
}

}  // namespace

void runPhases(const Phase* phases, int phaseCount, const void* frame, BandThread* threads, int threadCount) {
  Progress progress{phases, phases + phaseCount, frame};
  for (int i = 0; i < threadCount; ++i)
    threads[i].started = pthread_create(&threads[i].thread, nullptr, takeTasks, &progress) == 0;
  takeTasks(&progress);
  for (int i = 0; i < threadCount; ++i) {
    if (threads[i].started) pthread_join(threads[i].thread, nullptr);
  }
  pthread_cond_destroy(&progress.begun);
  pthread_mutex_destroy(&progress.mutex);
}

}  // namespace vlvk
