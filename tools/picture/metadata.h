/// EXIF, XMP, IPTC and ICC data of picture files. All functions may run on several threads at once.
#ifndef VLVK_TOOLS_PICTURE_METADATA_H
#define VLVK_TOOLS_PICTURE_METADATA_H

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "tools/picture/frame_size.h"
#include "tools/picture/picture_origin.h"

namespace vlvk::tool {

/// Looks through the metadata of a file that was just decoded. What cannot be read is dropped with a note. Where the
/// file itself gives no density, that of EXIF is taken.
///
/// @return the orientation, in which cameras note what is up instead of turning the pixels: that of EXIF, 1 to 8, or
///         where it has none, of XMP; 1, upright, where neither has
int readMetadata(PictureOrigin* origin, Notes* notes);

enum class TextRoom { kNone, kComments, kAll };

/// What a kind of file has room for.
struct MetadataRoom {
  bool iptc = false;     ///< false: its entries go to XMP
  bool density = false;  ///< false: only EXIF can state it
  bool colors = false;   ///< for gamma and primaries besides a profile
  TextRoom texts = TextRoom::kNone;
  std::size_t maxExif = std::numeric_limits<std::uint32_t>::max();
  std::size_t maxXmp = std::numeric_limits<std::uint32_t>::max();
  std::size_t maxText = std::numeric_limits<std::uint32_t>::max();
};

/// The metadata for a file whose upright pixels come from `origin`: it says upright and the new size, and has no
/// thumbnail nor anything else that shows or points to the pixels of the old file.
///
/// @param size  of the new picture
Metadata metadataFor(const PictureOrigin& origin, FrameSize size, const MetadataRoom& room, Notes* notes);

/// EXIF data as Metadata has it. Some programs put the signature of JPEGs before it in other files, too.
std::vector<std::uint8_t> withoutExifSignature(std::span<const std::uint8_t> block);

/// IPTC data sets as a Photoshop block has them, from its first "8BIM" on; empty where there are none.
std::vector<std::uint8_t> iptcOfPhotoshopBlock(std::span<const std::uint8_t> block);

/// A Photoshop block with these IPTC data sets and nothing else.
std::vector<std::uint8_t> photoshopBlockOf(const std::vector<std::uint8_t>& iptc);

/// Whether an ICC profile describes RGB. A grey or CMYK profile is wrong for the converted pixels.
bool isRgbProfile(std::span<const std::uint8_t> profile);

/// The profile if it is one of RGB; else nothing, with a note if there is one.
std::vector<std::uint8_t> rgbProfile(std::span<const std::uint8_t> profile, Notes* notes);

}  // namespace vlvk::tool

#endif
