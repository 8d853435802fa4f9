/// Rows of a frame as the row loops take them, and back: a multiple of 16 columns wide, the last pixel repeated, chroma
/// in pairs, pixels of 4 bytes.
///
/// Where a row lies in the frame in that form already, no byte is copied. A new layout of samples is a case here.
#ifndef VLVK_ENGINE_FRAME_ROWS_H
#define VLVK_ENGINE_FRAME_ROWS_H

#include <cstdint>

#include "engine/frame_view.h"
#include "rows/pixel_orders.h"

namespace vlvk {

/// Columns of the row loops for a width.
constexpr int paddedColumns(int width) {
  return (width + 15) & ~15;
}

/// Reads a row of luma.
///
/// @param scratch  paddedColumns(width) bytes, used where the row is not wide enough
/// @return the row, in the frame or in `scratch`
const std::uint8_t* readLuma(const FrameView& frame, int y, std::uint8_t* scratch);

/// Reads a row of chroma.
///
/// @param row      0 to (height + 1) / 2 - 1
/// @param scratch  paddedColumns(width) bytes
/// @return pairs in the order of the format
const std::uint8_t* readChroma(const FrameView& frame, int row, std::uint8_t* scratch);

/// Reads a row of pixels.
///
/// @param order    wanted byte order
/// @param scratch  paddedColumns(width) pixels of 4 bytes
/// @return pixels whose fourth byte is alpha where the format has it, anything where not
const std::uint8_t* readPixels(const FrameView& frame, int y, PixelOrder order, std::uint8_t* scratch);

/// Where a row of luma is to be written: in the frame, or in `scratch` where the frame's rows are not wide enough.
std::uint8_t* lumaToWrite(const FrameView& frame, int y, std::uint8_t* scratch);

/// The same for chroma pairs in the order of the format, and for pixels of 4 bytes in the order of the format.
std::uint8_t* chromaToWrite(const FrameView& frame, int row, std::uint8_t* scratch);
std::uint8_t* pixelsToWrite(const FrameView& frame, int y, std::uint8_t* scratch);

/// Takes a written row over into the frame; nothing is done where it lies there already.
void writeLuma(const FrameView& frame, int y, const std::uint8_t* luma);
void writeChroma(const FrameView& frame, int row, const std::uint8_t* pairs);
void writePixels(const FrameView& frame, int y, const std::uint8_t* pixels);

}  // namespace vlvk

#endif
