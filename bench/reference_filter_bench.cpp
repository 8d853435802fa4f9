/// Time of the textbook smoother. Counterparts: of the sums box_sums/opencv, of both together
/// reference_filter/smooth/composition.
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
    addSmoother("reference_filter/smooth", size, [=](SmootherPlanes& p, Size s, int radius) {
      sums(p, s, radius);
      blend(p, s, radius);
    });
  }
}

}  // namespace vlvk_bench
