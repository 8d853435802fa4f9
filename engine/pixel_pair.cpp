/// See pixel_pair.h.
#include "engine/pixel_pair.h"

#include <cstring>

namespace vlvk {

/// Pixels with what their luma and chroma gain.
void PixelPair::shift(ConstRows source, MutableRows pixels) {
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
  const auto shiftPixels = loops_.shiftPixels[job_.alpha];
  shiftPixels(source.first, luma.first, newLuma.first, pixels.first, columns());
  if (count() == 2) shiftPixels(source.second, luma.second, newLuma.second, pixels.second, columns());
  if (!job_.evens) return;
  const std::uint8_t* newPairs = blend_.chroma(scratch_.pairs);
  const auto shiftChroma = loops_.shiftChroma[job_.pixelOrder];
  shiftChroma(scratch_.pairs, newPairs, pixels.first, columns());
  if (count() == 2) shiftChroma(scratch_.pairs, newPairs, pixels.second, columns());
}

/// The last block of an odd width has one column of the frame: the one past it is smoothed by another box.
void PixelPair::repeatLastPixel(MutableRows pixels) const {
  const int width = job_.source.width;
  if (width % 2 == 0) return;
  for (std::uint8_t* row : {pixels.first, pixels.second})
    std::memcpy(row + 4 * width, row + 4 * (width - 1), 4);
}

/// Pixels with colours of their own in full resolution: chroma of the mean of each block.
void PixelPair::writeAsYuv(MutableRows pixels) const {
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

void PixelPair::run() {
  const auto read = [&](int i) { return readPixels(job_.source, y_[i], job_.pixelOrder, scratch_.sourcePixels[i]); };
  const std::uint8_t* first = read(0);
  const MutableRows pixels = pixelRowsToWrite();
  shift({first, count() == 1 ? first : read(1)}, pixels);
  changeColors(pixels);
  if (job_.target.format->isYuv()) {
    writeAsYuv(pixels);
  } else {
    writePixelRows({pixels.first, pixels.second});
  }
}

}  // namespace vlvk
