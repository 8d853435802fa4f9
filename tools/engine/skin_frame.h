/// A frame for measurements of speed; the benchmarks use it too.
#ifndef VLVK_TOOLS_ENGINE_SKIN_FRAME_H
#define VLVK_TOOLS_ENGINE_SKIN_FRAME_H

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace vlvk::tool {

/// An NV21 frame without padding, of any size: shaded skin with grain, so that every pixel is smoothed and blended. The
/// same frame every time.
inline std::vector<std::uint8_t> skinFrame(int width, int height) {
  std::mt19937 random(1);
  const auto grain = [&random](std::uint32_t range) { return static_cast<int>(random() % range); };
  const auto columns = static_cast<std::size_t>(width);
  const std::size_t chromaBytes = (columns + columns % 2) * ((static_cast<std::size_t>(height) + 1) / 2);
  std::vector<std::uint8_t> frame;
  frame.reserve(columns * static_cast<std::size_t>(height) + chromaBytes);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x)
      frame.push_back(static_cast<std::uint8_t>(90 + x * 60 / width + y * 40 / height + grain(24)));
  }
  for (std::size_t i = 0; i < chromaBytes; ++i)
    frame.push_back(static_cast<std::uint8_t>((i % 2 == 0 ? 151 : 106) + grain(8)));  // V, U
  return frame;
}

}  // namespace vlvk::tool

#endif
