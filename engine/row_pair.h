/// A row pair of a frame, with its row of chroma, through all steps past the smoothing.
#ifndef VLVK_ENGINE_ROW_PAIR_H
#define VLVK_ENGINE_ROW_PAIR_H

#include "engine/frame_job.h"

namespace vlvk {

/// Blends, changes colours and writes the rows y and y + 1 of the target, or y alone where it is the last one. What a
/// row pair needs lies in the cache from its first step to its last.
///
/// @param y  even
void runRowPair(const FrameJob& job, const BandScratch& scratch, int y);

}  // namespace vlvk

#endif
