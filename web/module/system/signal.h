/// Signals where there are none: what the engine does with them around the start of a thread.
#ifndef VLVK_WEB_SIGNAL_H
#define VLVK_WEB_SIGNAL_H

#include <sys/types.h>

enum { SIGILL = 4, SIGTRAP, SIGABRT, SIGBUS, SIGFPE, SIGSEGV = 11, SIGPROF = 27, SIGSYS = 31 };
enum { SIG_BLOCK = 0, SIG_SETMASK = 2 };

static inline int sigfillset(sigset_t* set) {
  *set = 0;
  return 0;
}
static inline int sigdelset(sigset_t* set, int signal) {
  (void)set, (void)signal;
  return 0;
}
static inline int pthread_sigmask(int how, const sigset_t* set, sigset_t* before) {
  (void)how, (void)set;
  if (before) *before = 0;
  return 0;
}

#endif
