/// The same work put together from well-known libraries, as a capable user would: libyuv for colours and blending,
/// OpenCV for box sums, plain loops for what neither has.
#ifndef VLVK_BENCH_PEERS_COMPOSITION_H
#define VLVK_BENCH_PEERS_COMPOSITION_H

#include <cstdint>
#include <opencv2/core.hpp>
#include <vector>

#include "bench/options.h"

namespace vlvk_bench {

/// Beautifies NV21 frames in place with the engine's steps at its default settings. Pictures differ by a few levels:
/// rounding, averaged chroma, a neutral colour table, a weight curve without a plateau.
class Composition {
 public:
  /// @param threads       bands of the frame, a thread for each; the caller's thread takes the first
  /// @param boxStripRows  rows for which box sums are made at a time, 0: all of a band. OpenCV sums the rows around
  ///                      every strip anew
  Composition(Size size, int threads, int boxStripRows);

  void process(std::uint8_t* luma, std::uint8_t* chroma);
  /// The first step alone. The result stays inside.
  void smooth(std::uint8_t* luma);

 private:
  static constexpr int kBoxHalf = 23;   ///< the engine's box at its default radius
  static constexpr int kStripRows = 8;  ///< for all steps past the smoothing

  /// Working memory of a thread.
  struct Band {
    int begin;
    int end;
    cv::Mat sums;
    cv::Mat squares;
    std::vector<std::uint8_t> weights;
    std::vector<std::uint8_t> rgba;
  };

  /// Calls `work` with every band, each on its thread.
  template <class Work>
  void onAllBands(Work work);
  void smooth(Band& band, cv::Mat& luma);
  void finish(Band& band, std::uint8_t* luma, std::uint8_t* chroma);

  Size size_;
  int boxStripRows_;
  std::vector<Band> bands_;
  std::vector<std::uint8_t> smoothed_;
  std::vector<std::uint32_t> colors_;  ///< 64 x 64 x 64
  std::uint8_t firstWeights_[256];     ///< of V and U, 0 .. 255
  std::uint8_t secondWeights_[256];
};

}  // namespace vlvk_bench

#endif
