/// Time of the smoothers and statistics on running column sums. Counterpart of the sums: box_sums/opencv.
#include <vlvk/line_mean.h>

#include "bench/smoothers_bench.h"

namespace vlvk_bench {

void addLineMeanBenchmarks(const std::vector<Size>& sizes) {
  for (const Size size : sizes) {
    addSmoother("line_mean/smooth", size, [](SmootherPlanes& p, Size s, int radius) {
      Mean_Window_Neon(p.start, p.destination.data(), s.width, s.height, s.width, radius, kSmootherLevel);
    });
    addSmoother("line_mean/sums", size, [](SmootherPlanes& p, Size s, int radius) {
      MeanMid_Window_V2_Neon(p.start, p.sums.data(), p.squares.data(), s.width, s.height, s.width, radius);
    });
  }
}

}  // namespace vlvk_bench
