/// What the samples of a video mean: the tags that FFmpeg reads, and what is assumed where there are none.
#ifndef VLVK_TOOLS_MEDIA_COLOR_TAGS_H
#define VLVK_TOOLS_MEDIA_COLOR_TAGS_H

#include <string>

#include "tools/media/ffmpeg.h"

namespace vlvk::tool {

/// Numbered as ITU-T H.273 does.
struct ColorTags {
  AVColorSpace matrix = AVCOL_SPC_UNSPECIFIED;
  AVColorRange range = AVCOL_RANGE_UNSPECIFIED;
  AVColorPrimaries primaries = AVCOL_PRI_UNSPECIFIED;
  AVColorTransferCharacteristic transfer = AVCOL_TRC_UNSPECIFIED;
  AVChromaLocation site = AVCHROMA_LOC_UNSPECIFIED;
};

/// What a source does not say by itself.
enum class UntaggedMatrix {
  kBySize,  ///< BT.709 from 720 lines on, else BT.601
  kBt601,   ///< Y4M, which has no tag for it
};

struct ColorPlan {
  ColorTags source;        ///< of the frames as they are decoded, nothing unspecified that the engine needs
  ColorTags work;          ///< of the frames that the engine gets: BT.709 or BT.601
  std::string assumed;     ///< what the tags left open, in words; empty: nothing
  bool converted = false;  ///< from `source` to `work`, before the engine
};

/// Throws Error, a bare reason, for colours that cannot be worked on: HDR, and rare matrices.
ColorPlan planColors(const ColorTags& tags, AVPixelFormat format, int height, UntaggedMatrix untagged);

/// Whether frames have luma only, transparency aside.
bool isGrey(AVPixelFormat format);

/// What a stream says, nothing assumed.
ColorTags colorTagsOf(const AVCodecParameters& stream);

/// "BT.709, limited range".
std::string colorWords(const ColorTags& tags);

}  // namespace vlvk::tool

#endif
