/// See band_team.h.
#include "engine/band_team.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <new>

#include "base/mutex_lock.h"
#include "engine/processors.h"

namespace vlvk {

namespace {

/// Starts a thread that leaves the process's signals to other threads: a host may have blocked them in its own to wait
/// for them. Those that a thread may cause itself find it as its starter is.
bool startQuietly(pthread_t& thread, void* (*body)(void*), void* argument) {
  sigset_t others;
  sigset_t before;
  sigfillset(&others);
  for (const int own : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGABRT, SIGSYS, SIGPROF})
    sigdelset(&others, own);
  pthread_sigmask(SIG_BLOCK, &others, &before);
  const bool started = pthread_create(&thread, nullptr, body, argument) == 0;
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return started;
}

}  // namespace

int defaultBands() {
  constexpr long kMost = 8;
  return static_cast<int>(std::clamp(sysconf(_SC_NPROCESSORS_ONLN), 1L, kMost));
}

BandTeam::~BandTeam() {
  endWorkers();
  pthread_cond_destroy(&shared_.work);
  pthread_cond_destroy(&shared_.done);
  pthread_mutex_destroy(&shared_.mutex);
}

void BandTeam::limit(int threads) {
  if (workers_ >= threads) endWorkers();
}

void BandTeam::endWorkers() {
  forgetThreadsOfParent();
  {
    const MutexLock lock(shared_.mutex);
    shared_.ended = true;
    pthread_cond_broadcast(&shared_.work);
  }
  for (int i = 0; i < workers_; ++i)
    pthread_join(threads_[i], nullptr);
  workers_ = 0;
  shared_.ended = false;
  shared_.placed = {};
}

/// The parent's threads may have held the mutex or waited at the moment of the fork, so what they shared starts anew
/// without an end of its own, which would wait for them.
void BandTeam::forgetThreadsOfParent() {
  if (workers_ == 0 || process_ == getpid()) return;
  workers_ = 0;
  new (&shared_) Shared;
}

void BandTeam::startWorkers(int wanted) {
  process_ = getpid();
  while (workers_ < wanted && startQuietly(threads_[workers_], work, &shared_))
    ++workers_;
}

/// Called with the mutex held; tasks run without it.
void BandTeam::takeBands(Shared& shared) {
  while (shared.next < shared.bands) {
    const int band = shared.next++;
    pthread_mutex_unlock(&shared.mutex);
    shared.task(shared.context, band);
    pthread_mutex_lock(&shared.mutex);
    if (--shared.unfinished == 0) pthread_cond_signal(&shared.done);
  }
}

void* BandTeam::work(void* argument) {
  auto& shared = *static_cast<Shared*>(argument);
  const MutexLock lock(shared.mutex);
  shared.placed.takeCallingThread();
  while (!shared.ended) {
    takeBands(shared);
    if (!shared.ended) pthread_cond_wait(&shared.work, &shared.mutex);
  }
  return nullptr;
}

void BandTeam::run(int bands, Task task, const void* context) {
  forgetThreadsOfParent();
  if (workers_ < bands - 1) startWorkers(bands - 1);
  const MutexLock lock(shared_.mutex);
  shared_.task = task;
  shared_.context = context;
  shared_.next = 0;
  shared_.bands = bands;
  shared_.unfinished = bands;
  if (bands > 1) shared_.placed.keepOffCallingThread();
  for (int i = 0; i < std::min(bands - 1, workers_); ++i)
    pthread_cond_signal(&shared_.work);
  takeBands(shared_);
  while (shared_.unfinished > 0)
    pthread_cond_wait(&shared_.done, &shared_.mutex);
}

}  // namespace vlvk
