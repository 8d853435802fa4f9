/// See row_pair.h.
///
///     YUV     luma, chroma, both as smoothed -> blend ->  - the same colorimetry: written as it is
///                                                         - another one: through a matrix
///                                                         - pixels -> colours -> written, or back to YUV;
///                                                           whitening of skin alone then goes by weight
///     pixels  their luma and chroma, as smoothed -> blend -> what both gained is added to the pixels
///                                                         -> colours -> written, or to YUV
///
/// The blend goes by the weight of skin, which a mask may limit.
#include "engine/row_pair.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "engine/frame_rows.h"
#include "engine/pair_blend.h"
#include "rows/row_loops.h"

namespace vlvk {

namespace {

/// Luma of a row pair with its chroma.
struct YuvRows {
  ConstRows luma;
  const std::uint8_t* pairs;
};

/// The row pair in work.
class RowPair {
 public:
  RowPair(const FrameJob& job, const BandScratch& scratch, int y)
      : job_(job),
        scratch_(scratch),
        loops_(rowLoops()),
        y_{y, std::min(y + 1, job.source.height - 1)},
        blend_(job, scratch, y_[0], y_[1]) {}

  void runYuv();
  void runPixels();

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

  void changeColors(MutableRows pixels) const;
  void repeatLastPixel(MutableRows pixels) const;
  const std::uint8_t* inTargetOrder(const std::uint8_t* pairs, std::uint8_t* scratch) const;
  YuvRows asTarget(const YuvRows& rows, MutableRows lumaScratch, std::uint8_t* pairsScratch) const;
  void toPixels(const YuvRows& rows, MutableRows pixels) const;
  void toYuv(MutableRows pixels, MutableRows luma, std::uint8_t* pairs) const;
  void yuvToYuv(const YuvRows& rows) const;
  void yuvByPixels(const YuvRows& rows) const;
  void whitenSkin(const YuvRows& rows) const;
  void shiftPixels(ConstRows source, MutableRows pixels);
  void writeMeansAsYuv(MutableRows pixels) const;
  void writeLumaRows(ConstRows luma) const;
  void writePixelRows(ConstRows pixels) const;

