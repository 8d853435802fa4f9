/// The filter's buffers for a frame.
#ifndef VLVK_FILTER_FRAME_BUFFERS_H
#define VLVK_FILTER_FRAME_BUFFERS_H

#include <pthread.h>

#include <cstddef>

#include "base/checked_size.h"
#include "filter/CFastEdgePreserved.h"
#include "filter/frame_plan.h"

namespace vlvk {

/// A band and the thread that runs it.
struct BandWork {
  CFastEdgePreserved::BandTask task;
  pthread_t thread;
  bool started;
};

/// Gives `buffer` exactly `needed` zeroed bytes, keeping it as it is when it has that size already. No bytes: null.
/// Returns false, with an empty buffer, when there is no memory.
bool resizeBuffer(unsigned char*& buffer, std::size_t& size, CheckedSize needed);

/// Sizes the buffers for a frame, the pixel buffer and the BGRA path's scratch frame excepted. Returns false when there
/// is no memory; every buffer has the size that its size field says all the same.
bool resizeFrameBuffers(CFastEdgePreserved& filter, const FramePlan& plan);

/// Makes tables and buffers ready. Returns false when there is no memory; nothing but buffer sizes has changed then.
///
/// @param settingsChanged  the tables must be rebuilt
bool prepareFrame(CFastEdgePreserved& filter, const FramePlan& plan, bool settingsChanged, int whitenIntensity);

}  // namespace vlvk

#endif
