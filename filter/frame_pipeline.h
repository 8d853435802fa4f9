/// The road of a picture of pixels, which becomes a semi-planar frame on the way.
#ifndef VLVK_FILTER_FRAME_PIPELINE_H
#define VLVK_FILTER_FRAME_PIPELINE_H

#include <vlvk/CFastEdgePreserved.h>
#include "filter/frame_phases.h"

namespace vlvk {

/// CFastEdgePreserved::processVideoInternal of a frame whose planes are made of pixels on the frame's threads. Does not
/// lock either: hold the filter's mutex for the whole call, or keep its frames apart.
///
/// @param source      RGBA or BGRA, as `rgbOrder` says; its pixels must not be null, or the planes stay as they are
/// @param luma        room for `height` rows of luma, then (height + 1) / 2 of chroma, `lumaStride` bytes a row. Those
///                    past an odd edge that no conversion fills stay as they are, but for luma: see repeatOddEdge
/// @param out         may be the source's pixels
int processPixels(CFastEdgePreserved& filter, const PixelSource& source, unsigned char* luma, int lumaStride, int width,
                  int height, unsigned char* out, int outStride, bool rgbOrder);

}  // namespace vlvk

#endif
