/// What a frame through the handle must look like, computed the slow way, pixel by pixel over the whole frame: the
/// naive formulas of tests/naive, and the conversions with their coefficients once more. Nothing but the public header
/// is shared with the library.
///
///     luma      of YUV as it is, of pixels in BT.601, full range. Rows repeat their last value up to a multiple of 16
///               columns, and boxes end there. In full range contrast grows with the levels; relative contrast
///               shrinks with the square of the mean below 130 of limited range
///     skin      by chroma in BT.601 and the range of the frame; of pixels in limited range, by the mean of each block
///               of 2 x 2. A mask, stretched by nearest values, is a factor
///     tone      chroma goes to its mean in boxes of blocks of 2 x 2, of pixels in BT.601, limited range
///     YUV       gets the new luma; a change of colours goes by way of pixels, back with the chroma of the upper left
///               pixel of each block
///     pixels    each channel gains what luma and evened chroma gain; to YUV with the mean of each block
#ifndef VLVK_TESTS_ENGINE_MAKEUP_MODEL_H
#define VLVK_TESTS_ENGINE_MAKEUP_MODEL_H

#include <vlvk/makeup.h>
#include "tests/frames/frame_model.h"

namespace makeup_model {

bool isPixels(int format);
/// 0 for a plane that the format does not have.
int rowBytes(int format, std::size_t plane, int width);

/// @param picture  of the colour table, whole; null: none
/// @param target   may be the source
/// @param mask     null: none
void process(const VlvkFrame& source, const VlvkFrame& target, const VlvkSettings& settings, const model::Byte* picture,
             const VlvkMask* mask);

}  // namespace makeup_model

#endif
