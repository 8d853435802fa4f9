/// Threads where there are none: the part of POSIX that the engine asks for, on one thread. The C library of modules
/// has the types, and neither functions nor this header.
///
/// A thread cannot be had, so bands run one after the other on the caller's; a mutex is never held by another, and a
/// condition never waited for.
#ifndef VLVK_WEB_PTHREAD_H
#define VLVK_WEB_PTHREAD_H

#include <errno.h>
#include <sys/types.h>

#define PTHREAD_MUTEX_INITIALIZER \
  {                               \
    {                             \
      { 0 }                       \
    }                             \
  }

#define PTHREAD_COND_INITIALIZER \
  {                              \
    {                            \
      { 0 }                      \
    }                            \
  }

#ifdef __cplusplus
extern "C" {
#endif

static inline int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                                 void* argument) {
  (void)thread, (void)attributes, (void)start, (void)argument;
  return EAGAIN;
}
static inline int pthread_join(pthread_t thread, void** result) {
  (void)thread, (void)result;
  return ESRCH;
}
static inline int pthread_mutex_lock(pthread_mutex_t* mutex) {
  (void)mutex;
  return 0;
}
static inline int pthread_mutex_unlock(pthread_mutex_t* mutex) {
  (void)mutex;
  return 0;
}
static inline int pthread_mutex_destroy(pthread_mutex_t* mutex) {
  (void)mutex;
  return 0;
}
static inline int pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t* mutex) {
  (void)condition, (void)mutex;
  return EINVAL;
}
static inline int pthread_cond_signal(pthread_cond_t* condition) {
  (void)condition;
  return 0;
}
static inline int pthread_cond_broadcast(pthread_cond_t* condition) {
  (void)condition;
  return 0;
}
static inline int pthread_cond_destroy(pthread_cond_t* condition) {
  (void)condition;
  return 0;
}

#ifdef __cplusplus
}
#endif

#endif
