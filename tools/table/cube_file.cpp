/// Recognising and writing of .cube files.
#include "tools/table/cube_file.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>

#include "tools/io/messages.h"

namespace vlvk::tool {
namespace {

// A level with the six decimals that are usual; the rounding is far below half a level.
std::string decimal(int level) {
  std::array<char, 16> digits{};
  const auto [end, error] =
      std::to_chars(digits.data(), digits.data() + digits.size(), level / 255.0, std::chars_format::fixed, 6);
  return {digits.data(), end};
}

}  // namespace

bool isCubeText(std::span<const std::uint8_t> file) {
  const std::string_view start(reinterpret_cast<const char*>(file.data()), std::min<std::size_t>(file.size(), 65536));
  return start.find(kCubeSizeWord) != start.npos || start.find(kCurveSizeWord) != start.npos;
}

std::string formatCube(std::span<const std::uint8_t> picture, std::string_view title) {
  std::array<std::string, 256> decimals;
  for (int level = 0; level < 256; ++level)
    decimals.at(static_cast<std::size_t>(level)) = decimal(level);
  std::string name = printable(title, 200);
  std::replace(name.begin(), name.end(), '"', '\'');
  std::string text = "TITLE \"" + name + "\"\n" + kCubeSizeWord + " " + std::to_string(kColorLevels) + "\n";
  text.reserve(text.size() + std::size_t{27} * kTableColors);
  for (int i = 0; i < kTableColors; ++i) {
    const std::uint8_t* pixel = picture.data() + pictureOffset(i);
    text += decimals.at(pixel[2]) + ' ' + decimals.at(pixel[1]) + ' ' + decimals.at(pixel[0]) + '\n';
  }
  return text;
}

}  // namespace vlvk::tool
