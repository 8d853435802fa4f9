/// Which encoder writes a video, and with which options.
#ifndef VLVK_TOOLS_MEDIA_ENCODER_CHOICE_H
#define VLVK_TOOLS_MEDIA_ENCODER_CHOICE_H

#include "tools/media/encoder_wishes.h"
#include "tools/media/ffmpeg.h"

namespace vlvk::tool {

struct EncoderChoice {
  const AVCodec* codec;
  MediaOptions options;
};

/// Throws UsageError, a bare reason, for wishes that cannot be met.
EncoderChoice chooseEncoder(const AVOutputFormat& kind, const EncoderWishes& wishes);

/// Whether the encoder takes frames of odd width or height.
bool takesOddSizes(const AVCodec& codec);

/// The format in which it gets frames of the format `from`: that one, or what the engine can write, or what is nearest.
AVPixelFormat encoderFormat(const AVCodec& codec, AVPixelFormat from);

}  // namespace vlvk::tool

#endif
