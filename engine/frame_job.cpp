/// See frame_job.h: a band, from the smoothing of its luma to its row pairs.
#include "engine/frame_job.h"

#include <cstring>

#include "engine/frame_rows.h"
#include "engine/row_pair.h"
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

/// A row of luma for the smoothing, wide enough for the row loops.
void copyLuma(const FrameJob& job, const BandScratch& scratch, int y) {
  std::uint8_t* luma = job.lumaCopy + y * job.lumaStride;
  if (job.source.format->isYuv()) {
    const std::uint8_t* row = readLuma(job.source, y, luma);
    if (row != luma) std::memcpy(luma, row, static_cast<std::size_t>(job.columns()));
    return;
  }
  const std::uint8_t* pixels = readPixels(job.source, y, job.pixelOrder, scratch.sourcePixels[0]);
  rowLoops().pixelsToLuma[kBt601Full][job.pixelOrder](pixels, luma, job.columns());
}

void smoothBand(const FrameJob& job, const BandScratch& scratch, int band) {
  const int begin = beginOf(job, band);
  const std::uint8_t* saved = job.plan.inPlace ? savedRowsOf(job, band) : nullptr;
  smoothRows(columnSumsIn(scratch.columnSums, scratch.columnSquares, job.columns()),
             rowsAround(job.plan, band, job.lumaRow(begin), saved), job.plan.reach, job.formula,
             endOf(job, band) - begin, {job.lumaRow(begin), job.lumaStride}, {job.meanRow(begin), job.columns()});
}

}  // namespace

BandScratch bandScratch(const FrameJob& job, int band) {
  const std::ptrdiff_t columns = job.columns();
  std::uint8_t* next = job.scratch + band * columns * kScratchBytesPerColumn;
  const auto take = [&](std::ptrdiff_t bytesPerColumn) {
    std::uint8_t* part = next;
    next += bytesPerColumn * columns;
    return part;
  };
  BandScratch scratch{};
  scratch.columnSquares = take(4);  // first: the band's memory is aligned for them
  scratch.columnSums = take(2);
  for (auto*& row : scratch.luma)
    row = take(1);
  scratch.pairs = take(1);
  scratch.skinPairs = take(1);
  scratch.newPairs = take(1);
  for (auto*& row : scratch.sourcePixels)
    row = take(4);
  for (auto*& row : scratch.pixels)
    row = take(4);
  return scratch;
}

void prepareBand(const FrameJob& job, int band) {
  if (job.plan.inPlace) saveNeighbourRows(job.plan, job.luma, band, savedRowsOf(job, band));
  if (!job.copiesLuma) return;
  const BandScratch scratch = bandScratch(job, band);
  for (int y = beginOf(job, band); y < endOf(job, band); ++y)
    copyLuma(job, scratch, y);
}

void runBand(const FrameJob& job, int band) {
  const BandScratch scratch = bandScratch(job, band);
  if (job.smooths && beginOf(job, band) < endOf(job, band)) smoothBand(job, scratch, band);
  for (int y = beginOf(job, band); y < endOf(job, band); y += 2)
    runRowPair(job, scratch, y);
}

}  // namespace vlvk
