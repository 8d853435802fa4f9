/// See row_pair.h.
///
///     YUV     luma, smoothed luma, chroma -> blend ->  - the same colorimetry: written as it is
///                                                      - another one: through a matrix
///                                                      - pixels -> colours -> written, or back to YUV
///     pixels  luma, smoothed luma, chroma of the pixels -> blend -> what luma gained is added to the pixels
///                                                                -> colours -> written, or to YUV
#include "engine/row_pair.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "engine/frame_rows.h"
#include "rows/row_loops.h"

namespace vlvk {

namespace {

/// Two rows; the same one twice at the odd end of a frame.
template <class Byte>
struct Rows {
  Byte* first;
  Byte* second;
};
using ConstRows = Rows<const std::uint8_t>;
using MutableRows = Rows<std::uint8_t>;

/// The row pair in work.
class RowPair {
 public:
  RowPair(const FrameJob& job, const BandScratch& scratch, int y)
      : job_(job), scratch_(scratch), loops_(rowLoops()), y_{y, std::min(y + 1, job.source.height - 1)} {}

  void runYuv() const;
  void runPixels() const;

 private:
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

  /// Luma mixed with its smoothed self, into `out`.
  void blend(const std::uint8_t* pairs, MutableRows out) const;
  void changeColors(MutableRows pixels) const;
  void repeatLastPixel(MutableRows pixels) const;
  void yuvToPixels(ConstRows luma, const std::uint8_t* pairs) const;
  void yuvToYuv(ConstRows luma, const std::uint8_t* pairs) const;
  void writeLumaRows(ConstRows luma) const;
  void writePairs(const std::uint8_t* pairs) const;
  void writePixelRows(ConstRows pixels) const;

