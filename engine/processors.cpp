/// See processors.h.
#include "engine/processors.h"

#if defined(__linux__)
#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace vlvk {

#if defined(__linux__)

int ownProcessor() {
  return sched_getcpu();
}

int ownThreadNumber() {
  return static_cast<int>(syscall(SYS_gettid));
}

void keepOff(int threadNumber, int processor) {
  cpu_set_t processors;
  if (processor >= CPU_SETSIZE || sched_getaffinity(0, sizeof processors, &processors) != 0) return;
  CPU_CLR(static_cast<unsigned>(processor), &processors);
  if (CPU_COUNT(&processors) > 0) sched_setaffinity(threadNumber, sizeof processors, &processors);
}

#else

int ownProcessor() {
  return -1;
}

int ownThreadNumber() {
  return 0;
}

void keepOff(int /*threadNumber*/, int /*processor*/) {}

#endif

}  // namespace vlvk
