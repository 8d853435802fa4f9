/// The text of colour cubes: a cube that turns colours into colours, or an error with its line.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/check.h"
#include "tools/io/messages.h"
#include "tools/table/color_cube.h"
#include "tools/table/cube_file.h"

namespace {

using vlvk::tool::Color;
using vlvk::tool::ColorCube;
using vlvk::tool::ColorNodes;

std::size_t power(int size, int exponent) {
  return exponent == 0 ? 1 : static_cast<std::size_t>(size) * power(size, exponent - 1);
}

void checkNodes(const ColorNodes& nodes, int axes) {
  const std::size_t expected = nodes.size == 0 ? 0 : 3 * power(nodes.size, axes);
  fuzz::check(nodes.size != 1 && nodes.values.size() == expected, "not as many rows as the size tells");
}

/// Whatever lies between nodes is no less than the least of them and no more than the greatest.
void checkColor(const ColorCube& cube, const Color& input) {
  const std::vector<float>& values = cube.nodes.size > 0 ? cube.nodes.values : cube.curves.values;
  const auto [least, greatest] = std::minmax_element(values.begin(), values.end());
  const double slack = 1e-9 * std::max(std::abs(*least), std::abs(*greatest));
  for (const double value : vlvk::tool::colorAt(cube, input))
    fuzz::check(value >= *least - slack && value <= *greatest + slack, "a colour that is not between its neighbours");
}

void checkCube(const ColorCube& cube) {
  checkNodes(cube.curves, 1);
  checkNodes(cube.nodes, 3);
  fuzz::check(cube.curves.size + cube.nodes.size > 0, "a cube without anything");
  for (const Color& input : {Color{0, 0, 0}, Color{1, 1, 1}, Color{0.3, 0.6, 0.1}, Color{-1e30, 0.5, 1e30}})
    checkColor(cube, input);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vlvk::tool::isCubeText({data, size});
  try {
    checkCube(vlvk::tool::parseCube({data, size}));
  } catch (const vlvk::tool::Error& error) {
    const std::string_view text = error.what();
    fuzz::check(text.starts_with("line "), "an error without its line");
    fuzz::check(text.size() < 300, "an error without an end");
    fuzz::check(std::none_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c > 0x7E; }),
                "an error is not one plain line");
  }
  return 0;
}
