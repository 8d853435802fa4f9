/// What the benchmarks of the other smoothers share.
#ifndef VLVK_BENCH_SMOOTHERS_BENCH_H
#define VLVK_BENCH_SMOOTHERS_BENCH_H

#include "bench/measure.h"
#include "bench/scene.h"

namespace vlvk_bench {

inline constexpr int kSmootherLevel = 600;
inline constexpr int kSmootherContext = 64;  ///< rows above and below: enough for the middle band of every radius

/// A luma plane, what a smoother makes of it, and box statistics.
struct SmootherPlanes {
  explicit SmootherPlanes(Size size)
      : source(lumaPlane(size, kSmootherContext)),
        image(source),
        destination(size.pixels()),
        sums(size.pixels()),
        squares(size.pixels()),
        start(source.data() + static_cast<std::ptrdiff_t>(kSmootherContext) * size.width) {}
  SmootherPlanes(const SmootherPlanes&) = delete;
  SmootherPlanes& operator=(const SmootherPlanes&) = delete;

  std::vector<std::uint8_t> source;
  std::vector<std::uint8_t> image;
  std::vector<std::uint8_t> destination;
  std::vector<std::uint32_t> sums;
  std::vector<std::uint32_t> squares;
  const std::uint8_t* start;  ///< row 0 of the plane
};

/// Adds a benchmark for three radii: a cost that grows with the radius would show.
///
/// @param work  called with the planes, the size and the radius
/// @param prepare  the same, once before
template <class Work, class Prepare>
void addSmoother(const char* name, Size size, Work work, Prepare prepare) {
  for (const int radius : {4, 20, 60}) {
    add(std::string(name) + "/" + vlvk::rowLoops().name + "/" + size.name() + "/radius:" + std::to_string(radius),
        [=](benchmark::State& state) {
          SmootherPlanes planes(size);
          prepare(planes, size, radius);
          measure(state, size.pixels(), [&] { work(planes, size, radius); });
        });
  }
}

template <class Work>
void addSmoother(const char* name, Size size, Work work) {
  addSmoother(name, size, work, [](SmootherPlanes&, Size, int) {});
}

}  // namespace vlvk_bench

#endif
