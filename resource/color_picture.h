/// The colour picture that a host supplies as "adjust.vlk": for every colour at 6 bits a channel, the one to show.
///
/// 512 x 512 pixels of 4 bytes, blue, green, red and one that is not read, rows from top to bottom. It is read as 8 x 8
/// tiles of 64 x 64: column in a tile is red, row in a tile green, tile number blue.
///
/// Depends on nothing, so that the program can make such pictures too.
#ifndef VLVK_RESOURCE_COLOR_PICTURE_H
#define VLVK_RESOURCE_COLOR_PICTURE_H

#include <cstddef>

namespace vlvk {

inline constexpr int kColorLevels = 64;  // of each channel
inline constexpr int kColorPictureSide = 512;
inline constexpr int kColorTilesPerRow = kColorPictureSide / kColorLevels;
inline constexpr std::size_t kColorPictureSize = std::size_t{4} * kColorPictureSide * kColorPictureSide;

/// Writes the picture that changes no colour (beyond the reduction to 6 bits), kColorPictureSize bytes.
void fillNeutralPicture(unsigned char* picture);

}  // namespace vlvk

#endif
