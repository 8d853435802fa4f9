/// The command `bench`: measurement and table.
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "tools/commands/commands.h"
#include "tools/engine/engine.h"
#include "tools/engine/skin_frame.h"
#include "tools/io/messages.h"
#include "tools/table/color_cube.h"

namespace vlvk::tool {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kWarmUpFrames = 2;  // they size the buffers and build the tables
constexpr std::size_t kLeastFrames = 3;

// Median time of a frame in milliseconds. With a neutral table all colours go through the table.
double medianTime(FrameSize size, const std::vector<std::uint8_t>& scene, const BenchOptions& options) {
  Look look;
  look.settings.threads = options.threads;
  look.table = neutralTable();
  Engine engine(std::move(look));
  std::vector<std::uint8_t> pixels(scene.size());
  const VlvkFrame frame = nv21Frame(pixels.data(), size.width, size.height);
  const auto timeOfFrame = [&] {
    std::copy(scene.begin(), scene.end(), pixels.begin());  // beautified again and again it would not be the scene
    const Clock::time_point begin = Clock::now();
    engine.beautify(frame, frame);
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
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

void printRow(FrameSize size, const std::string& target, double milliseconds) {
  const std::string name = std::to_string(size.width) + "x" + std::to_string(size.height);
  char line[80];
  std::snprintf(line, sizeof line, "%-12s%-8s%10.1f%12.3f\n", name.c_str(), target.c_str(), 1000 / milliseconds,
                milliseconds);
  printText(line);
}

}  // namespace

// Rows appear as they are measured.
void run(const BenchOptions& options) {
  printText("NV21 frames in place, skin all over, default settings, " + std::to_string(options.threads) +
            (options.threads == 1 ? " thread" : " threads") + "\n\nsize        target    frames/s    ms/frame\n");
  for (const FrameSize size : options.sizes) {
    const std::vector<std::uint8_t> scene = skinFrame(size.width, size.height);
    for (const std::string& target : options.targets) {
      useTarget(target);
      printRow(size, target, medianTime(size, scene, options));
    }
  }
}

}  // namespace vlvk::tool
