/// A row pair of pixels, see row_pair.h.
#ifndef VLVK_ENGINE_PIXEL_PAIR_H
#define VLVK_ENGINE_PIXEL_PAIR_H

#include <cstdint>

#include "engine/row_pair.h"

namespace vlvk {

class PixelPair : private RowPair {
 public:
  PixelPair(const FrameJob& job, const BandScratch& scratch, int y) : RowPair(job, scratch, y) {}

  /// Blends, changes colours and writes the target.
  void run();

 private:
  void shift(ConstRows source, MutableRows pixels);
  void repeatLastPixel(MutableRows pixels) const;
  void writeAsYuv(MutableRows pixels) const;
};

}  // namespace vlvk

#endif
