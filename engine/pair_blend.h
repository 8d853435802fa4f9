/// Smoothed luma and evened chroma of a row pair, mixed in by the weight of skin.
#ifndef VLVK_ENGINE_PAIR_BLEND_H
#define VLVK_ENGINE_PAIR_BLEND_H

#include <cstdint>

#include "engine/frame_job.h"

namespace vlvk {

/// Two rows; the same one twice at the odd end of a frame.
template <class Byte>
struct Rows {
  Byte* first;
  Byte* second;
};
using ConstRows = Rows<const std::uint8_t>;
using MutableRows = Rows<std::uint8_t>;

class PairBlend {
 public:
  /// @param y0, y1  the rows, the same at the odd end of a frame
  PairBlend(const FrameJob& job, const BandScratch& scratch, int y0, int y1)
      : job_(job), scratch_(scratch), y_{y0, y1} {}

  /// Whether anything goes by the weight of skin: findSkin comes first then.
  bool isNeeded() const { return job_.smooths || job_.hasWeightRows(); }

  /// @param pairs  chroma of the rows, kept until the blend is done
  void findSkin(const std::uint8_t* pairs);

  /// Luma mixed with its smoothed self, into `out`.
  void luma(ConstRows rows, MutableRows mean, MutableRows out) const;

  /// Chroma mixed with its evened self, or `pairs` where nothing is evened.
  const std::uint8_t* chroma(const std::uint8_t* pairs) const;

  /// Of each pixel, 0 .. 64, where FrameJob::hasWeightRows; else null.
  ConstRows weights() const { return weights_; }

 private:
  void applyMask();

  const FrameJob& job_;
  const BandScratch& scratch_;
  int y_[2];
  const std::uint8_t* skinPairs_ = nullptr;  ///< chroma as skin is measured
  ConstRows weights_{nullptr, nullptr};
};

}  // namespace vlvk

#endif
