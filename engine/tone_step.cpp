/// See tone_step.h.
#include "engine/tone_step.h"

#include <algorithm>

#include "engine/frame_rows.h"
#include "kernels/sliding_box.h"
#include "kernels/smooth_plane.h"
#include "rows/row_loops.h"

namespace vlvk {

namespace {

/// Rows of chroma. Bands begin at even rows of luma; empty ones, at the end of a frame of odd height, have none here
/// either.
struct ChromaRows {
  int begin;
  int end;
};

ChromaRows chromaRowsOf(const FrameJob& job, int band) {
  return {static_cast<int>(job.plan.bandBegin(band) + 1) / 2, static_cast<int>(job.plan.bandEnd(band) + 1) / 2};
}

std::uint8_t* toneRow(const FrameJob& job, int row) {
  return job.toneRows + row * static_cast<std::ptrdiff_t>(toneRowBytes(job));
}

/// Luma and pairs of a row of chroma. Those of pixels are of limited range, as skin is measured.
struct RowOfChroma {
  const std::uint8_t* luma[2];
  const std::uint8_t* pairs;
};

RowOfChroma readRow(const FrameJob& job, const BandScratch& scratch, int row) {
  const int y[2] = {2 * row, std::min(2 * row + 1, job.source.height - 1)};
  if (job.source.format->isYuv()) {
    return {{readLuma(job.source, y[0], scratch.luma[0]), readLuma(job.source, y[1], scratch.luma[1])},
            readChroma(job.source, row, scratch.pairs)};
  }
  const RowLoops& loops = rowLoops();
  const std::uint8_t* pixels[2];
  for (int i = 0; i < 2; ++i) {
    pixels[i] = readPixels(job.source, y[i], job.pixelOrder, scratch.sourcePixels[i]);
    loops.pixelsToLuma[kBt601Limited][job.pixelOrder](pixels[i], scratch.luma[i], job.columns());
  }
  loops.pixelsToChroma[kBt601Limited][kUThenV][job.pixelOrder](pixels[0], pixels[1], scratch.pairs, job.columns());
  return {{scratch.luma[0], scratch.luma[1]}, scratch.pairs};
}

/// Work rows of a band for three planes of `count` columns.
struct ToneSums {
  NarrowColumnSums columns;
  std::uint32_t* box;
  std::uint32_t* boxSquares;

  ToneSums(std::uint8_t* memory, int count)
      : columns(columnSumsIn(memory + 36 * static_cast<std::ptrdiff_t>(count), memory, 3 * count)),
        box(columns.squares + 3 * static_cast<std::ptrdiff_t>(count)),
        boxSquares(box + 3 * static_cast<std::ptrdiff_t>(count)) {}

  /// Box sums of each plane by itself.
  void scan(int halfSize) const {
    const int count = columns.columns / 3;
    for (int first = 0; first < columns.columns; first += count) {
      rowLoops().boxSumsRow(columns.sums + first, columns.squares + first, count, box + first, boxSquares + first,
                            halfSize);
    }
  }
};

}  // namespace

void copyToneRows(const FrameJob& job, int band) {
  const RowLoops& loops = rowLoops();
  const BandScratch scratch = bandScratch(job, band);
  const int count = job.columns() / 2;
  const ChromaRows rows = chromaRowsOf(job, band);
  for (int row = rows.begin; row < rows.end; ++row) {
    const RowOfChroma from = readRow(job, scratch, row);
    std::uint8_t* to = toneRow(job, row);
    loops.averageBlocks(from.luma[0], from.luma[1], to, count);
    loops.separate(from.pairs, to + count, to + 2 * static_cast<std::ptrdiff_t>(count), count);
  }
}

void evenTone(const FrameJob& job, int band) {
  const ChromaRows rows = chromaRowsOf(job, band);
  const int count = job.columns() / 2;
  const int halfSize = job.toneReach - 1;
  const ToneSums sums(bandScratch(job, band).toneSums, count);
  const BoxRows box{.plane = toneRow(job, rows.begin),
                    .stride = toneRowBytes(job),
                    .firstRow = -rows.begin,
                    .lastRow = job.chromaRows() - 1 - rows.begin};
  const auto evenChroma = rowLoops().evenChroma[job.toneFormula.luma.rule];
  slideBox(sums.columns, box, halfSize, rows.end - rows.begin, [&](std::ptrdiff_t i) {
    sums.scan(halfSize);
    const int row = rows.begin + static_cast<int>(i);
    evenChroma({toneRow(job, row), sums.box, sums.boxSquares, count}, job.evenedRow(row), job.toneFormula);
  });
}

}  // namespace vlvk
