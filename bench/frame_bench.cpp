/// Time of a whole NV21 frame, in place and to RGBA.
///
/// The scene is skin all over, so that every pixel is smoothed and blended. `Time` and `per_pixel` are wall clock,
/// `CPU` is the processor time of all threads together.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "filter/CFastEdgePreserved.h"

namespace {

/// Leaves the filter's neutral colour picture as it is, so that colours go through the table.
class NeutralColors final : public IBeautyResourceLoader {
 public:
  int getResFromName(const char* /*name*/, unsigned char* /*dst*/) override { return 0; }
};

/// An NV21 frame: shaded skin with grain.
std::vector<std::uint8_t> skinFrame(int width, int height) {
  const auto columns = static_cast<std::size_t>(width);
  const auto rows = static_cast<std::size_t>(height);
  std::mt19937 random(1);  // the same frame every time
  std::vector<std::uint8_t> frame;
  frame.reserve(columns * rows * 3 / 2);
  for (std::size_t y = 0; y < rows; ++y) {
    for (std::size_t x = 0; x < columns; ++x) {
      frame.push_back(static_cast<std::uint8_t>(90 + x * 60 / columns + y * 40 / rows + random() % 24));
    }
  }
  for (std::size_t i = 0; i < columns * rows / 4; ++i) {
    frame.push_back(static_cast<std::uint8_t>(151 + random() % 8));  // V
    frame.push_back(static_cast<std::uint8_t>(106 + random() % 8));  // U
  }
  return frame;
}

/// Arguments: width, height, threads.
void frame(benchmark::State& state, bool inPlace) {
  const int width = static_cast<int>(state.range(0));
  const int height = static_cast<int>(state.range(1));
  const std::size_t pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  const std::vector<std::uint8_t> original = skinFrame(width, height);
  std::vector<std::uint8_t> nv21 = original;
  std::vector<std::uint8_t> rgba(inPlace ? 0 : pixels * 4);

  NeutralColors colors;
  CFastEdgePreserved filter(static_cast<int>(state.range(2)), &colors);
  filter.radius = 20;
  while (state.KeepRunning()) {
    if (inPlace) {
      // A frame that was beautified again and again would no longer be the scene.
      state.PauseTiming();
      nv21 = original;
      state.ResumeTiming();
    }
    const int result = filter.processVideo(nv21.data(), width, nv21.data() + pixels, width, width, height,
                                           inPlace ? nullptr : rgba.data(), 4 * width, true);
    if (result != 0) state.SkipWithError("the frame failed");
    benchmark::ClobberMemory();
  }
  state.counters["per_pixel"] = benchmark::Counter(
      static_cast<double>(pixels), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void sizesAndThreads(benchmark::internal::Benchmark* bench) {
  bench->ArgNames({"width", "height", "threads"});
  for (const int threads : {1, 4}) {
    bench->Args({1280, 720, threads})->Args({1920, 1080, threads});
  }
  bench->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime();
}

BENCHMARK_CAPTURE(frame, in_place, true)->Apply(sizesAndThreads);
BENCHMARK_CAPTURE(frame, to_rgba, false)->Apply(sizesAndThreads);

}  // namespace
