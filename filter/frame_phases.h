/// What happens to a frame when all that it needs is there: its phases, on threads.
#ifndef VLVK_FILTER_FRAME_PHASES_H
#define VLVK_FILTER_FRAME_PHASES_H

#include <vlvk/CFastEdgePreserved.h>
#include "filter/frame_plan.h"

namespace vlvk {

/// 4-byte pixels; null: none.
struct PixelSource {
  const unsigned char* pixels;
  int stride;  ///< bytes between rows
};

/// A caller's frame, and where its pixels go; `out` is null in place.
struct Frame {
  unsigned char* luma;
  unsigned char* chroma;
  int chromaStride;
  unsigned char* out;
  int outStride;
  bool rgbOrder;
  PixelSource source;  ///< of the planes, where they are still to be made
};

/// The settings that bands need, as the frame found them.
struct FrameSettings {
  int whitenIntensity;
  int softenLevel;
  int colorAdjustIntensity;
};

/// Takes a frame through its phases: pixels become planes, rows that will be overwritten are saved, bands are finished.
/// Each is over before the next begins, because boxes reach into the rows of other bands.
///
/// @param filter  with the memory that prepareFrame gave it for `plan`
void runFrame(CFastEdgePreserved& filter, const FramePlan& plan, const Frame& frame, const FrameSettings& settings);

}  // namespace vlvk

#endif
