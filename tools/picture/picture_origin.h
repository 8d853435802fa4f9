/// What a picture file holds besides its pixels, and how it was coded: what a result should keep of it.
#ifndef VLVK_TOOLS_PICTURE_PICTURE_ORIGIN_H
#define VLVK_TOOLS_PICTURE_PICTURE_ORIGIN_H

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vlvk::tool {

/// Of lossy coding: no difference to the eye.
inline constexpr int kDefaultQuality = 92;

/// The name of a PNG text that is the same as a JPEG comment.
inline constexpr char kCommentName[] = "Comment";

/// A text of a PNG file or a comment of a JPEG.
struct Text {
  std::string name = kCommentName;
  std::string text;  ///< Latin-1; of a PNG with `international` set, UTF-8; of a JPEG, whatever its writer took
  bool international = false;
  bool compressed = false;
  std::string language;        ///< of an international one
  std::string translatedName;  ///< too
};

/// What a PNG without a profile states of its colours, in the units of the format: 1 is 100000. 0: not stated.
struct StatedColors {
  std::int32_t gamma = 0;                        ///< of encoding
  std::array<std::int32_t, 8> chromaticities{};  ///< x and y of white, red, green, blue
};

/// Blocks of metadata as files embed them, without the signatures that the kinds of files put before them. Empty: none.
struct Metadata {
  std::vector<std::uint8_t> exif;  ///< from its byte order mark ("II" or "MM") on
  std::string xmp;                 ///< the packet, UTF-8
  std::vector<std::uint8_t> iptc;  ///< IIM data sets
  std::vector<Text> texts;         ///< those that hold none of the above
};

inline constexpr double kInch = 0.0254;  ///< metres

/// How densely the pixels are meant to lie.
struct Density {
  double x;              ///< pixels per metre from left to right, more than 0
  double y;              ///< from top to bottom
  bool absolute = true;  ///< false: the two numbers have no unit, and tell the shape of pixels alone
};

/// How a JPEG was coded.
struct JpegCoding {
  int chromaWidth = 1;   ///< luma samples to a chroma sample, 1 or 2, from left to right
  int chromaHeight = 1;  ///< from top to bottom
  int quality = 0;  ///< the least, from kDefaultQuality on, that quantizes no coefficient more coarsely; at most 100
  bool progressive = false;
};

struct PictureOrigin {
  Metadata metadata;
  std::optional<Density> density;  ///< of the upright picture
  std::optional<JpegCoding> jpeg;  ///< of a JPEG, and of the upright picture
  std::optional<StatedColors> colors;
  bool lossy = false;   ///< read from a file that does not keep pixels exactly
  bool turned = false;  ///< rows and columns of the file have changed places
};

/// Remarks for the user on what a file loses, each a bare reason.
using Notes = std::vector<std::string>;

inline constexpr char kDeepNote[] = "its samples of more than 8 bits are rounded to 8";

/// Adds a remark where they are wanted.
inline void addNote(Notes* notes, std::string note) {
  if (notes != nullptr) notes->push_back(std::move(note));
}

}  // namespace vlvk::tool

#endif
