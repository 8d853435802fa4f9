/// Times the engine, its parts and what else could be used instead. Results are time per pixel (`per_pixel`).
///
///     vlvk_bench [--size=WIDTHxHEIGHT]... [--benchmark_filter=REGEX] [other options of Google Benchmark]
///
/// Names are UNIT/VARIANT/TARGET/SIZE/..., where a target is one compiled set of row loops or the name of the library
/// that stands in its place.
#include <benchmark/benchmark.h>

#include "bench/options.h"

int main(int argc, char** argv) {
  using namespace vlvk_bench;
  const std::vector<Size> sizes = takeSizes(&argc, argv);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  addFrameBenchmarks(sizes);
  addHandleBenchmarks(sizes);
  addBandSmoothingBenchmarks(sizes);
  addSkinBlendBenchmarks(sizes);
  addConversionBenchmarks(sizes);
  addRowLoopBenchmarks(sizes);
  addReferenceFilterBenchmarks(sizes);
  addLineMeanBenchmarks(sizes);
  addIntegralMeanBenchmarks(sizes);
#ifdef VLVK_BENCH_GSTREAMER_PLUGIN
  addGStreamerBenchmarks(sizes);
#endif
#ifdef VLVK_BENCH_LIBYUV
  addLibyuvBenchmarks(sizes);
#endif
#ifdef VLVK_BENCH_OPENCV
  addOpencvBenchmarks(sizes);
#endif
#if defined(VLVK_BENCH_LIBYUV) && defined(VLVK_BENCH_OPENCV)
  addCompositionBenchmarks(sizes);
#endif
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
