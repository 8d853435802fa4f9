/// One frame on its way through a handle: what its bands read.
#ifndef VLVK_ENGINE_FRAME_JOB_H
#define VLVK_ENGINE_FRAME_JOB_H

#include <cstddef>
#include <cstdint>

#include "engine/color_step.h"
#include "engine/frame_view.h"
#include "engine/mask_rows.h"
#include "engine/skin_weights.h"
#include "filter/frame_plan.h"
#include "rows/pixel_formula.h"
#include "rows/pixel_orders.h"
#include "rows/tone_formula.h"

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
  std::uint8_t* evenedPairs;    ///< chroma after its evening
  std::uint8_t* skinWeights;    ///< of a row of chroma, one for each column
  std::uint8_t* weights[2];     ///< the same times the mask, of each row; where there is a mask
  std::uint8_t* maskRow;        ///< the mask, stretched
  std::uint8_t* sourcePixels[2];
  std::uint8_t* pixels[2];
  std::uint8_t* whitenedPixels;  ///< where whitening goes by weight, and the weights of their channels
  std::uint8_t* channelWeights;
  std::uint8_t* mean[2];   ///< smoothed luma of a row pair, where it is finished as soon as it is smoothed
  std::uint8_t* lumaRing;  ///< copied luma, FrameJob::ringRows rows
  std::uint8_t* toneSums;  ///< see tone_step.cpp; where tone is evened
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
  MaskView mask;  ///< limits the weights
  bool evens;     ///< the tone of skin
  int toneReach;  ///< in samples of chroma
  ToneFormula toneFormula;
  bool whitensSkin;         ///< alone, by the weights
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
  std::uint8_t* toneRows;   ///< luma and chroma at the resolution of chroma, see tone_step.h; where tone is evened
  std::uint8_t* toneMeans;  ///< evened chroma, plan.width bytes a row
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
  int chromaRows() const { return (source.height + 1) / 2; }
  std::uint8_t* evenedRow(int row) const { return toneMeans + row * static_cast<std::ptrdiff_t>(plan.width); }
  /// Whether weights are written down for each pixel. Else the blend makes them out of chroma on its way, which is
  /// faster.
  bool hasWeightRows() const {
    return evens || (whitensSkin && colors != nullptr) || (smooths && mask.plane != nullptr);
  }
  bool hasPixels() const { return !source.format->isYuv() || !target.format->isYuv() || colors != nullptr; }
};

/// Column sums and box sums of three planes of half the columns, 16-bit and 32-bit, and twice 32-bit.
inline constexpr int kToneSumBytesPerColumn = 3 * (2 + 4 + 4 + 4) / 2;

/// Bytes of a band's scratch for each column.
inline int scratchBytesPerColumn(const FrameJob& job) {
  const int perFrame = 2 + 4 + 2 + 3 + 1 + 4 + 8 + 8 + 8 + 2;
  return perFrame + job.ringRows + (job.evens ? kToneSumBytesPerColumn : 0);
}

/// The part of a frame's scratch that belongs to a band.
BandScratch bandScratch(const FrameJob& job, int band);

/// Whether bands are to be prepared.
inline bool needsPreparing(const FrameJob& job) {
  return job.plan.inPlace || job.evens;
}

/// Copies what bands need of each other's rows, before the first of them overwrites its own: the luma rows around a
/// band where the plan is in place, and what tone is evened by. With every band before any of them runs.
void prepareBand(const FrameJob& job, int band);

/// Takes a band through all steps.
void runBand(const FrameJob& job, int band);

}  // namespace vlvk

#endif
