/// Times of frames in place, on one thread: the same program natively and as WebAssembly, where Google Benchmark does
/// not go. scripts/web_speed.sh runs them in turns.
///
///     frame_times TARGET WIDTH HEIGHT FRAMES     prints milliseconds a frame, the median of each kind
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <vlvk/makeup.h>
#include "rows/row_loops.h"

namespace {

/// An NV21 frame of skin, with noise that smoothing has to do with.
class SkinFrame {
 public:
  SkinFrame(int width, int height) : noise_(static_cast<std::size_t>(width) * height * 3 / 2) {
    const std::size_t lumaSize = static_cast<std::size_t>(width) * height;
    std::uint32_t random = 1;
    for (std::size_t i = 0; i < noise_.size(); ++i) {
      random = random * 1103515245U + 12345U;
      const std::uint8_t chroma = i % 2 == 0 ? 150 : 110;
      noise_[i] = i < lumaSize ? static_cast<std::uint8_t>(120 + (random >> 16U) % 40) : chroma;
    }
    restore();
    frame_ = {
        sizeof frame_, VLVK_NV21, VLVK_BT601, VLVK_LIMITED, width, height, {bytes_.data(), bytes_.data() + lumaSize},
        {width, width}};
  }
  void restore() { bytes_ = noise_; }
  const VlvkFrame* frame() const { return &frame_; }

 private:
  std::vector<std::uint8_t> noise_, bytes_;
  VlvkFrame frame_{};
};

double medianMilliseconds(VlvkMakeup* makeup, SkinFrame& picture, int frames) {
  using Clock = std::chrono::steady_clock;
  std::vector<double> times;
  for (int i = 0; i < frames; ++i) {
    picture.restore();
    const Clock::time_point begin = Clock::now();
    if (vlvkMakeupProcess(makeup, picture.frame(), picture.frame(), nullptr) != VLVK_OK) std::abort();
    times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
  }
  std::nth_element(times.begin(), times.begin() + frames / 2, times.end());
  return times[static_cast<std::size_t>(frames) / 2];
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5 || !vlvk::forceRowLoops(argv[1])) {
    std::fprintf(stderr, "frame_times TARGET WIDTH HEIGHT FRAMES, and a target that this build has\n");
    return 2;
  }
  SkinFrame picture(std::atoi(argv[2]), std::atoi(argv[3]));
  for (const int whitening : {50, 0}) {
    VlvkSettings settings;
    vlvkSettingsInit(&settings, sizeof settings);
    settings.whitening = whitening;
    settings.threads = 1;
    VlvkMakeup* makeup = nullptr;
    if (vlvkMakeupCreate(&makeup, &settings) != VLVK_OK) return 1;
    std::printf("%s %.4f\n", whitening > 0 ? "defaults" : "softening alone",
                medianMilliseconds(makeup, picture, std::atoi(argv[4])));
    vlvkMakeupDestroy(makeup);
  }
}
