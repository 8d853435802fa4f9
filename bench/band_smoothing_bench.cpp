/// Time of smoothing a luma plane with the band kernels, for every target and radius. Counterpart of the sums:
/// box_sums/opencv.
#include <vlvk/band_smoothing.h>

#include "bench/measure.h"
#include "bench/scene.h"

namespace vlvk_bench {

namespace {

constexpr int kLevel = 600;
constexpr int kContextRows = 64;

void smoothPlane(benchmark::State& state, Size size, const vlvk::RowLoops* target, int radius) {
  const ForcedTarget forced(target);
  const std::vector<std::uint8_t> plane = lumaPlane(size, kContextRows);
  const std::size_t groups = static_cast<std::size_t>(size.width) / 8;
  std::vector<std::uint8_t> smoothed(size.pixels());
  std::vector<std::uint16_t> sums(8 * groups);
  std::vector<std::uint32_t> squares(8 * groups);
  VKBandScratch scratch{};
  scratch.scratchA = static_cast<unsigned char*>(static_cast<void*>(sums.data()));
  scratch.scratchB = static_cast<unsigned char*>(static_cast<void*>(squares.data()));
  const std::uint8_t* source = plane.data() + static_cast<std::ptrdiff_t>(kContextRows) * size.width;
  measure(state, size.pixels(), [&] {
    MeanMid_Window_Neon(source, smoothed.data(), size.width, size.height, size.width, radius, kLevel, &scratch);
  });
}

}  // namespace

void addBandSmoothingBenchmarks(const std::vector<Size>& sizes) {
  for (const Size size : sizes) {
    for (const vlvk::RowLoops* target : targets()) {
      for (const int radius : {8, 20, 60}) {
        add("smoothing/band/" + std::string(target->name) + "/" + size.name() + "/radius:" + std::to_string(radius),
            [=](benchmark::State& state) { smoothPlane(state, size, target, radius); });
      }
    }
  }
}

}  // namespace vlvk_bench
