/// A mutex held for a scope.
#ifndef VLVK_BASE_MUTEX_LOCK_H
#define VLVK_BASE_MUTEX_LOCK_H

#include <pthread.h>

namespace vlvk {

class MutexLock {
 public:
  explicit MutexLock(pthread_mutex_t& mutex) : mutex_(mutex) { pthread_mutex_lock(&mutex_); }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;
  ~MutexLock() { pthread_mutex_unlock(&mutex_); }

 private:
  pthread_mutex_t& mutex_;
};

}  // namespace vlvk

#endif
