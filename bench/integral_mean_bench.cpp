/// Time of the integral-image family and of the blend from its statistics. Counterpart of the sums: integral/opencv.
#include <vlvk/integral_mean.h>

#include <vlvk/mean_var_blend.h>
#include "bench/smoothers_bench.h"

namespace vlvk_bench {

void addIntegralMeanBenchmarks(const std::vector<Size>& sizes) {
  const auto smooth = [](SmootherPlanes& p, Size s, int radius) {
    Integral_Mean_Neon(p.start, p.destination.data(), s.width, s.height, s.width, radius, kSmootherLevel);
  };
  const auto sums = [](SmootherPlanes& p, Size s, int radius) {
    Integral_Mean_Neon2(p.start, p.sums.data(), p.squares.data(), s.width, s.height, s.width, radius);
  };
  const auto blend = [](SmootherPlanes& p, Size s, int radius) {
    Mean_var_Blend(p.destination.data(), p.start, p.sums.data(), p.squares.data(), s.width, s.height, s.width, radius,
                   kSmootherLevel);
  };
  for (const Size size : sizes) {
    addSmoother("integral_mean/smooth", size, smooth);
    addSmoother("integral_mean/sums", size, sums);
    addSmoother("mean_var_blend/blend", size, blend, sums);
  }
}

}  // namespace vlvk_bench
