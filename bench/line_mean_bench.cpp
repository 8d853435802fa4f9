/// Time of the smoothers and statistics on running column sums on a 1080p luma plane. Counterpart of the sums:
/// opencv_box.
#include "kernels/alt/line_mean.h"

#include "bench/luma_plane.h"

namespace {

using namespace vlvk_bench;

void line_mean(benchmark::State& state) {
  const std::vector<std::uint8_t> source = lumaPlane();
  std::vector<std::uint8_t> destination(kPixels);
  measure(state, [&] {
    Mean_Window_Neon(source.data(), destination.data(), kWidth, kHeight, kWidth, static_cast<int>(state.range(0)),
                     kLevel);
  });
}
BENCHMARK(line_mean)->Apply(radii);

void line_sums(benchmark::State& state) {
  const std::vector<std::uint8_t> source = lumaPlane();
  std::vector<std::uint32_t> sums(kPixels);
  std::vector<std::uint32_t> squares(kPixels);
  measure(state, [&] {
    MeanMid_Window_V2_Neon(source.data() + std::size_t{kWidth} * kContextRows, sums.data(), squares.data(), kWidth,
                           kHeight, kWidth, static_cast<int>(state.range(0)));
  });
}
BENCHMARK(line_sums)->Apply(radii);

}  // namespace
