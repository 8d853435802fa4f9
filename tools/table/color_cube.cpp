/// See color_cube.h.
#include "tools/table/color_cube.h"

#include <algorithm>
#include <cmath>

namespace vlvk::tool {
namespace {

// Where a value lies on an axis: from `node` to the next one, `fraction` of the way.
struct Place {
  int node;
  double fraction;
};

Place placeOn(const ColorNodes& axis, std::size_t channel, double value) {
  const double last = axis.size - 1;
  const double low = axis.low.at(channel);
  const double at = std::clamp((value - low) / (axis.high.at(channel) - low) * last, 0.0, last);
  const int node = std::min(static_cast<int>(at), axis.size - 2);
  return {node, at - node};
}

Color throughCurves(const ColorNodes& curves, const Color& input) {
  Color result{};
  for (std::size_t c = 0; c < 3; ++c) {
    const Place place = placeOn(curves, c, input.at(c));
    const float* value = curves.values.data() + static_cast<std::size_t>(place.node) * 3 + c;
    result.at(c) = value[0] * (1 - place.fraction) + value[3] * place.fraction;
  }
  return result;
}

// Walks from the lower corner of the cell to the upper one, along the axis with the largest fraction first. The four
// corners passed are those of the tetrahedron, and what a fraction has more than the next is the weight of its corner.
Color throughNodes(const ColorNodes& cube, const Color& input) {
  struct Step {
    std::size_t stride;  // in values
    double fraction;
  };
  std::array<Step, 3> steps{};
  std::size_t at = 0;
  std::size_t stride = 3;
  for (std::size_t c = 0; c < 3; ++c) {
    const Place place = placeOn(cube, c, input.at(c));
    at += static_cast<std::size_t>(place.node) * stride;
    steps.at(c) = {stride, place.fraction};
    stride *= static_cast<std::size_t>(cube.size);
  }
  std::sort(steps.begin(), steps.end(), [](const Step& a, const Step& b) { return a.fraction > b.fraction; });
  Color result{};
  double before = 1;
  const auto addCorner = [&](double after) {
    for (std::size_t c = 0; c < 3; ++c)
      result.at(c) += (before - after) * cube.values[at + c];
    before = after;
  };
  for (const Step& step : steps) {
    addCorner(step.fraction);
    at += step.stride;
  }
  addCorner(0);
  return result;
}

std::uint8_t byteOf(double value) {
  return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255));
}

// An index of the engine's table is a channel without its two lowest bits: i stands for the levels 4 i to 4 i + 3. The
// one that its colour is computed for is i / 63, as in the neutral picture. It lies among the four (4.05 i of 255), and
// black and white are met exactly, which neither the lowest (252 for white) nor the middle one would do.
double inputOf(int index) {
  return static_cast<double>(index) / (kColorLevels - 1);
}

}  // namespace

Color colorAt(const ColorCube& cube, const Color& input) {
  const Color color = cube.curves.size > 0 ? throughCurves(cube.curves, input) : input;
  return cube.nodes.size > 0 ? throughNodes(cube.nodes, color) : color;
}

std::vector<std::uint8_t> neutralTable() {
  std::vector<std::uint8_t> picture(kColorPictureSize);
  fillNeutralPicture(picture.data());
  return picture;
}

std::vector<std::uint8_t> pictureOfCube(const ColorCube& cube) {
  std::vector<std::uint8_t> picture(kColorPictureSize);
  for (int i = 0; i < kTableColors; ++i) {
    const Color input{inputOf(i % kColorLevels), inputOf(i / kColorLevels % kColorLevels),
                      inputOf(i / (kColorLevels * kColorLevels))};
    const Color color = colorAt(cube, input);
    std::uint8_t* pixel = picture.data() + pictureOffset(i);
    pixel[0] = byteOf(color[2]);
    pixel[1] = byteOf(color[1]);
    pixel[2] = byteOf(color[0]);
    pixel[3] = 255;
  }
  return picture;
}

}  // namespace vlvk::tool
