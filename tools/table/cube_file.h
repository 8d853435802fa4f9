/// Colour cubes (3D LUTs) as text, in files with the extension .cube.
///
///     TITLE "any text"
///     LUT_3D_SIZE 33                 # 2 to 256 nodes along an axis
///     DOMAIN_MIN 0 0 0               # inputs of the first and the last node; without: 0 and 1
///     DOMAIN_MAX 1 1 1
///     0.0 0.0 0.0                    # 33 * 33 * 33 rows of red, green, blue, the red input running fastest
///
/// The other dialect writes the inputs as LUT_3D_INPUT_RANGE 0 1. It may state curves for the channels as well, with
/// LUT_1D_SIZE and LUT_1D_INPUT_RANGE; their rows stand first and are applied first. A file may hold curves alone.
#ifndef VLVK_TOOLS_TABLE_CUBE_FILE_H
#define VLVK_TOOLS_TABLE_CUBE_FILE_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "tools/table/color_cube.h"

namespace vlvk::tool {

/// Bytes of the largest file that is read: the largest cube with six decimals has 453 MB.
inline constexpr std::size_t kMaxCubeFile = std::size_t{512} << 20;

inline constexpr const char* kCubeSizeWord = "LUT_3D_SIZE";
inline constexpr const char* kCurveSizeWord = "LUT_1D_SIZE";

/// Reads the text of a file. Takes memory for the rows that are there, not for those that a size promises. Throws Error
/// with "line N: reason".
ColorCube parseCube(std::span<const std::uint8_t> file);

/// Whether a file states the size of a cube near its start.
bool isCubeText(std::span<const std::uint8_t> file);

/// The text of the cube, 64 nodes along an axis, that holds what the engine's picture does. Reading it gives the same
/// picture.
///
/// @param title  what is no printable ASCII, or a quotation mark, is replaced
std::string formatCube(std::span<const std::uint8_t> picture, std::string_view title);

}  // namespace vlvk::tool

#endif
