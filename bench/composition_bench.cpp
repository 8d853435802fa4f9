/// Time of a whole frame, and of its smoothing, by the composition of other libraries; counterparts of frame/in_place
/// and reference_filter/smooth.
#include "bench/measure.h"
#include "bench/peers/composition.h"
#include "bench/scene.h"

namespace vlvk_bench {

namespace {

/// `composition` sums boxes as the library offers it, `composition_strips` in strips as large as serve it best.
struct Variant {
  const char* name;
  int boxStripRows;
};
constexpr Variant kVariants[] = {{"composition", 0}, {"composition_strips", 192}};

void steadyFrame(benchmark::State& state, Size size, const Scene& scene, int threads, int boxStripRows) {
  const Nv21Frame original = scene.make(size);
  Nv21Frame frame = original;
  Composition composition(size, threads, boxStripRows);
  composition.process(frame.data(), frame.data() + size.pixels());  // its memory is there from now on
  while (state.KeepRunning()) {
    state.PauseTiming();
    frame = original;
    state.ResumeTiming();
    composition.process(frame.data(), frame.data() + size.pixels());
    benchmark::ClobberMemory();
  }
  countPixels(state, size.pixels());
}

/// Box sums with one fused loop for the formula.
void addSmoothing(Size size, const Variant& variant) {
  add(std::string("reference_filter/smooth/") + variant.name + "/" + size.name(), [=](benchmark::State& state) {
    std::vector<std::uint8_t> luma = lumaPlane(size, 0);
    Composition composition(size, 1, variant.boxStripRows);
    measure(state, size.pixels(), [&] { composition.smooth(luma.data()); });
  });
}

}  // namespace

void addCompositionBenchmarks(const std::vector<Size>& sizes) {
  for (const Size size : sizes) {
    for (const Variant& variant : kVariants)
      addSmoothing(size, variant);
    for (const Scene& scene : scenes()) {
      for (const int threads : {1, 2}) {
        for (const Variant& variant : kVariants) {
          add(std::string("frame/in_place/") + variant.name + "/" + size.name() + "/" + scene.name +
                  "/threads:" + std::to_string(threads),
              [=, &scene](benchmark::State& state) { steadyFrame(state, size, scene, threads, variant.boxStripRows); })
              ->UseRealTime();
        }
      }
    }
  }
}

}  // namespace vlvk_bench
