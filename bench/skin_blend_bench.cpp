/// Time of the skin-weighted blend of a luma plane, for every target.
#include <vlvk/skin_blend.h>

#include <vlvk/CFastEdgePreserved.h>
#include "bench/measure.h"
#include "bench/scene.h"

namespace vlvk_bench {

void addSkinBlendBenchmarks(const std::vector<Size>& sizes) {
  for (const Size size : sizes) {
    for (const vlvk::RowLoops* target : targets()) {
      add("blend/plane/" + std::string(target->name) + "/" + size.name(), [=](benchmark::State& state) {
        const ForcedTarget forced(target);
        const CFastEdgePreserved filter(1, nullptr);
        const Nv21Frame frame = skinFrame(size);
        std::vector<std::uint8_t> smoothed(size.pixels(), 100);
        measure(state, size.pixels(), [&] {
          MeanBlendImageWithSkin(frame.data(), size.width, smoothed.data(), frame.data() + size.pixels(), size.width,
                                 size.width, size.height, 192, filter.skinTable, filter.skinCentre + 1);
        });
      });
    }
  }
}

}  // namespace vlvk_bench
