/// A row pair of YUV, see row_pair.h.
#ifndef VLVK_ENGINE_YUV_PAIR_H
#define VLVK_ENGINE_YUV_PAIR_H

#include <cstdint>

#include "engine/row_pair.h"

namespace vlvk {

class YuvPair : private RowPair {
 public:
  YuvPair(const FrameJob& job, const BandScratch& scratch, int y) : RowPair(job, scratch, y) {}

  /// Blends, changes colours and writes the target.
  void run();

 private:
  /// Luma of a row pair with its chroma.
  struct YuvRows {
    ConstRows luma;
    const std::uint8_t* pairs;
  };

  const std::uint8_t* inTargetOrder(const std::uint8_t* pairs, std::uint8_t* scratch) const;
  YuvRows asTarget(const YuvRows& rows, MutableRows lumaScratch, std::uint8_t* pairsScratch) const;
  void toPixels(const YuvRows& rows, MutableRows pixels) const;
  void toYuv(MutableRows pixels, MutableRows luma, std::uint8_t* pairs) const;
  void writeAsTarget(const YuvRows& rows) const;
  void writeByPixels(const YuvRows& rows) const;
  void writeWhitenedSkin(const YuvRows& rows) const;
};

}  // namespace vlvk

#endif
