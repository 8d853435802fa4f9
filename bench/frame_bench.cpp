/// Time of a whole NV21 frame, in place and to RGBA, of a BGRA picture, of a copy, and of the first frame of a new
/// filter.
///
/// Wall clock: the standard engine runs four threads.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/yuv_to_rgb.h>
#include "bench/allocation_counter.h"
#include "bench/measure.h"
#include "bench/scene.h"
#include "resource/neutral_colors.h"

namespace vlvk_bench {

namespace {

enum class Output { kInPlace, kToRgba, kBgraToBgra };

struct FrameCase {
  Size size;
  const Scene* scene;
  const vlvk::RowLoops* target;
  Output output = Output::kInPlace;
  int threads = 4;
  int radius = 20;
};

/// One frame and where it goes.
struct Run {
  explicit Run(const FrameCase& c)
      : original(c.scene->make(c.size)),
        frame(original),
        bgra(c.output == Output::kBgraToBgra ? c.size.pixels() * 4 : 0),
        pixels(c.output != Output::kInPlace ? c.size.pixels() * 4 : 0) {
    if (bgra.empty()) return;
    VKNV21ToBGRA_NeonCall(frame.data(), c.size.width, frame.data() + c.size.pixels(), c.size.width, bgra.data(),
                          4 * c.size.width, c.size.width, c.size.height);
  }

  int process(CFastEdgePreserved& filter, const FrameCase& c) {
    const int stride = 4 * c.size.width;
    if (!bgra.empty())
      return filter.processBGRAVideo(bgra.data(), c.size.width, c.size.height, stride, pixels.data(), stride);
    return filter.processVideo(frame.data(), c.size.width, frame.data() + c.size.pixels(), c.size.width, c.size.width,
                               c.size.height, pixels.empty() ? nullptr : pixels.data(), stride, true);
  }

  const Nv21Frame original;
  Nv21Frame frame;
  std::vector<std::uint8_t> bgra;
  std::vector<std::uint8_t> pixels;
};

void steadyFrame(benchmark::State& state, const FrameCase& c) {
  const ForcedTarget forced(c.target);
  Run run(c);
  vlvk::NeutralColors colors;
  CFastEdgePreserved filter(c.threads, &colors);
  filter.radius = c.radius;
  run.process(filter, c);
  while (state.KeepRunning()) {
    if (c.output == Output::kInPlace) {
      // A frame that was beautified again and again would no longer be the scene.
      state.PauseTiming();
      run.frame = run.original;
      state.ResumeTiming();
    }
    if (run.process(filter, c) != 0) state.SkipWithError("the frame failed");
    benchmark::ClobberMemory();
  }
  std::free(filter.nv12Scratch);
  countPixels(state, c.size.pixels());
}

/// Tables and buffers included, the end of the filter not.
void firstFrame(benchmark::State& state, const FrameCase& c) {
  Run run(c);
  vlvk::NeutralColors colors;
  while (state.KeepRunning()) {
    state.PauseTiming();
    run.frame = run.original;
    state.ResumeTiming();
    auto filter = std::make_unique<CFastEdgePreserved>(c.threads, &colors);
    filter->radius = c.radius;
    if (run.process(*filter, c) != 0) state.SkipWithError("the frame failed");
    state.PauseTiming();
    filter.reset();
    state.ResumeTiming();
  }
  countPixels(state, c.size.pixels());
}

/// What a thousand steady frames take from the heap.
void steadyMemory(benchmark::State& state, const FrameCase& c) {
  Run run(c);
  vlvk::NeutralColors colors;
  CFastEdgePreserved filter(c.threads, &colors);
  for (int i = 0; i < 50; ++i)  // until the stacks of threads are kept as well
    run.process(filter, c);
  constexpr int kFrames = 1000;
  for ([[maybe_unused]] auto once : state) {
    const std::size_t resident = residentBytes();
    const std::size_t heap = heapBytes();
    const std::size_t count = allocationCount();
    for (int i = 0; i < kFrames; ++i)
      run.process(filter, c);
    // All read before the counters, which are memory themselves.
    const auto allocations = static_cast<double>(allocationCount() - count);
    const double heapGrowth = static_cast<double>(heapBytes()) - static_cast<double>(heap);
    const double residentGrowth = static_cast<double>(residentBytes()) - static_cast<double>(resident);
    state.counters["allocations_per_frame"] = allocations / kFrames;
    state.counters["heap_growth"] = heapGrowth;
    state.counters["resident_growth"] = residentGrowth;
  }
}

void addCase(const char* variant, const FrameCase& c) {
  add(std::string("frame/") + variant + "/" + c.target->name + "/" + c.size.name() + "/" + c.scene->name +
          "/threads:" + std::to_string(c.threads) + "/radius:" + std::to_string(c.radius),
      [c](benchmark::State& state) { steadyFrame(state, c); })
      ->UseRealTime();
}

/// What moving the pixels of the frame alone takes.
///
/// @param pictures  copied in turn: one and the same may stay in the last-level cache, many come from memory
void addCopy(const char* variant, Size size, int pictures) {
  add(std::string("copy/") + variant + "/memcpy/" + size.name(), [=](benchmark::State& state) {
    const std::size_t bytes = size.pixels() * 4;
    const std::size_t total = bytes * static_cast<std::size_t>(pictures);
    const std::vector<std::uint8_t> from(total, 1);
    std::vector<std::uint8_t> to(total);
    std::size_t at = 0;
    measure(state, size.pixels(), [&] {
      std::memcpy(to.data() + at, from.data() + at, bytes);
      at = (at + bytes) % total;
    });
  })->UseRealTime();
}

}  // namespace

void addFrameBenchmarks(const std::vector<Size>& sizes) {
  const auto all = targets();
  const Scene& skin = scenes().front();
  for (const Size size : sizes) {
    for (const Scene& scene : scenes()) {
      addCase("in_place", {size, &scene, all.front()});
      addCase("to_rgba", {size, &scene, all.front(), Output::kToRgba});
    }
    for (const auto* target : all) {
      if (target != all.front()) addCase("in_place", {size, &skin, target});
    }
    for (const int radius : {0, 8, 40, 60, 100})
      addCase("in_place", {size, &skin, all.front(), Output::kInPlace, 4, radius});
    for (const int threads : {1, 2})
      addCase("in_place", {size, &skin, all.front(), Output::kInPlace, threads});
    for (const int threads : {1, 4})
      addCase("bgra", {size, &skin, all.front(), Output::kBgraToBgra, threads});
    const FrameCase first{size, &skin, all.front()};
    add(std::string("frame/first/") + first.target->name + "/" + size.name() + "/skin/threads:4/radius:20",
        [first](benchmark::State& state) { firstFrame(state, first); })
        ->UseRealTime();
    addCopy("same", size, 1);
    addCopy("new", size, static_cast<int>(std::max<std::size_t>(2, (std::size_t{128} << 20U) / (4 * size.pixels()))));
    add("frame/memory/" + std::string(first.target->name) + "/" + size.name() + "/skin/threads:4/radius:20",
        [first](benchmark::State& state) { steadyMemory(state, first); })
        ->Iterations(1);
  }
}

}  // namespace vlvk_bench
