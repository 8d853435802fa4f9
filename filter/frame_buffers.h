/// The filter's buffers for a frame.
#ifndef VLVK_FILTER_FRAME_BUFFERS_H
#define VLVK_FILTER_FRAME_BUFFERS_H

#include <cstddef>

#include <vlvk/CFastEdgePreserved.h>
#include "base/checked_size.h"
#include "filter/band_threads.h"
#include "filter/frame_plan.h"

namespace vlvk {

/// What a frame's taskBuffer holds: as many orders and threads as the plan has bands.
struct TaskMemory {
  CFastEdgePreserved::BandTask* bands;
  BandThread* threads;
};

TaskMemory taskMemory(const CFastEdgePreserved& filter, const FramePlan& plan);

/// Gives `buffer` exactly `needed` zeroed bytes, keeping it as it is when it has that size already. No bytes: null.
/// Returns false, with an empty buffer, when there is no memory.
bool resizeBuffer(unsigned char*& buffer, std::size_t& size, CheckedSize needed);

/// Makes tables and buffers ready for a frame, the BGRA path's scratch frame excepted. Returns false when there is no
/// memory: the tables are still to be rebuilt then, and every buffer has the size that its size field says.
///
/// @param settingsChanged  the tables must be rebuilt
bool prepareFrame(CFastEdgePreserved& filter, const FramePlan& plan, bool settingsChanged, int whitenIntensity);

}  // namespace vlvk

#endif
