/// What the benchmarks look at.
#ifndef VLVK_BENCH_SCENE_H
#define VLVK_BENCH_SCENE_H

#include <cstdint>
#include <string>
#include <vector>

#include "bench/options.h"

namespace vlvk_bench {

/// An NV21 frame without padding: luma plane, then chroma plane.
using Nv21Frame = std::vector<std::uint8_t>;

struct Scene {
  std::string name;
  Nv21Frame (*make)(Size size);
};

/// `skin`: shaded skin with grain, every pixel with a weight, so that nothing can be skipped. `portrait`: the sample
/// picture, tiled; only where the picture file is at hand.
const std::vector<Scene>& scenes();

Nv21Frame skinFrame(Size size);

/// Shaded grain with `contextRows` rows above and below, the same every time.
std::vector<std::uint8_t> lumaPlane(Size size, int contextRows);

}  // namespace vlvk_bench

#endif
