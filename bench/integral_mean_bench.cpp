/// Time of the integral-image family on a 1080p luma plane. Counterpart of the sums: opencv_integral.
#include "kernels/alt/integral_mean.h"

#include "bench/luma_plane.h"
#include "kernels/alt/mean_var_blend.h"

namespace {

using namespace vlvk_bench;

struct Planes {
  std::vector<std::uint8_t> source = lumaPlane();
  std::vector<std::uint8_t> destination = std::vector<std::uint8_t>(kPixels);
  std::vector<std::uint32_t> sums = std::vector<std::uint32_t>(kPixels);
  std::vector<std::uint32_t> squares = std::vector<std::uint32_t>(kPixels);
  const std::uint8_t* start = source.data() + std::size_t{kWidth} * kContextRows;
};

void integral_mean(benchmark::State& state) {
  Planes p;
  measure(state, [&] {
    Integral_Mean_Neon(p.start, p.destination.data(), kWidth, kHeight, kWidth, static_cast<int>(state.range(0)),
                       kLevel);
  });
}
BENCHMARK(integral_mean)->Apply(radii);

void integral_sums(benchmark::State& state) {
  Planes p;
  measure(state, [&] {
    Integral_Mean_Neon2(p.start, p.sums.data(), p.squares.data(), kWidth, kHeight, kWidth,
                        static_cast<int>(state.range(0)));
  });
}
BENCHMARK(integral_sums)->Apply(radii);

void mean_var_blend(benchmark::State& state) {
  Planes p;
  const int radius = static_cast<int>(state.range(0));
  Integral_Mean_Neon2(p.start, p.sums.data(), p.squares.data(), kWidth, kHeight, kWidth, radius);
  measure(state, [&] {
    Mean_var_Blend(p.destination.data(), p.start, p.sums.data(), p.squares.data(), kWidth, kHeight, kWidth, radius,
                   kLevel);
  });
}
BENCHMARK(mean_var_blend)->Apply(radii);

}  // namespace
