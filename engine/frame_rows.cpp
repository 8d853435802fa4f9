/// See frame_rows.h.
#include "engine/frame_rows.h"

#include <cstddef>
#include <cstring>

#include "rows/row_loops.h"

namespace vlvk {

namespace {

/// Bytes of chroma pairs that a row stands for.
int pairBytes(const FrameView& frame) {
  return (frame.width + 1) & ~1;
}

bool isWideEnough(const FrameView& frame) {
  return frame.width == paddedColumns(frame.width);
}

/// Repeats the last `unit` bytes of a row of `bytes` up to its padded size.
void padRow(std::uint8_t* row, std::size_t bytes, std::size_t padded, std::size_t unit) {
  for (; bytes < padded; bytes += unit)
    std::memcpy(row + bytes, row + bytes - unit, unit);
}

const std::uint8_t* copyPadded(const std::uint8_t* row, int bytes, int padded, std::size_t unit,
                               std::uint8_t* scratch) {
  std::memcpy(scratch, row, static_cast<std::size_t>(bytes));
  padRow(scratch, static_cast<std::size_t>(bytes), static_cast<std::size_t>(padded), unit);
  return scratch;
}

bool liesInFrame(const FrameView& frame, int plane, int y, const std::uint8_t* row) {
  return row == frame.row(plane, y);
}

}  // namespace

const std::uint8_t* readLuma(const FrameView& frame, int y, std::uint8_t* scratch) {
  if (isWideEnough(frame)) return frame.row(0, y);
  return copyPadded(frame.row(0, y), frame.width, paddedColumns(frame.width), 1, scratch);
}

const std::uint8_t* readChroma(const FrameView& frame, int row, std::uint8_t* scratch) {
  const int columns = paddedColumns(frame.width);
  const int bytes = pairBytes(frame);
  if (frame.format->hasChromaPairs()) {
    return bytes == columns ? frame.row(1, row) : copyPadded(frame.row(1, row), bytes, columns, 2, scratch);
  }
  const std::uint8_t* u = frame.row(1, row);
  const std::uint8_t* v = frame.row(2, row);
  const int blocks = bytes / 2 & ~7;
  rowLoops().interleave(u, v, scratch, blocks);
  for (int i = blocks; i < bytes / 2; ++i) {
    scratch[2 * i] = u[i];
    scratch[2 * i + 1] = v[i];
  }
  padRow(scratch, static_cast<std::size_t>(bytes), static_cast<std::size_t>(columns), 2);
  return scratch;
}

const std::uint8_t* readPixels(const FrameView& frame, int y, PixelOrder order, std::uint8_t* scratch) {
  const FrameFormat& format = *frame.format;
  const bool asWanted = format.pixelBytes == 4 && format.pixelOrder == order;
  if (asWanted && isWideEnough(frame)) return frame.row(0, y);
  rowLoops().unpackPixels[format.pixelBytes == 4][format.pixelOrder != order](frame.row(0, y), scratch, frame.width);
  padRow(scratch, 4 * static_cast<std::size_t>(frame.width), 4 * static_cast<std::size_t>(paddedColumns(frame.width)),
         4);
  return scratch;
}

std::uint8_t* lumaToWrite(const FrameView& frame, int y, std::uint8_t* scratch) {
  return isWideEnough(frame) ? frame.row(0, y) : scratch;
}

std::uint8_t* chromaToWrite(const FrameView& frame, int row, std::uint8_t* scratch) {
  const bool direct = frame.format->hasChromaPairs() && pairBytes(frame) == paddedColumns(frame.width);
  return direct ? frame.row(1, row) : scratch;
}

std::uint8_t* pixelsToWrite(const FrameView& frame, int y, std::uint8_t* scratch) {
  return frame.format->pixelBytes == 4 && isWideEnough(frame) ? frame.row(0, y) : scratch;
}

void writeLuma(const FrameView& frame, int y, const std::uint8_t* luma) {
  if (!liesInFrame(frame, 0, y, luma)) std::memcpy(frame.row(0, y), luma, static_cast<std::size_t>(frame.width));
}

void writeChroma(const FrameView& frame, int row, const std::uint8_t* pairs) {
  const int bytes = pairBytes(frame);
  if (frame.format->hasChromaPairs()) {
    if (!liesInFrame(frame, 1, row, pairs)) std::memcpy(frame.row(1, row), pairs, static_cast<std::size_t>(bytes));
    return;
  }
  std::uint8_t* u = frame.row(1, row);
  std::uint8_t* v = frame.row(2, row);
  const int blocks = bytes / 2 & ~7;
  rowLoops().separate(pairs, u, v, blocks);
  for (int i = blocks; i < bytes / 2; ++i) {
    u[i] = pairs[2 * i];
    v[i] = pairs[2 * i + 1];
  }
}

void writePixels(const FrameView& frame, int y, const std::uint8_t* pixels) {
  if (liesInFrame(frame, 0, y, pixels)) return;
  if (frame.format->pixelBytes == 4) {
    std::memcpy(frame.row(0, y), pixels, 4 * static_cast<std::size_t>(frame.width));
  } else {
    rowLoops().packPixels(pixels, frame.row(0, y), frame.width);
  }
}

}  // namespace vlvk
