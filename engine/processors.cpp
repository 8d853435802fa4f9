/// See processors.h.
#include "engine/processors.h"

#if defined(__linux__)
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace vlvk {

#if defined(__linux__)

void PlacedThread::takeCallingThread() {
  if (number_ != 0 || sched_getaffinity(0, sizeof own_, &own_) != 0) return;
  given_ = own_;
  number_ = static_cast<pid_t>(syscall(SYS_gettid));
}

void PlacedThread::keepOffCallingThread() {
  const int processor = number_ != 0 ? sched_getcpu() : -1;
  if (processor < 0 || processor >= CPU_SETSIZE || processor == avoided_) return;
  cpu_set_t now;
  if (sched_getaffinity(number_, sizeof now, &now) != 0) return;
  if (!CPU_EQUAL(&now, &given_)) own_ = now;
  given_ = own_;
  CPU_CLR(static_cast<unsigned>(processor), &given_);
  if (CPU_COUNT(&given_) == 0) given_ = own_;
  if (sched_setaffinity(number_, sizeof given_, &given_) != 0) given_ = now;
  avoided_ = processor;
}

#else

void PlacedThread::takeCallingThread() {}

void PlacedThread::keepOffCallingThread() {}

#endif

}  // namespace vlvk
