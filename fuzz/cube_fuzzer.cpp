/// The text of colour cubes: a cube that turns colours into colours, or an error with its line.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "fuzz/input.h"
#include "tools/io/messages.h"
#include "tools/table/color_cube.h"
#include "tools/table/cube_file.h"

namespace {

using vlvk::tool::Color;
using vlvk::tool::ColorCube;

/// Whatever lies between nodes is no less than the least of them and no more than the greatest.
void checkColor(const ColorCube& cube, const Color& input) {
  const std::vector<float>& values = cube.nodes.size > 0 ? cube.nodes.values : cube.curves.values;
  const auto [least, greatest] = std::minmax_element(values.begin(), values.end());
  const double slack = 1e-9 * std::max(std::abs(*least), std::abs(*greatest));
  for (const double value : vlvk::tool::colorAt(cube, input))
    fuzz::check(value >= *least - slack && value <= *greatest + slack, "a colour that is not between its neighbours");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vlvk::tool::isCubeText({data, size});
  try {
    const ColorCube cube = vlvk::tool::parseCube({data, size});
    // A corner, where a row too few would show as a read past the last one, and anything else.
    for (const Color& input : {Color{0, 0, 0}, Color{1, 1, 1}, Color{0.3, 0.6, 0.1}, Color{-1e30, 0.5, 1e30}})
      checkColor(cube, input);
  } catch (const vlvk::tool::Error& error) {
    const std::string_view text = error.what();
    fuzz::check(text.starts_with("line "), "an error without its line");
    fuzz::check(text.size() < 300, "an error without an end");
    fuzz::checkPlainLine(text);
  }
  return 0;
}
