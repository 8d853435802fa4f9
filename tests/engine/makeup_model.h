/// What a frame through the handle must look like, computed the slow way, pixel by pixel over the whole frame: the
/// naive formulas of tests/naive, and the conversions with their coefficients once more. Nothing but the public header
/// is shared with the library.
///
///     luma      of YUV as it is; of pixels in BT.601, full range. Its rows repeat their last value up to a multiple of
///               16 columns, and boxes end there
///     skin      by chroma in BT.601 and the range of the frame; of pixels in limited range, by the mean of each block
///               of 2 x 2. In full range distances and contrast grow with the levels
///     YUV       gets the new luma; a change of colours goes by way of pixels, back with the chroma of the upper left
///               pixel of each block
///     pixels    each channel gains what luma gains; to YUV with the mean of each block
#ifndef VLVK_TESTS_ENGINE_MAKEUP_MODEL_H
#define VLVK_TESTS_ENGINE_MAKEUP_MODEL_H

#include <vlvk/makeup.h>
#include "tests/frames/frame_model.h"

namespace makeup_model {

using model::Byte;

/// Whether a frame is one of pixels, and bytes and rows of a plane, 0 where it has no such plane.
bool isPixels(int format);
int rowBytes(int format, int plane, int width);
int rowsOf(int format, int plane, int height);

/// @param picture  of the colour table, whole; null: none
/// @param target   good and of the source's size; may be the source
void process(const VlvkFrame& source, const VlvkFrame& target, const VlvkSettings& settings, const Byte* picture);

}  // namespace makeup_model

#endif
