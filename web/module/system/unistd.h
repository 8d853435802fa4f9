/// The C library's header, and what the engine asks about processes: there is one.
#ifndef VLVK_WEB_UNISTD_H
#define VLVK_WEB_UNISTD_H

#include_next <unistd.h>

static inline pid_t vlvkModuleProcess(void) {
  return 1;
}
#define getpid vlvkModuleProcess  // the function of this name is declared, and warned of

#endif
