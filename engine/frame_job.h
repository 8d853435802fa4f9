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
  std::uint8_t* columnSums;     ///< 2 bytes a column
  std::uint8_t* columnSquares;  ///< 4 bytes a column
  std::uint8_t* luma[2];        ///< rows of luma to be written
  std::uint8_t* pairs;          ///< chroma as it was read
  std::uint8_t* skinPairs;      ///< chroma as skin is measured
  std::uint8_t* newPairs;       ///< chroma to be written
  std::uint8_t* sourcePixels[2];
  std::uint8_t* pixels[2];
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

  bool copiesLuma;           ///< the source has no plane of luma in the form of the row loops
  const std::uint8_t* luma;  ///< unsmoothed: the source's plane, or lumaCopy
  std::ptrdiff_t lumaStride;
  std::uint8_t* lumaCopy;
  std::uint8_t* mean;       ///< smoothed luma, plan.width bytes a row
  std::uint8_t* savedRows;  ///< see saveNeighbourRows
  std::uint8_t* scratch;    ///< of all bands

  int columns() const { return plan.width; }
  const std::uint8_t* lumaRow(int y) const { return luma + y * lumaStride; }
  std::uint8_t* meanRow(int y) const { return mean + y * static_cast<std::ptrdiff_t>(plan.width); }
  bool hasPixels() const { return !source.format->isYuv() || !target.format->isYuv() || colors != nullptr; }
};

/// Bytes of a band's scratch for each column.
inline constexpr int kScratchBytesPerColumn = 2 + 4 + 2 + 3 + 8 + 8;

/// The part of a frame's scratch that belongs to a band.
BandScratch bandScratch(const FrameJob& job, int band);

/// Before any row is written, where the plan is in place: saves what a band needs of rows that others write, or copy.
void prepareBand(const FrameJob& job, int band);

/// Takes a band through all steps, after prepareBand of all bands.
void runBand(const FrameJob& job, int band);

}  // namespace vlvk

#endif