  const FrameJob& job_;
  const BandScratch& scratch_;
  const RowLoops& loops_;
  int y_[2];
};

void RowPair::blend(const std::uint8_t* pairs, MutableRows out) const {
  const SkinWeights& skin = *job_.skin;
  if (skin.isTurned) {
    loops_.convertChroma(pairs, scratch_.skinPairs, columns(), skin.turn);
    pairs = scratch_.skinPairs;
  }
  const ConstRows luma = lumaRows();
  const MutableRows mean = meanRows();
  loops_.blendRowPair(luma.first, luma.second, mean.first, mean.second, out.first, out.second, pairs, columns(),
                      skin.weights, skin.centre);
}

void RowPair::changeColors(MutableRows pixels) const {
  if (job_.colors == nullptr) return;
  job_.colors->apply(pixels.first, columns(), job_.alpha);
  if (count() == 2) job_.colors->apply(pixels.second, columns(), job_.alpha);
}

/// The last block of an odd width has one column of the frame: the one past it is smoothed by another box.
void RowPair::repeatLastPixel(MutableRows pixels) const {
  const int width = job_.source.width;
  if (width % 2 == 0) return;
  for (std::uint8_t* row : {pixels.first, pixels.second})
    std::memcpy(row + 4 * width, row + 4 * (width - 1), 4);
}

void RowPair::writeLumaRows(ConstRows luma) const {
  writeLuma(job_.target, y_[0], luma.first);
  if (count() == 2) writeLuma(job_.target, y_[1], luma.second);
}

void RowPair::writePixelRows(ConstRows pixels) const {
  writePixels(job_.target, y_[0], pixels.first);
  if (count() == 2) writePixels(job_.target, y_[1], pixels.second);
}

/// Chroma of the source, in the order of the source, as chroma of the target.
void RowPair::writePairs(const std::uint8_t* pairs) const {
  if (job_.source.format->chromaOrder == job_.target.format->chromaOrder) {
    writeChroma(job_.target, chromaRow(), pairs);
    return;
  }
  for (int i = 0; i < columns(); i += 2) {
    scratch_.newPairs[i] = pairs[i + 1];
    scratch_.newPairs[i + 1] = pairs[i];
  }
  writeChroma(job_.target, chromaRow(), scratch_.newPairs);
}

/// Without a change of colours.
void RowPair::yuvToYuv(ConstRows luma, const std::uint8_t* pairs) const {
  if (job_.hasMatrix) {
    const MutableRows out = lumaRowsToWrite();
    loops_.convertLuma(luma.first, pairs, out.first, columns(), job_.matrix);
    if (count() == 2) loops_.convertLuma(luma.second, pairs, out.second, columns(), job_.matrix);
    writeLumaRows({out.first, out.second});
    std::uint8_t* newPairs = chromaToWrite(job_.target, chromaRow(), scratch_.newPairs);
    loops_.convertChroma(pairs, newPairs, columns(), job_.matrix);
    writeChroma(job_.target, chromaRow(), newPairs);
    return;
  }
  writeLumaRows(luma);
  if (!job_.inPlace) writePairs(pairs);
}

/// By way of pixels.
void RowPair::yuvToPixels(ConstRows luma, const std::uint8_t* pairs) const {
  const MutableRows pixels = pixelRowsToWrite();
  const ChromaOrder order = job_.source.format->chromaOrder;
  loops_.yuvToPixels[job_.source.colors][order][job_.pixelOrder](luma.first, luma.second, pairs, pixels.first,
                                                                 pixels.second, columns());
  changeColors(pixels);
  if (!job_.target.format->isYuv()) {
    writePixelRows({pixels.first, pixels.second});
    return;
  }
  const FrameFormat& format = *job_.target.format;
  const MutableRows out = lumaRowsToWrite();
  std::uint8_t* newPairs = chromaToWrite(job_.target, chromaRow(), scratch_.newPairs);
  loops_.pixelsToYuv[job_.target.colors][format.chromaOrder][job_.pixelOrder](pixels.first, pixels.second, out.first,
                                                                              out.second, newPairs, columns());
  writeLumaRows({out.first, out.second});
  writeChroma(job_.target, chromaRow(), newPairs);
}

void RowPair::runYuv() const {
  const bool needsPairs = job_.smooths || job_.hasPixels() || !job_.inPlace;
  const std::uint8_t* pairs = needsPairs ? readChroma(job_.source, chromaRow(), scratch_.pairs) : nullptr;
  ConstRows luma = lumaRows();
  if (job_.smooths) {
    const bool isLast = !job_.hasPixels() && !job_.hasMatrix;
    const MutableRows out = isLast ? lumaRowsToWrite() : meanRows();
    blend(pairs, out);
    luma = {out.first, out.second};
  }
  if (job_.hasPixels()) {
    yuvToPixels(luma, pairs);
  } else {
    yuvToYuv(luma, pairs);
  }
}

void RowPair::runPixels() const {
  const auto read = [&](int i) { return readPixels(job_.source, y_[i], job_.pixelOrder, scratch_.sourcePixels[i]); };
  const std::uint8_t* first = read(0);
  const ConstRows source{first, count() == 1 ? first : read(1)};
  // Without smoothing luma gains nothing: any row will do, against itself.
  ConstRows luma{scratch_.luma[0], scratch_.luma[0]};
  ConstRows newLuma = luma;
  if (job_.smooths) {
    loops_.pixelsToChroma[kBt601Limited][kUThenV][job_.pixelOrder](source.first, source.second, scratch_.pairs,
                                                                   columns());
    luma = lumaRows();
    const MutableRows out = meanRows();
    blend(scratch_.pairs, out);
    newLuma = {out.first, out.second};
  }
  const MutableRows pixels = pixelRowsToWrite();
  loops_.shiftPixels[job_.alpha](source.first, luma.first, newLuma.first, pixels.first, columns());
  if (count() == 2) {
    loops_.shiftPixels[job_.alpha](source.second, luma.second, newLuma.second, pixels.second, columns());
  }
  changeColors(pixels);
  if (!job_.target.format->isYuv()) {
    writePixelRows({pixels.first, pixels.second});
    return;
  }
  const FrameFormat& format = *job_.target.format;
  const auto toLuma = loops_.pixelsToLuma[job_.target.colors][job_.pixelOrder];
  const MutableRows out = lumaRowsToWrite();
  toLuma(pixels.first, out.first, columns());
  if (count() == 2) toLuma(pixels.second, out.second, columns());
  writeLumaRows({out.first, out.second});
  repeatLastPixel(pixels);
  std::uint8_t* newPairs = chromaToWrite(job_.target, chromaRow(), scratch_.newPairs);
  loops_.pixelsToChroma[job_.target.colors][format.chromaOrder][job_.pixelOrder](pixels.first, pixels.second, newPairs,
                                                                                 columns());
  writeChroma(job_.target, chromaRow(), newPairs);
}

}  // namespace

void runRowPair(const FrameJob& job, const BandScratch& scratch, int y) {
  const RowPair pair(job, scratch, y);
  if (job.source.format->isYuv()) {
    pair.runYuv();
  } else {
    pair.runPixels();
  }
}

}  // namespace vlvk
