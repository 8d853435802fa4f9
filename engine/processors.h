/// What the engine asks of a system's scheduler, where there is a way to ask.
#ifndef VLVK_ENGINE_PROCESSORS_H
#define VLVK_ENGINE_PROCESSORS_H

#if defined(__linux__)
#include <sched.h>
#endif

namespace vlvk {

/// A thread that is kept off the processor of another one. Where the system has no way to do so, nothing happens.
class PlacedThread {
 public:
  /// Takes the calling thread, with the processors that it may use, unless there is one already.
  void takeCallingThread();

  /// Lets the thread run on its own processors but for the one that the calling thread runs on now; on all of them
  /// where no other would be left. Its own are those that it had when it was taken, or what the host chose for it
  /// since.
  void keepOffCallingThread();

 private:
#if defined(__linux__)
  pid_t number_ = 0;  ///< 0: none
  int avoided_ = -1;
  cpu_set_t own_{};
  cpu_set_t given_{};  ///< as it was left
#endif
};

}  // namespace vlvk

#endif
