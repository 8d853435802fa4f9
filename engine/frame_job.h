/// One frame on its way through a handle: what its bands read.
#ifndef VLVK_ENGINE_FRAME_JOB_H
#define VLVK_ENGINE_FRAME_JOB_H

#include <cstddef>
#include <cstdint>

#include "engine/color_step.h"
#include "engine/frame_view.h"
#include "engine/skin_weights.h"
#include "filter/frame_plan.h"
#include "rows/pixel_formula.h"
#include "rows/pixel_orders.h"

namespace vlvk {

/// Room of a band, in its own part of the handle's memory.
struct BandScratch {
  int begin;                    ///< first row of the band
  std::uint8_t* columnSums;     ///< 2 bytes a column
  std::uint8_t* columnSquares;  ///< 4 bytes a column
  std::uint8_t* luma[2];        ///< rows of luma to be written
  std::uint8_t* pairs;          ///< chroma as it was read
  std::uint8_t* skinPairs;      ///< chroma as skin is measured
  std::uint8_t* newPairs;       ///< chroma to be written
  std::uint8_t* sourcePixels[2];
  std::uint8_t* pixels[2];
  std::uint8_t* mean[2];   ///< smoothed luma of a row pair, where it is finished as soon as it is smoothed
  std::uint8_t* lumaRing;  ///< copied luma, FrameJob::ringRows rows
};

/// A frame with all that was decided about it before its bands start. Read only from then on.
struct FrameJob {
  FrameView source;
  FrameView target;
  bool inPlace;
  FramePlan plan;  ///< in columns of the row loops; in place where bands cannot read each other's luma

  bool smooths;
  PixelFormula formula;
  const SkinWeights* skin;
  const ColorStep* colors;  ///< null: colours stay
  bool hasMatrix;           ///< YUV to YUV of another colorimetry
  YuvMatrix matrix;
  PixelOrder pixelOrder;  ///< in which pixels are worked on
  AlphaRule alpha;        ///< opaque unless both source and target have alpha

  bool copiesLuma;          ///< the source's luma is none, not wide enough for the row loops, or too far apart
  int ringRows;             ///< of copied luma that a band keeps: those in the box and the next
  bool smoothsFirst;        ///< a whole band, before its rows are overwritten
  std::uint8_t* mean;       ///< smoothed luma of all bands, plan.width bytes a row, where bands are smoothed first
  std::uint8_t* savedRows;  ///< see saveNeighbourRows
  std::uint8_t* scratch;    ///< of all bands

  int columns() const { return plan.width; }
  /// A row of unsmoothed luma, and where its smoothed self goes.
  const std::uint8_t* lumaRow(const BandScratch& band, int y) const {
    return copiesLuma ? copiedRow(band, y) : source.row(0, y);
  }
  std::uint8_t* copiedRow(const BandScratch& band, int y) const {
    return band.lumaRing + (y - band.begin) % ringRows * static_cast<std::ptrdiff_t>(plan.width);
  }
  std::uint8_t* meanRow(const BandScratch& band, int y) const {
    return smoothsFirst ? mean + y * static_cast<std::ptrdiff_t>(plan.width) : band.mean[y % 2];
  }
  bool hasPixels() const { return !source.format->isYuv() || !target.format->isYuv() || colors != nullptr; }
};

/// Bytes of a band's scratch for each column.
inline int scratchBytesPerColumn(const FrameJob& job) {
  return 2 + 4 + 2 + 3 + 8 + 8 + 2 + job.ringRows;
}

/// The part of a frame's scratch that belongs to a band.
BandScratch bandScratch(const FrameJob& job, int band);

/// Saves the luma rows around a band, which other bands overwrite or copy for themselves. For jobs whose plan is in
/// place, with every band before any of them runs.
void prepareBand(const FrameJob& job, int band);

/// Takes a band through all steps.
void runBand(const FrameJob& job, int band);

}  // namespace vlvk

#endif
