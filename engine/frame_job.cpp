/// See frame_job.h: a band, from the smoothing of its luma to its row pairs.
#include "engine/frame_job.h"

#include <algorithm>
#include <cstring>

#include "engine/frame_rows.h"
#include "engine/pixel_pair.h"
#include "engine/tone_step.h"
#include "engine/yuv_pair.h"
#include "filter/band_rows.h"
#include "kernels/smooth_plane.h"
#include "rows/row_loops.h"

namespace vlvk {

namespace {

int beginOf(const FrameJob& job, int band) {
  return static_cast<int>(job.plan.bandBegin(band));
}

int endOf(const FrameJob& job, int band) {
  return static_cast<int>(job.plan.bandEnd(band));
}

std::uint8_t* savedRowsOf(const FrameJob& job, int band) {
  return job.savedRows + static_cast<std::ptrdiff_t>(job.plan.savedRowsBegin(band)) * job.plan.stride;
}

/// A row of the source's luma in the form of the row loops.
void copyLuma(const FrameJob& job, const BandScratch& scratch, int y, std::uint8_t* luma) {
  if (job.source.format->isYuv()) {
    const std::uint8_t* row = readLuma(job.source, y, luma);
    if (row != luma) std::memcpy(luma, row, static_cast<std::size_t>(job.columns()));
    return;
  }
  const std::uint8_t* pixels = readPixels(job.source, y, job.pixelOrder, scratch.sourcePixels[0]);
  rowLoops().pixelsToLuma[kBt601Full][job.pixelOrder](pixels, luma, job.columns());
}

/// Saves the luma rows around a band.
void saveLuma(const FrameJob& job, int band) {
  if (!job.copiesLuma) {
    saveNeighbourRows(job.plan, job.source.plane[0], band, savedRowsOf(job, band));
    return;
  }
  const BandScratch scratch = bandScratch(job, band);
  saveNeighbourRows(job.plan, band, savedRowsOf(job, band),
                    [&](int y, std::uint8_t* to) { copyLuma(job, scratch, y, to); });
}

/// Asks for a row of pixels that is wanted soon: out of memory they take longer than what is done to them.
void prefetchPixels(const FrameJob& job, int y) {
  constexpr int kCacheLine = 64;
  const std::uint8_t* row = job.source.row(0, y);
  const int bytes = job.source.format->pixelBytes * job.source.width;
  for (int i = 0; i < bytes; i += kCacheLine)
    __builtin_prefetch(row + i, 0, 2);
}

/// A band on its way: its rows of luma are copied where they must be, smoothed and finished, each as late as it may.
class BandRun {
 public:
  BandRun(const FrameJob& job, int band)
      : job_(job), band_(band), scratch_(bandScratch(job, band)), begin_(beginOf(job, band)), end_(endOf(job, band)) {}

  /// All steps but the smoothing.
  void unsmoothed() const {
    for (int y = begin_; y < end_; ++y) {
      copyRow(y);
      finishAt(y);
    }
  }

  /// The whole band is smoothed first: its boxes reach up to rows that would be overwritten already.
  void smoothedInPlace() const {
    smooth([](std::ptrdiff_t) {});
    for (int y = begin_; y < end_; ++y)
      finishAt(y);
  }

  /// A row pair is finished as soon as it is smoothed, while it lies in the cache.
  void smoothed() const {
    const int reach = job_.plan.reach;
    for (int y = begin_; y < std::min(begin_ + reach, end_); ++y)
      copyRow(y);
    smooth([&](std::ptrdiff_t row) {
      const int y = begin_ + static_cast<int>(row);
      if (y + reach < end_) copyRow(y + reach);
      if (y + reach + 1 < end_ && !job_.source.format->isYuv()) prefetchPixels(job_, y + reach + 1);
      finishAt(y);
    });
  }

 private:
  void copyRow(int y) const {
    if (job_.copiesLuma) copyLuma(job_, scratch_, y, job_.copiedRow(scratch_, y));
  }

  /// Bands begin at even rows.
  void finishAt(int y) const {
    if (y % 2 == 0 && y != end_ - 1) return;
    if (job_.source.format->isYuv()) {
      YuvPair(job_, scratch_, y & ~1).run();
    } else {
      PixelPair(job_, scratch_, y & ~1).run();
    }
  }

  template <class AfterRow>
  void smooth(const AfterRow& afterRow) const {
    const std::uint8_t* saved = job_.plan.inPlace ? savedRowsOf(job_, band_) : nullptr;
    BoxRows rows = rowsAround(job_.plan, band_, job_.lumaRow(scratch_, begin_), saved);
    rows.ringRows = job_.ringRows;
    const auto rowsAt = [&](std::ptrdiff_t row) {
      const int y = begin_ + static_cast<int>(row);
      return SmoothedRow{job_.lumaRow(scratch_, y), job_.meanRow(scratch_, y)};
    };
    smoothRows(columnSumsIn(scratch_.columnSums, scratch_.columnSquares, job_.columns()), rows, job_.plan.reach,
               job_.formula, end_ - begin_, rowsAt, afterRow);
  }

  const FrameJob& job_;
  int band_;
  BandScratch scratch_;
  int begin_;
  int end_;
};

}  // namespace

BandScratch bandScratch(const FrameJob& job, int band) {
  const std::ptrdiff_t columns = job.columns();
  std::uint8_t* next = job.scratch + band * columns * scratchBytesPerColumn(job);
  const auto take = [&](std::ptrdiff_t bytesPerColumn) {
    std::uint8_t* part = next;
    next += bytesPerColumn * columns;
    return part;
  };
  BandScratch scratch{};
  scratch.begin = beginOf(job, band);
  scratch.columnSquares = take(4);  // first: the band's memory is aligned for them
  scratch.toneSums = job.evens ? take(kToneSumBytesPerColumn) : nullptr;
  scratch.columnSums = take(2);
  for (auto*& row : scratch.luma)
    row = take(1);
  scratch.pairs = take(1);
  scratch.skinPairs = take(1);
  scratch.newPairs = take(1);
  scratch.evenedPairs = take(1);
  scratch.skinWeights = take(1);
  for (auto*& row : scratch.weights)
    row = take(1);
  scratch.maskRow = take(1);
  for (auto*& row : scratch.sourcePixels)
    row = take(4);
  for (auto*& row : scratch.pixels)
    row = take(4);
  scratch.whitenedPixels = take(4);
  scratch.channelWeights = take(4);
  for (auto*& row : scratch.mean)
    row = take(1);
  scratch.lumaRing = take(job.ringRows);
  return scratch;
}

void prepareBand(const FrameJob& job, int band) {
  if (job.plan.inPlace) saveLuma(job, band);
  if (job.evens) copyToneRows(job, band);
}

void runBand(const FrameJob& job, int band) {
  if (job.evens) evenTone(job, band);
  const BandRun run(job, band);
  if (!job.smooths) {
    run.unsmoothed();
  } else if (job.smoothsFirst) {
    run.smoothedInPlace();
  } else {
    run.smoothed();
  }
}

}  // namespace vlvk
