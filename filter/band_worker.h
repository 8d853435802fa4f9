/// What a worker thread does with its band.
#ifndef VLVK_FILTER_BAND_WORKER_H
#define VLVK_FILTER_BAND_WORKER_H

#include <optional>

#include <vlvk/CFastEdgePreserved.h>
#include "filter/frame_plan.h"
#include "simd/channel_curves.h"

namespace vlvk {

/// Runs one band of a frame through all steps. The pixels of an in-place frame are not kept.
///
/// @param curves  those of curvesFor, of the frame
void runBand(const FramePlan& plan, CFastEdgePreserved::BandTask& task, const std::optional<ChannelCurves>& curves);

}  // namespace vlvk

#endif
