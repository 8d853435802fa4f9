/// What the command line chose for all benchmarks: the sizes of frames and planes.
#ifndef VLVK_BENCH_OPTIONS_H
#define VLVK_BENCH_OPTIONS_H

#include <cstddef>
#include <string>
#include <vector>

namespace vlvk_bench {

struct Size {
  int width;
  int height;

  std::size_t pixels() const { return static_cast<std::size_t>(width) * static_cast<std::size_t>(height); }
  std::string name() const { return std::to_string(width) + "x" + std::to_string(height); }
};

/// Takes every `--size=WIDTHxHEIGHT` out of the arguments. Returns 720p, 1080p and 2160p where there is none.
/// Ends the program with a message where a size cannot be read, is odd or is below 64x64.
std::vector<Size> takeSizes(int* argc, char** argv);

/// Each adds the benchmarks of one unit; its file has the unit's name.
void addFrameBenchmarks(const std::vector<Size>& sizes);
void addHandleBenchmarks(const std::vector<Size>& sizes);
void addGStreamerBenchmarks(const std::vector<Size>& sizes);
void addCompositionBenchmarks(const std::vector<Size>& sizes);
void addBandSmoothingBenchmarks(const std::vector<Size>& sizes);
void addSkinBlendBenchmarks(const std::vector<Size>& sizes);
void addConversionBenchmarks(const std::vector<Size>& sizes);
void addLibyuvBenchmarks(const std::vector<Size>& sizes);
void addOpencvBenchmarks(const std::vector<Size>& sizes);
void addRowLoopBenchmarks(const std::vector<Size>& sizes);
void addReferenceFilterBenchmarks(const std::vector<Size>& sizes);
void addIntegralMeanBenchmarks(const std::vector<Size>& sizes);
void addLineMeanBenchmarks(const std::vector<Size>& sizes);

}  // namespace vlvk_bench

#endif
