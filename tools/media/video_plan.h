/// What happens to the frames of a video between decoder and encoder, decided before the first one.
#ifndef VLVK_TOOLS_MEDIA_VIDEO_PLAN_H
#define VLVK_TOOLS_MEDIA_VIDEO_PLAN_H

#include <string>
#include <vector>

#include "tools/media/color_tags.h"
#include "tools/media/ffmpeg.h"
#include "tools/media/frame_converter.h"
#include "tools/media/media_input.h"

namespace vlvk::tool {

struct VideoPlan {
  AVPixelFormat decoded;  ///< of the frames as they come, with `width` and `height` of these
  int decodedWidth;
  int decodedHeight;

  bool converted;         ///< before the engine, by `conversion`
  Conversion conversion;  ///< its format is what the engine reads

  int width;  ///< of the result, even where the encoder wants that
  int height;
  AVPixelFormat written;  ///< by the engine
  ColorTags result;       ///< matrix and range in which the engine writes
  AVPixelFormat encoded;  ///< what the encoder takes, of hardware too

  Turn turn;                ///< applied, instead of a mark in the file
  Turn marked;              ///< left to the mark, which the result keeps
  AVRational aspect;        ///< of a sample
  AVRational timeBase;      ///< of the encoder
  AVRational rate;          ///< frames a second, about; 0 if unknown
  AVFieldOrder fieldOrder;  ///< of the decoded frames
};

/// Throws Error, a bare reason, if the engine cannot work on such a video.
///
/// @param notes  lines for the user are added: what was assumed or lost
VideoPlan planVideo(const MediaInput& input, const AVOutputFormat& kind, const AVCodec& encoder,
                    std::vector<std::string>* notes);

}  // namespace vlvk::tool

#endif
