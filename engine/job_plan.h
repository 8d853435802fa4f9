/// Decides what a frame goes through.
#ifndef VLVK_ENGINE_JOB_PLAN_H
#define VLVK_ENGINE_JOB_PLAN_H

#include <vlvk/makeup.h>
#include "engine/frame_job.h"

namespace vlvk {

/// How many threads a frame may take, the calling one included.
int threadsFor(const VlvkSettings& settings);

/// All of a job but its memory.
///
/// @param skin    lives as long as the job
/// @param colors  the change of colours, null for none
FrameJob planJob(const FrameView& source, const FrameView& target, const MaskView& mask, const VlvkSettings& settings,
                 KeptSkinWeights& skin, const ColorStep* colors);

/// Whether the result of a frame in place is the frame as it is.
bool leavesFrame(const FrameJob& job);

}  // namespace vlvk

#endif
