/// Times the engine, its parts and what else could be used instead. Results are time per pixel (`per_pixel`).
///
///     vlvk_bench [--size=WIDTHxHEIGHT]... [--benchmark_filter=REGEX] [other options of Google Benchmark]
///
/// Names are UNIT/VARIANT/TARGET/SIZE/..., where a target is one compiled set of row loops or the name of the library
/// that stands in its place.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bench/options.h"

namespace vlvk_bench {

std::vector<Size> takeSizes(int* argc, char** argv) {
  constexpr char kOption[] = "--size=";
  std::vector<Size> sizes;
  int kept = 0;
  for (int i = 0; i < *argc; ++i) {
    if (std::strncmp(argv[i], kOption, sizeof kOption - 1) != 0) {
      argv[kept++] = argv[i];
      continue;
    }
    Size size{};
    char rest = 0;
    const int read = std::sscanf(argv[i] + sizeof kOption - 1, "%5dx%5d%c", &size.width, &size.height, &rest);
    if (read != 2 || size.width < 64 || size.height < 64 || size.width % 2 != 0 || size.height % 2 != 0) {
      std::fprintf(stderr, "%s: not an even size of 64x64 or more\n", argv[i]);
      std::exit(2);
    }
    sizes.push_back(size);
  }
  argv[kept] = nullptr;
  *argc = kept;
  if (sizes.empty()) sizes = {{1280, 720}, {1920, 1080}, {3840, 2160}};
  return sizes;
}

}  // namespace vlvk_bench

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
