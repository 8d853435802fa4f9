/// Options, measurement and table of the command `bench`.
#include "tools/commands/bench.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/IBeautyResourceLoader.h>
#include "rows/row_loops.h"
#include "tools/io/error.h"
#include "tools/io/standard_output.h"
#include "tools/options/number_option.h"
#include "tools/options/size_option.h"
#include "tools/options/target.h"

namespace vlvk::tool {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kWarmUpFrames = 2;  // they size the buffers and build the tables
constexpr std::size_t kLeastFrames = 3;

struct BenchOptions {
  std::vector<FrameSize> sizes{{1280, 720}, {1920, 1080}, {3840, 2160}};
  double seconds = 1;
  int threads = 4;
};

// Keeps the filter's neutral colour picture, so that colours go through the table.
struct NeutralColors final : IBeautyResourceLoader {
  int getResFromName(const char* /*name*/, unsigned char* /*dst*/) override { return 0; }
};

// An NV21 frame of shaded skin with grain, so that every pixel is smoothed and blended.
std::vector<std::uint8_t> skinFrame(FrameSize size) {
  std::minstd_rand random(1);  // the same frame every time
  const auto grain = [&random](int range) { return static_cast<int>(random() >> 8) % range; };
  const std::size_t columns = static_cast<std::size_t>(size.width);
  const std::size_t chromaRows = (static_cast<std::size_t>(size.height) + 1) / 2;
  std::vector<std::uint8_t> frame;
  frame.reserve(columns * (static_cast<std::size_t>(size.height) + chromaRows));
  for (int y = 0; y < size.height; ++y) {
    const int shade = 90 + y * 40 / size.height;
    for (int x = 0; x < size.width; ++x)
      frame.push_back(static_cast<std::uint8_t>(shade + x * 60 / size.width + grain(24)));
  }
  for (std::size_t i = 0; i < columns * chromaRows; ++i)
    frame.push_back(static_cast<std::uint8_t>((i % columns % 2 == 0 ? 151 : 106) + grain(8)));  // V, U
  return frame;
}

// Median time of a frame in milliseconds.
double medianTime(FrameSize size, const std::vector<std::uint8_t>& scene, const BenchOptions& options) {
  NeutralColors colors;
  CFastEdgePreserved filter(options.threads, &colors);
  std::vector<std::uint8_t> frame(scene.size());
  std::uint8_t* chroma = frame.data() + static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
  const auto timeOfFrame = [&] {
    std::copy(scene.begin(), scene.end(), frame.begin());  // beautified again and again it would not be the scene
    const Clock::time_point begin = Clock::now();
    const int result =
        filter.processVideo(frame.data(), size.width, chroma, size.width, size.width, size.height, nullptr, 0, true);
    const Clock::time_point end = Clock::now();
    if (result != 0) throw Error("not enough memory");
    return std::chrono::duration<double, std::milli>(end - begin).count();
  };
  for (int i = 0; i < kWarmUpFrames; ++i)
    timeOfFrame();
  std::vector<double> times;
  const Clock::time_point begin = Clock::now();
  while (times.size() < kLeastFrames || Clock::now() - begin < std::chrono::duration<double>(options.seconds))
    times.push_back(timeOfFrame());
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

std::string nameOf(FrameSize size) {
  return std::to_string(size.width) + "x" + std::to_string(size.height);
}

void printRow(const std::string& size, const std::string& target, double milliseconds) {
  char line[80];
  std::snprintf(line, sizeof line, "%-12s%-8s%10.1f%12.3f\n", size.c_str(), target.c_str(), 1000 / milliseconds,
                milliseconds);
  printText(line);
}

// Rows appear as they are measured.
void runBench(const BenchOptions& options, const std::vector<std::string>& targets) {
  printText("NV21 frames in place, skin all over, default settings, " + std::to_string(options.threads) +
            (options.threads == 1 ? " thread" : " threads") + "\n\nsize        target    frames/s    ms/frame\n");
  for (const FrameSize size : options.sizes) {
    const std::vector<std::uint8_t> scene = skinFrame(size);
    for (const std::string& target : targets) {
      forceRowLoops(target.c_str());
      printRow(nameOf(size), target, medianTime(size, scene, options));
    }
  }
}

}  // namespace

void addBenchCommand(CLI::App* program) {
  CLI::App* command = program->add_subcommand("bench", "Measure how fast the engine is on this machine");
  const auto options = std::make_shared<BenchOptions>();
  const auto setSizes = [options](const std::vector<std::string>& texts) {
    options->sizes.clear();
    for (const std::string& text : texts)
      options->sizes.push_back(parseFrameSize(text));
  };
  command
      ->add_option_function<std::vector<std::string>>(
          "--size", setSizes, "Size of the frames, may be given again; without it 720p, 1080p and 2160p")
      ->allow_extra_args(false)
      ->type_name("WxH");
  addNumberOption(command, "--seconds", &options->seconds, 0.001, 60.0, "Time for each row of the table");
  addNumberOption(command, "--threads", &options->threads, 1, 64, "Bands of a frame and threads for it");
  addTargetOption(command);
  command->footer(
      "There is a row for each size and each set of vector instructions that the processor has, fastest first: the "
      "one\n"
      "that is used without --target. The time is the median over the frames.");
  command->callback([program, command, options] {
    const bool forced = program->count("--target") + command->count("--target") > 0;
    runBench(*options, forced ? std::vector<std::string>{rowLoops().name} : targetNames());
  });
}

}  // namespace vlvk::tool
