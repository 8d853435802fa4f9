/// @file
/// `struct timeb`, also where the platform no longer has it.
#ifndef VLVK_TIMEB_H
#define VLVK_TIMEB_H

#if __has_include(<sys/timeb.h>)
#include <sys/timeb.h>
#else
#include <ctime>

/// Wall clock time.
struct timeb {
  std::time_t time;        ///< seconds since the epoch
  unsigned short millitm;  ///< and milliseconds
  short timezone;          ///< not used
  short dstflag;           ///< not used
};
#endif

#endif
