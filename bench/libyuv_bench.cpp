/// Time of the same conversions by libyuv. Its way to NV21 averages the chroma of four pixels, ours takes one of them.
#include <libyuv.h>

#include "bench/measure.h"
#include "bench/planes.h"

namespace vlvk_bench {

void addLibyuvBenchmarks(const std::vector<Size>& sizes) {
  for (const Size size : sizes) {
    for (const Extent& extent : kExtents) {
      const int width = size.width;
      const int rows = extent.rows(size);
      const std::size_t pixels = Size{width, rows}.pixels();
      const std::string where = std::string(extent.name) + "/libyuv/" + size.name();
      add("to_rgba/" + where, [=](benchmark::State& state) {
        ConversionPlanes p(size);
        measure(state, pixels, [&] {
          libyuv::NV21ToABGR(p.nv21.data(), width, p.nv21.data() + p.chroma, width, p.rgba.data(), 4 * width, width,
                             rows);
        });
      });
      add("to_nv21/" + where, [=](benchmark::State& state) {
        ConversionPlanes p(size);
        measure(state, pixels, [&] {
          libyuv::ABGRToNV21(p.rgba.data(), 4 * width, p.nv21.data(), width, p.nv21.data() + p.chroma, width, width,
                             rows);
        });
      });
    }
  }
}

}  // namespace vlvk_bench