  const FrameJob& job_;
  const BandScratch& scratch_;
  const RowLoops& loops_;
  int y_[2];
  PairBlend blend_;
};

void RowPair::changeColors(MutableRows pixels) const {
  if (job_.colors == nullptr) return;
  const auto change = [&](std::uint8_t* row, const std::uint8_t* weights) {
    if (job_.whitensSkin) {
      loops_.repeatForChannels(weights, scratch_.channelWeights, columns());
      job_.colors->applyByWeight(row, columns(), job_.alpha, scratch_.channelWeights, scratch_.whitenedPixels);
    } else {
      job_.colors->apply(row, columns(), job_.alpha);
    }
  };
  change(pixels.first, blend_.weights().first);
  if (count() == 2) change(pixels.second, blend_.weights().second);
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

/// Chroma in the order of the target.
const std::uint8_t* RowPair::inTargetOrder(const std::uint8_t* pairs, std::uint8_t* scratch) const {
  if (job_.source.format->chromaOrder == job_.target.format->chromaOrder) return pairs;
  for (int i = 0; i < columns(); i += 2) {
    scratch[i] = pairs[i + 1];
    scratch[i + 1] = pairs[i];
  }
  return scratch;
}

/// Rows of the source as rows of the target, without a change of colours.
YuvRows RowPair::asTarget(const YuvRows& rows, MutableRows lumaScratch, std::uint8_t* pairsScratch) const {
  if (!job_.hasMatrix) return {rows.luma, inTargetOrder(rows.pairs, pairsScratch)};
  loops_.convertLuma(rows.luma.first, rows.pairs, lumaScratch.first, columns(), job_.matrix);
  if (count() == 2) loops_.convertLuma(rows.luma.second, rows.pairs, lumaScratch.second, columns(), job_.matrix);
  loops_.convertChroma(rows.pairs, pairsScratch, columns(), job_.matrix);
  return {{lumaScratch.first, lumaScratch.second}, pairsScratch};
}

void RowPair::yuvToYuv(const YuvRows& rows) const {
  const YuvRows out = asTarget(rows, lumaRowsToWrite(), chromaToWrite(job_.target, chromaRow(), scratch_.newPairs));
  writeLumaRows(out.luma);
  if (job_.hasMatrix || !job_.inPlace || job_.evens) writeChroma(job_.target, chromaRow(), out.pairs);
}

void RowPair::toPixels(const YuvRows& rows, MutableRows pixels) const {
  const auto convert = loops_.yuvToPixels[job_.source.colors][job_.source.format->chromaOrder][job_.pixelOrder];
  convert(rows.luma.first, rows.luma.second, rows.pairs, pixels.first, pixels.second, columns());
}

void RowPair::toYuv(MutableRows pixels, MutableRows luma, std::uint8_t* pairs) const {
  const auto convert = loops_.pixelsToYuv[job_.target.colors][job_.target.format->chromaOrder][job_.pixelOrder];
  convert(pixels.first, pixels.second, luma.first, luma.second, pairs, columns());
}

void RowPair::yuvByPixels(const YuvRows& rows) const {
  const MutableRows pixels = pixelRowsToWrite();
  toPixels(rows, pixels);
  changeColors(pixels);
  if (!job_.target.format->isYuv()) {
    writePixelRows({pixels.first, pixels.second});
    return;
  }
  const MutableRows luma = lumaRowsToWrite();
  std::uint8_t* pairs = chromaToWrite(job_.target, chromaRow(), scratch_.newPairs);
  toYuv(pixels, luma, pairs);
  writeLumaRows({luma.first, luma.second});
  writeChroma(job_.target, chromaRow(), pairs);
}

/// Whitens everything by way of pixels and mixes that in: what is no skin keeps its bytes, which a way through pixels
/// would not leave as they are.
void RowPair::whitenSkin(const YuvRows& rows) const {
  toPixels(rows, {scratch_.pixels[0], scratch_.pixels[count() - 1]});
  for (int i = 0; i < count(); ++i)
    job_.colors->apply(scratch_.pixels[i], columns(), job_.alpha);
  const std::ptrdiff_t row = columns();
  std::uint8_t* first = scratch_.whitenedPixels;  // no pixels here, but room for three rows
  const MutableRows whitened{first, count() == 1 ? first : first + row};
  std::uint8_t* whitenedPairs = first + 2 * row;
  toYuv({scratch_.pixels[0], scratch_.pixels[count() - 1]}, whitened, whitenedPairs);

  const ConstRows weights = blend_.weights();
  const MutableRows luma = lumaRowsToWrite();
  std::uint8_t* pairs = chromaToWrite(job_.target, chromaRow(), scratch_.newPairs);
  const YuvRows before = asTarget(rows, luma, scratch_.skinPairs);
  loops_.blendByWeights(before.luma.first, whitened.first, luma.first, weights.first, columns());
  if (count() == 2) {
    loops_.blendByWeights(before.luma.second, whitened.second, luma.second, weights.second, columns());
  }
  loops_.mixPairs(before.pairs, whitenedPairs, weights.first, weights.second, pairs, columns());
  writeLumaRows({luma.first, luma.second});
  writeChroma(job_.target, chromaRow(), pairs);
}

void RowPair::runYuv() {
  const bool needsPairs = blend_.isNeeded() || job_.hasPixels() || !job_.inPlace;
  const std::uint8_t* pairs = needsPairs ? readChroma(job_.source, chromaRow(), scratch_.pairs) : nullptr;
  ConstRows luma = lumaRows();
  if (blend_.isNeeded()) blend_.findSkin(pairs);
  if (job_.smooths) {
    const bool isLast = !job_.hasPixels() && !job_.hasMatrix;
    const MutableRows out = isLast ? lumaRowsToWrite() : meanRows();
    blend_.luma(lumaRows(), meanRows(), out);
    luma = {out.first, out.second};
  }
  const YuvRows rows{luma, blend_.chroma(pairs)};
  if (!job_.hasPixels()) {
    yuvToYuv(rows);
  } else if (job_.whitensSkin && job_.target.format->isYuv() && !job_.colors->usesTable()) {
    whitenSkin(rows);
  } else {
    yuvByPixels(rows);
  }
}

/// Pixels with what their luma and chroma gain.
void RowPair::shiftPixels(ConstRows source, MutableRows pixels) {
  // Without smoothing luma gains nothing: any row will do, against itself.
  ConstRows luma{scratch_.luma[0], scratch_.luma[0]};
  ConstRows newLuma = luma;
  if (blend_.isNeeded()) {
    loops_.pixelsToChroma[kBt601Limited][kUThenV][job_.pixelOrder](source.first, source.second, scratch_.pairs,
                                                                   columns());
    blend_.findSkin(scratch_.pairs);
  }
  if (job_.smooths) {
    luma = lumaRows();
    const MutableRows out = meanRows();
    blend_.luma(luma, out, out);
    newLuma = {out.first, out.second};
  }
  const auto shift = loops_.shiftPixels[job_.alpha];
  shift(source.first, luma.first, newLuma.first, pixels.first, columns());
  if (count() == 2) shift(source.second, luma.second, newLuma.second, pixels.second, columns());
  if (!job_.evens) return;
  const std::uint8_t* newPairs = blend_.chroma(scratch_.pairs);
  const auto shiftChroma = loops_.shiftChroma[job_.pixelOrder];
  shiftChroma(scratch_.pairs, newPairs, pixels.first, columns());
  if (count() == 2) shiftChroma(scratch_.pairs, newPairs, pixels.second, columns());
}

/// Pixels with colours of their own in full resolution: chroma of the mean of each block.
void RowPair::writeMeansAsYuv(MutableRows pixels) const {
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

void RowPair::runPixels() {
  const auto read = [&](int i) { return readPixels(job_.source, y_[i], job_.pixelOrder, scratch_.sourcePixels[i]); };
  const std::uint8_t* first = read(0);
  const MutableRows pixels = pixelRowsToWrite();
  shiftPixels({first, count() == 1 ? first : read(1)}, pixels);
  changeColors(pixels);
  if (job_.target.format->isYuv()) {
    writeMeansAsYuv(pixels);
  } else {
    writePixelRows({pixels.first, pixels.second});
  }
}

}  // namespace

void runRowPair(const FrameJob& job, const BandScratch& scratch, int y) {
  RowPair pair(job, scratch, y);
  if (job.source.format->isYuv()) {
    pair.runYuv();
  } else {
    pair.runPixels();
  }
}

}  // namespace vlvk
