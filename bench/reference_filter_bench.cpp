/// Time of the textbook smoother on a 1080p luma plane. Counterpart of the sums: opencv_box.
#include "kernels/reference_filter.h"

#include "bench/luma_plane.h"

namespace {

using namespace vlvk_bench;

void reference_sums(benchmark::State& state) {
  const std::vector<std::uint8_t> source = lumaPlane();
  std::vector<std::uint32_t> sums(kPixels);
  std::vector<std::uint32_t> squares(kPixels);
  measure(state, [&] {
    Mean(source.data(), kWidth, kHeight, kWidth, sums.data(), squares.data(), static_cast<int>(state.range(0)));
  });
}
BENCHMARK(reference_sums)->Apply(radii);

void reference_blend(benchmark::State& state) {
  const std::vector<std::uint8_t> source = lumaPlane();
  const int radius = static_cast<int>(state.range(0));
  std::vector<std::uint8_t> image(source);
  std::vector<std::uint32_t> sums(kPixels);
  std::vector<std::uint32_t> squares(kPixels);
  Mean(source.data(), kWidth, kHeight, kWidth, sums.data(), squares.data(), radius);
  measure(state,
          [&] { MeanBlendImage(image.data(), sums.data(), squares.data(), kWidth, kHeight, kWidth, kLevel, radius); });
}
BENCHMARK(reference_blend)->Apply(radii);

}  // namespace
