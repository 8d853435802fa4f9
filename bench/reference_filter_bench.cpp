/// Time of the textbook smoother. Counterpart of the sums: box_sums/opencv.
#include <vlvk/reference_filter.h>

#include "bench/smoothers_bench.h"

namespace vlvk_bench {

void addReferenceFilterBenchmarks(const std::vector<Size>& sizes) {
  const auto sums = [](SmootherPlanes& p, Size s, int radius) {
    Mean(p.start, s.width, s.height, s.width, p.sums.data(), p.squares.data(), radius);
  };
  const auto blend = [](SmootherPlanes& p, Size s, int radius) {
    MeanBlendImage(p.image.data(), p.sums.data(), p.squares.data(), s.width, s.height, s.width, kSmootherLevel, radius);
  };
  for (const Size size : sizes) {
    addSmoother("reference_filter/sums", size, sums);
    addSmoother("reference_filter/blend", size, blend, sums);
  }
}

}  // namespace vlvk_bench
