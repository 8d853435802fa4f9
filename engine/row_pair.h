/// A row pair of a frame with its row of chroma, on its way from the smoothing to the target:
///
///     YUV     luma, chroma, both as smoothed -> blend ->  - the same colorimetry: written as it is
///                                                         - another one: through a matrix
///                                                         - pixels -> colours -> written, or back to YUV;
///                                                           whitening of skin alone then goes by weight
///     pixels  their luma and chroma, as smoothed -> blend -> what both gained is added to the pixels
///                                                         -> colours -> written, or to YUV
///
/// The blend goes by the weight of skin, which a mask may limit. What a row pair needs lies in the cache from its first
/// step to its last.
#ifndef VLVK_ENGINE_ROW_PAIR_H
#define VLVK_ENGINE_ROW_PAIR_H

#include <algorithm>
#include <cstdint>

#include "engine/frame_job.h"
#include "engine/frame_rows.h"
#include "engine/pair_blend.h"
#include "rows/row_loops.h"

namespace vlvk {

/// What the ways of YuvPair and PixelPair share.
class RowPair {
 protected:
  /// @param y  even; the pair is y alone where that is the last row
  RowPair(const FrameJob& job, const BandScratch& scratch, int y)
      : job_(job),
        scratch_(scratch),
        loops_(rowLoops()),
        y_{y, std::min(y + 1, job.source.height - 1)},
        blend_(job, scratch, y_[0], y_[1]) {}

  int columns() const { return job_.columns(); }
  int count() const { return y_[0] == y_[1] ? 1 : 2; }
  int chromaRow() const { return y_[0] / 2; }

  ConstRows lumaRows() const { return {job_.lumaRow(scratch_, y_[0]), job_.lumaRow(scratch_, y_[1])}; }
  MutableRows meanRows() const { return {job_.meanRow(scratch_, y_[0]), job_.meanRow(scratch_, y_[1])}; }
  MutableRows lumaRowsToWrite() const {
    std::uint8_t* first = lumaToWrite(job_.target, y_[0], scratch_.luma[0]);
    return {first, count() == 1 ? first : lumaToWrite(job_.target, y_[1], scratch_.luma[1])};
  }
  MutableRows pixelRowsToWrite() const {
    if (job_.target.format->isYuv()) return {scratch_.pixels[0], scratch_.pixels[count() - 1]};
    std::uint8_t* first = pixelsToWrite(job_.target, y_[0], scratch_.pixels[0]);
    return {first, count() == 1 ? first : pixelsToWrite(job_.target, y_[1], scratch_.pixels[1])};
  }

  void changeColors(MutableRows pixels) const;
  void writeLumaRows(ConstRows luma) const;
  void writePixelRows(ConstRows pixels) const;

  const FrameJob& job_;
  const BandScratch& scratch_;
  const RowLoops& loops_;
  int y_[2];
  PairBlend blend_;
};

}  // namespace vlvk

#endif
