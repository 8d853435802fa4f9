/// See band_team.h.
#include "engine/band_team.h"

#include <pthread.h>
#include <unistd.h>

#include <algorithm>

namespace vlvk {

namespace {

struct BandThread {
  pthread_t thread;
  void (*task)(const void* context, int band);
  const void* context;
  int band;
  bool started;
};

void* runOne(void* argument) {
  const auto& band = *static_cast<const BandThread*>(argument);
  band.task(band.context, band.band);
  return nullptr;
}

}  // namespace

int defaultBands() {
  constexpr long kMost = 8;
  return static_cast<int>(std::clamp(sysconf(_SC_NPROCESSORS_ONLN), 1L, kMost));
}

void runBands(int bands, void (*task)(const void* context, int band), const void* context) {
  BandThread threads[kMostBands];
  const int others = bands - 1;
  for (int i = 0; i < others; ++i) {
    threads[i] = {{}, task, context, i, false};
    threads[i].started = pthread_create(&threads[i].thread, nullptr, runOne, &threads[i]) == 0;
  }
  task(context, others);
  for (int i = 0; i < others; ++i) {
    if (!threads[i].started) task(context, i);
  }
  for (int i = 0; i < others; ++i) {
    if (threads[i].started) pthread_join(threads[i].thread, nullptr);
  }
}

}  // namespace vlvk
