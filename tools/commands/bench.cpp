/// The command `bench`: measurement and table.
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tools/commands/commands.h"
#include "tools/engine/engine.h"
#include "tools/engine/frame_times.h"
#include "tools/engine/skin_frame.h"
#include "tools/io/messages.h"
#include "tools/options/values.h"
#include "tools/table/color_cube.h"

namespace vlvk::tool {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kWarmUpFrames = 2;  // they size the buffers and build the tables
constexpr std::size_t kLeastFrames = 3;

// Milliseconds of a frame.
struct FrameTimes {
  double median;
  double slowest;    // but one in a hundred
  double processor;  // of all threads, what they do on their way to sleep included
};

// With a neutral table all colours go through the table.
FrameTimes timeFrames(FrameSize size, const std::vector<std::uint8_t>& scene, const BenchOptions& options) {
  Look look;
  look.settings.threads = options.threads;
  look.table = neutralTable();
  Engine engine(std::move(look));
  std::vector<std::uint8_t> pixels(scene.size());
  const VlvkFrame frame = nv21Frame(pixels.data(), size.width, size.height);
  std::vector<double> times;
  double processor = 0;
  const auto oneFrame = [&] {
    std::copy(scene.begin(), scene.end(), pixels.begin());  // beautified again and again it would not be the scene
    const double processorBefore = processorTime();
    const Clock::time_point begin = Clock::now();
    engine.beautify(frame, frame);
    times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
    if (options.pace > 0) std::this_thread::sleep_for(std::chrono::duration<double, std::milli>(options.pace));
    processor += processorTime() - processorBefore;
  };
  for (int i = 0; i < kWarmUpFrames; ++i)
    oneFrame();
  times.clear();
  processor = 0;
  const Clock::time_point begin = Clock::now();
  while (times.size() < kLeastFrames || Clock::now() - begin < std::chrono::duration<double>(options.seconds))
    oneFrame();
  return {quantile(times, 50), quantile(times, 99), processor / static_cast<double>(times.size())};
}

void printRow(FrameSize size, const std::string& target, const FrameTimes& times) {
  const std::string name = std::to_string(size.width) + "x" + std::to_string(size.height);
  char line[100];
  std::snprintf(line, sizeof line, "%-12s%-8s%10.1f%12.3f%12.3f%14.3f\n", name.c_str(), target.c_str(),
                1000 / times.median, times.median, times.slowest, times.processor);
  printText(line);
}

}  // namespace

// Rows appear as they are measured.
void run(const BenchOptions& options) {
  printText("NV21 frames in place, skin all over, default settings, " + std::to_string(options.threads) +
            (options.threads == 1 ? " thread" : " threads") +
            (options.pace > 0 ? ", " + spelled(options.pace) + " ms between frames" : "") +
            "\n\nsize        target    frames/s    ms/frame     ms, 99 %  processor ms\n");
  for (const FrameSize size : options.sizes) {
    const std::vector<std::uint8_t> scene = skinFrame(size.width, size.height);
    for (const std::string& target : options.targets) {
      useTarget(target);
      printRow(size, target, timeFrames(size, scene, options));
    }
  }
}

}  // namespace vlvk::tool
