/// What a worker thread does with its band.
#ifndef VLVK_FILTER_BAND_WORKER_H
#define VLVK_FILTER_BAND_WORKER_H

#include <vlvk/CFastEdgePreserved.h>
#include "filter/frame_plan.h"

namespace vlvk {

/// Runs one band of a frame through all steps. The pixels of an in-place frame are not kept.
void runBand(const FramePlan& plan, CFastEdgePreserved::BandTask& task);

}  // namespace vlvk

#endif
