/// What a worker thread does with its band.
#ifndef VLVK_FILTER_BAND_WORKER_H
#define VLVK_FILTER_BAND_WORKER_H

#include <vlvk/CFastEdgePreserved.h>
#include "filter/frame_plan.h"

namespace vlvk {

/// Copies the unsmoothed luma rows around a band into its saved rows. All bands of an in-place frame need this before
/// the first of them starts, because each overwrites its own rows.
///
/// Rows outside the frame repeat its first or last row. The rows below start with the band's own last row, which the
/// sliding box takes from there.
void saveNeighbourRows(const FramePlan& plan, const unsigned char* luma, int band, unsigned char* savedRows);

/// Runs one band of a frame through all steps. The pixels of an in-place frame are not kept.
void runBand(const FramePlan& plan, CFastEdgePreserved::BandTask& task);

}  // namespace vlvk

#endif
