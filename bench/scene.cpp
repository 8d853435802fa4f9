/// See scene.h.
#include "bench/scene.h"

#include <algorithm>
#include <random>

#include "tools/engine/skin_frame.h"

#ifdef VLVK_BENCH_PORTRAIT
#include <vlvk/rgb_to_yuv.h>
#include "tools/commands/files.h"
#endif

namespace vlvk_bench {

Nv21Frame skinFrame(Size size) {
  return vlvk::tool::skinFrame(size.width, size.height);
}

std::vector<std::uint8_t> lumaPlane(Size size, int contextRows) {
  std::mt19937 random(1);
  const std::size_t rows = static_cast<std::size_t>(size.height) + 2 * static_cast<std::size_t>(contextRows);
  std::vector<std::uint8_t> plane;
  plane.reserve(static_cast<std::size_t>(size.width) * rows);
  for (std::size_t y = 0; y < rows; ++y) {
    for (int x = 0; x < size.width; ++x)
      plane.push_back(static_cast<std::uint8_t>(60 + x * 120 / size.width + static_cast<int>(random() % 24)));
  }
  return plane;
}

#ifdef VLVK_BENCH_PORTRAIT
namespace {

Nv21Frame portraitFrame(Size size) {
  const vlvk::tool::Picture tile = vlvk::tool::readPicture(VLVK_BENCH_PORTRAIT);
  vlvk::tool::Picture picture(size.width, size.height);
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      const std::uint8_t* from = tile.row(y % tile.height) + 4 * static_cast<std::size_t>(x % tile.width);
      std::copy_n(from, 4, picture.row(y) + 4 * static_cast<std::size_t>(x));
    }
  }
  Nv21Frame frame(size.pixels() * 3 / 2);
  VKRGBAToNV21_NeonCall(picture.pixels.get(), 4 * size.width, frame.data(), size.width, frame.data() + size.pixels(),
                        size.width, size.width, size.height);
  return frame;
}

}  // namespace
#endif

const std::vector<Scene>& scenes() {
  static const std::vector<Scene> all = {
      {"skin", skinFrame},
#ifdef VLVK_BENCH_PORTRAIT
      {"portrait", portraitFrame},
#endif
  };
  return all;
}

}  // namespace vlvk_bench
