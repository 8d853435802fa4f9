/// Threads for the bands of a handle's frames.
#ifndef VLVK_ENGINE_BAND_TEAM_H
#define VLVK_ENGINE_BAND_TEAM_H

#include <pthread.h>
#include <sys/types.h>

#include "engine/processors.h"

namespace vlvk {

inline constexpr int kMostBands = 64;

/// How many bands a frame has where the settings leave it open: the processors that are there, at most 8.
int defaultBands();

/// Threads that stay from frame to frame and sleep in between: a thread that is started for a frame costs more than a
/// small frame, and lands where the scheduler puts new threads.
///
/// Whichever thread is free takes the next band, the calling one included, so a thread that waits for a processor
/// holds up no more than the band it has. One is kept off the processor of the calling thread. A child of a process
/// that forked has none of its parent's threads: it gets its own with its first frame. Signals that are sent to the
/// process stay with the host's threads, but for those that a thread may cause itself.
class BandTeam {
 public:
  using Task = void (*)(const void* context, int band);

  BandTeam() = default;
  BandTeam(const BandTeam&) = delete;
  BandTeam& operator=(const BandTeam&) = delete;
  /// Ends the threads. No run may be on its way.
  ~BandTeam();

  /// Ends the threads where there are more, with the calling one, than `threads`: the next run starts those it needs.
  void limit(int threads);

  /// Runs `task(context, band)` for band = 0 .. bands - 1, in any order, and returns when all are done. One run at a
  /// time. Starts threads where fewer are there than bands besides the calling one's; it takes over what no thread can
  /// be had for.
  ///
  /// @param bands  1 to kMostBands
  void run(int bands, Task task, const void* context);

 private:
  /// What the threads share, guarded by `mutex`. Task and context change only while no band is unfinished, so a thread
  /// that has taken a band uses them without it.
  struct Shared {
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    pthread_cond_t work = PTHREAD_COND_INITIALIZER;  ///< there are bands to take, or the end has come
    pthread_cond_t done = PTHREAD_COND_INITIALIZER;  ///< no band is unfinished
    Task task = nullptr;
    const void* context = nullptr;
    int next = 0;  ///< the first band that was not taken
    int bands = 0;
    int unfinished = 0;
    bool ended = false;
    /// One of the threads. After a pause schedulers tend to wake a thread where its waker runs, and to leave it waiting
    /// there, beside a processor that is idle, until the waker sleeps.
    PlacedThread placed;
  };

  static void* work(void* argument);
  static void takeBands(Shared& shared);
  void endWorkers();
  void forgetThreadsOfParent();
  void startWorkers(int wanted);

  Shared shared_;
  int workers_ = 0;
  pid_t process_ = 0;  ///< whose threads they are
  pthread_t threads_[kMostBands - 1];
};

}  // namespace vlvk

#endif
