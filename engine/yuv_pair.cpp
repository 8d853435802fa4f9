/// See yuv_pair.h.
#include "engine/yuv_pair.h"

#include <cstddef>

namespace vlvk {

/// Chroma in the order of the target.
const std::uint8_t* YuvPair::inTargetOrder(const std::uint8_t* pairs, std::uint8_t* scratch) const {
  if (job_.source.format->chromaOrder == job_.target.format->chromaOrder) return pairs;
  for (int i = 0; i < columns(); i += 2) {
    scratch[i] = pairs[i + 1];
    scratch[i + 1] = pairs[i];
  }
  return scratch;
}

/// Rows of the source as rows of the target, without a change of colours.
YuvPair::YuvRows YuvPair::asTarget(const YuvRows& rows, MutableRows lumaScratch, std::uint8_t* pairsScratch) const {
  if (!job_.hasMatrix) return {rows.luma, inTargetOrder(rows.pairs, pairsScratch)};
  loops_.convertLuma(rows.luma.first, rows.pairs, lumaScratch.first, columns(), job_.matrix);
  if (count() == 2) loops_.convertLuma(rows.luma.second, rows.pairs, lumaScratch.second, columns(), job_.matrix);
  loops_.convertChroma(rows.pairs, pairsScratch, columns(), job_.matrix);
  return {{lumaScratch.first, lumaScratch.second}, pairsScratch};
}

void YuvPair::writeAsTarget(const YuvRows& rows) const {
  const YuvRows out = asTarget(rows, lumaRowsToWrite(), chromaToWrite(job_.target, chromaRow(), scratch_.newPairs));
  writeLumaRows(out.luma);
  if (job_.hasMatrix || !job_.inPlace || job_.evens) writeChroma(job_.target, chromaRow(), out.pairs);
}

void YuvPair::toPixels(const YuvRows& rows, MutableRows pixels) const {
  const auto convert = loops_.yuvToPixels[job_.source.colors][job_.source.format->chromaOrder][job_.pixelOrder];
  convert(rows.luma.first, rows.luma.second, rows.pairs, pixels.first, pixels.second, columns());
}

void YuvPair::toYuv(MutableRows pixels, MutableRows luma, std::uint8_t* pairs) const {
  const auto convert = loops_.pixelsToYuv[job_.target.colors][job_.target.format->chromaOrder][job_.pixelOrder];
  convert(pixels.first, pixels.second, luma.first, luma.second, pairs, columns());
}

void YuvPair::writeByPixels(const YuvRows& rows) const {
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
void YuvPair::writeWhitenedSkin(const YuvRows& rows) const {
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

void YuvPair::run() {
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
    writeAsTarget(rows);
  } else if (job_.whitensSkin && job_.target.format->isYuv() && !job_.colors->usesTable()) {
    writeWhitenedSkin(rows);
  } else {
    writeByPixels(rows);
  }
}

}  // namespace vlvk
