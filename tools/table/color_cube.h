/// Colour cubes of any size, and the engine's colour table made from them.
#ifndef VLVK_TOOLS_TABLE_COLOR_CUBE_H
#define VLVK_TOOLS_TABLE_COLOR_CUBE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "resource/color_picture.h"

namespace vlvk::tool {

/// Red, green, blue; 0 to 1 is black to full.
using Color = std::array<double, 3>;

/// Colours at evenly spaced inputs.
struct ColorNodes {
  int size = 0;               ///< nodes along an axis, 2 or more; 0: there are none
  Color low{0, 0, 0};         ///< what the first node of each axis stands for
  Color high{1, 1, 1};        ///< what the last one stands for, above `low`
  std::vector<float> values;  ///< red, green, blue of node after node
};

/// What becomes of a colour: `curves`, then `nodes`. One of them may be missing.
struct ColorCube {
  ColorNodes curves;  ///< of each channel by itself, `size` nodes
  ColorNodes nodes;   ///< `size` cubed, the red axis running fastest and the blue one slowest
};

/// The colour shown for `input`. Inputs beyond the outermost nodes count as theirs; between curve nodes lies a straight
/// line, between cube nodes the tetrahedron that the colour is in.
Color colorAt(const ColorCube& cube, const Color& input);

/// Colours of an engine's table.
inline constexpr int kTableColors = kColorLevels * kColorLevels * kColorLevels;

/// Byte of the engine's picture (resource/color_picture.h) at which a colour stands.
///
/// @param color  its number in the order of cubes: red + 64 green + 4096 blue, 6 bits each
constexpr std::size_t pictureOffset(int color) {
  const int column = color % kColorLevels;
  const int row = color / kColorLevels % kColorLevels;
  const int tile = color / (kColorLevels * kColorLevels);
  const int x = tile % kColorTilesPerRow * kColorLevels + column;
  const int y = tile / kColorTilesPerRow * kColorLevels + row;
  return (static_cast<std::size_t>(y) * kColorPictureSide + static_cast<std::size_t>(x)) * 4;
}

/// The engine's picture that changes no colour.
std::vector<std::uint8_t> neutralTable();

/// The engine's picture for a cube, kColorPictureSize bytes, to the nearest of 256 levels.
std::vector<std::uint8_t> pictureOfCube(const ColorCube& cube);

}  // namespace vlvk::tool

#endif
