/// Runs one unit a number of times, for counting its instructions under an emulator:
///
///     vlvk_count_rows UNIT REPETITIONS
///
/// prints the pixels of one repetition. What two runs differ in, divided by the pixels they differ by, is the count for
/// a pixel, without start-up. scripts/arm_instructions.sh does so for every unit.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <vlvk/CFastEdgePreserved.h>
#include <vlvk/band_smoothing.h>
#include <vlvk/rgb_to_yuv.h>
#include <vlvk/skin_blend.h>
#include <vlvk/yuv_to_rgb.h>
#include "resource/neutral_colors.h"

namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr int kRadius = 20;
constexpr int kLevel = 600;
constexpr std::size_t kPixels = std::size_t{kWidth} * kHeight;

/// An NV21 frame and what the units work in. No loop's path depends on the samples.
struct Scene {
  std::vector<std::uint8_t> luma;
  std::vector<std::uint8_t> chroma = std::vector<std::uint8_t>(kPixels / 2, 128);
  std::vector<std::uint8_t> smoothed = std::vector<std::uint8_t>(kPixels);
  std::vector<std::uint8_t> rgba = std::vector<std::uint8_t>(kPixels * 4);
  std::vector<std::uint16_t> sums = std::vector<std::uint16_t>(kWidth);
  std::vector<std::uint32_t> squares = std::vector<std::uint32_t>(kWidth);
  vlvk::NeutralColors colors;
  CFastEdgePreserved filter{1, &colors};

  Scene() {
    for (std::size_t i = 0; i < kPixels; ++i)
      luma.push_back(static_cast<std::uint8_t>(i * 7 + i / kWidth * 11));
    filter.radius = kRadius;
    frame();  // makes the tables
  }

  /// One band, as high as the frame.
  void smooth() {
    const VKBandScratch scratch{nullptr, bytes(sums.data()), bytes(squares.data()), nullptr, nullptr};
    MeanTop_Window_Neon(luma.data(), smoothed.data(), kWidth, kHeight - 2 * kRadius, kWidth, kRadius, kLevel, &scratch);
  }
  void blend() {
    MeanBlendImageWithSkin(luma.data(), kWidth, smoothed.data(), chroma.data(), kWidth, kWidth, kHeight, 0,
                           filter.skinTable, filter.skinCentre + 1);
  }
  void toPixels() {
    VKNV21ToRGBA_NeonCall(luma.data(), kWidth, chroma.data(), kWidth, rgba.data(), 4 * kWidth, kWidth, kHeight);
  }
  void fromPixels() {
    VKRGBAToNV21_NeonCall(rgba.data(), 4 * kWidth, luma.data(), kWidth, chroma.data(), kWidth, kWidth, kHeight);
  }
  void lookUp() { adjustColors(100, 0); }
  void mapThroughCurves() { adjustColors(0, 50); }
  void frame() { filter.processVideo(luma.data(), kWidth, chroma.data(), kWidth, kWidth, kHeight, nullptr, 0, true); }

 private:
  void adjustColors(int colorAdjustIntensity, int whitenIntensity) {
    CFastEdgePreserved::MakeupParam band{};
    band.outPlane = rgba.data();
    band.outStride = 4 * kWidth;
    band.width = kWidth;
    band.rows = kHeight;
    band.colorAdjustIntensity = colorAdjustIntensity;
    band.whitenIntensity = whitenIntensity;
    filter.colorAdjustRGBA(&band);
  }

  template <class T>
  static unsigned char* bytes(T* elements) {
    return static_cast<unsigned char*>(static_cast<void*>(elements));
  }
};

struct Unit {
  void (Scene::*run)();
  std::size_t pixels;
};

const std::map<std::string, Unit> kUnits = {
    {"smoothing", {&Scene::smooth, std::size_t{kWidth} * (kHeight - 2 * kRadius)}},
    {"blend", {&Scene::blend, kPixels}},
    {"nv21_to_rgba", {&Scene::toPixels, kPixels}},
    {"rgba_to_nv21", {&Scene::fromPixels, kPixels}},
    {"table_lookup", {&Scene::lookUp, kPixels}},
    {"tone_curves", {&Scene::mapThroughCurves, kPixels}},
    {"frame_in_place", {&Scene::frame, kPixels}},
};

}  // namespace

int main(int argc, char** argv) {
  const auto unit = argc == 3 ? kUnits.find(argv[1]) : kUnits.end();
  if (unit == kUnits.end()) {
    std::fputs("usage: vlvk_count_rows UNIT REPETITIONS, where UNIT is one of", stderr);
    for (const auto& [name, ignored] : kUnits)
      std::fprintf(stderr, " %s", name.c_str());
    std::fputs("\n", stderr);
    return 2;
  }
  Scene scene;
  for (long i = std::strtol(argv[2], nullptr, 10); i > 0; --i)
    std::invoke(unit->second.run, scene);
  std::printf("%zu\n", unit->second.pixels);
  return 0;
}
