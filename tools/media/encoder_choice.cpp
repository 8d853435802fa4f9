/// See encoder_choice.h.
#include "tools/media/encoder_choice.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string_view>

extern "C" {
#include <libavutil/opt.h>
}

#include "tools/io/messages.h"
#include "tools/media/media_log.h"
#include "tools/media/media_output.h"

namespace vlvk::tool {
namespace {

struct Quality {
  const char* encoder;
  const char* options;
};

// So good that one does not see the loss, at the speed that is usual for the encoder.
constexpr Quality kQualities[] = {
    {"libx264", "crf=18:preset=medium"},
    {"libx265", "crf=20:preset=medium:x265-params=log-level=none"},
    {"libvpx-vp9", "crf=24:b=0:deadline=good:cpu-used=3:row-mt=1"},
    {"libvpx", "crf=6:b=20M:deadline=good:cpu-used=2"},
    {"libaom-av1", "crf=22:b=0:cpu-used=6:row-mt=1"},
    {"libsvtav1", "crf=24:preset=8"},
    {"libtheora", "flags=+qscale:global_quality=1062"},  // 9 of 10
    {"h264_nvenc", "rc=vbr:cq=20:b=0"},
    {"hevc_nvenc", "rc=vbr:cq=22:b=0"},
    {"h264_vaapi", "qp=20"},
    {"hevc_vaapi", "qp=22"},
    {"h264_v4l2m2m", "b=12M"},
    {"hevc_v4l2m2m", "b=8M"},
};
constexpr const char* kOtherQuality = "flags=+qscale:global_quality=236";  // a quantiser of 2

// Files that hold H.264, whatever FFmpeg would take for them.
constexpr std::string_view kH264Kinds[] = {"matroska", "flv", "mpegts"};

constexpr double kHighestQuantiser = 31;  // of codecs like MPEG-4
constexpr double kHighestTheora = 10;     // the best there
constexpr double kHighestH264 = 51;       // and of HEVC; their encoders take more and cut it

// Null: there is none.
const AVOption* optionOf(const AVCodec& codec, const char* name) {
  const AVClass* options = codec.priv_class;
  if (options == nullptr) return nullptr;
  return av_opt_find(static_cast<void*>(&options), name, nullptr, 0, AV_OPT_SEARCH_FAKE_OBJ);
}

const AVCodec* encoderNamed(const std::string& name) {
  const AVCodec* codec = avcodec_find_encoder_by_name(name.c_str());
  const AVCodecDescriptor* descriptor = avcodec_descriptor_get_by_name(name.c_str());
  if (codec == nullptr && descriptor != nullptr) codec = avcodec_find_encoder(descriptor->id);
  if (codec == nullptr || codec->type != AVMEDIA_TYPE_VIDEO) {
    throw UsageError("--codec: FFmpeg has no encoder '" + name + "' for video here");
  }
  return codec;
}

const AVCodec* usualEncoder(const AVOutputFormat& kind) {
  const bool h264 =
      isMovKind(kind) || std::find(std::begin(kH264Kinds), std::end(kH264Kinds), kind.name) != std::end(kH264Kinds);
  const AVCodec* codec = h264 ? avcodec_find_encoder(AV_CODEC_ID_H264) : nullptr;
  const AVCodecID usual = av_guess_codec(&kind, nullptr, nullptr, nullptr, AVMEDIA_TYPE_VIDEO);
  if (codec == nullptr && usual != AV_CODEC_ID_NONE) codec = avcodec_find_encoder(usual);
  if (codec != nullptr) return codec;
  throw UsageError(std::string("files of the kind '") + kind.name + "' hold no video that FFmpeg can write here");
}

std::string shortNumber(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

void checkCrf(const AVCodec& codec, double crf, double highest) {
  if (crf >= 0 && crf <= highest) return;
  throw UsageError("--crf: the encoder " + std::string(codec.name) + " takes 0 to " + shortNumber(highest));
}

// Encoders without loss, those of hardware that want a bit rate, and DV with its fixed one.
bool hasNoQuality(const AVCodec& codec) {
  const AVCodecDescriptor* descriptor = avcodec_descriptor_get(codec.id);
  return (descriptor != nullptr && (descriptor->props & AV_CODEC_PROP_LOSSY) == 0) ||
         std::string_view(codec.name).ends_with("_v4l2m2m") || codec.id == AV_CODEC_ID_DVVIDEO;
}

void setCrf(const AVCodec& codec, double crf, MediaOptions* options) {
  for (const char* name : {"crf", "cq", "qp"}) {
    const AVOption* option = optionOf(codec, name);
    if (option == nullptr) continue;
    const bool h264 = codec.id == AV_CODEC_ID_H264 || codec.id == AV_CODEC_ID_HEVC;
    checkCrf(codec, crf, h264 ? std::min(option->max, kHighestH264) : option->max);
    options->set(name, shortNumber(crf));
    return;
  }
  if (hasNoQuality(codec)) {
    throw UsageError("--crf: the encoder " + std::string(codec.name) + " has no scale of quality");
  }
  checkCrf(codec, crf, codec.id == AV_CODEC_ID_THEORA ? kHighestTheora : kHighestQuantiser);
  options->set("flags", "+qscale");
  options->set("global_quality", shortNumber(crf * FF_QP2LAMBDA));
}

// Of these two encoders the names are no options of FFmpeg, and one complains about others on standard error.
void checkX26xPreset(const AVCodec& codec, const std::string& preset) {
  static constexpr std::string_view kPresets[] = {"ultrafast", "superfast", "veryfast", "faster",   "fast",
                                                  "medium",    "slow",      "slower",   "veryslow", "placebo"};
  if (std::find(std::begin(kPresets), std::end(kPresets), preset) != std::end(kPresets)) return;
  throw UsageError("--preset: " + std::string(codec.name) + " has no '" + preset + "', but ultrafast to veryslow");
}

void setPreset(const AVCodec& codec, const std::string& preset, MediaOptions* options) {
  if (optionOf(codec, "preset") == nullptr) {
    throw UsageError("--preset: the encoder " + std::string(codec.name) + " has none");
  }
  if (std::string_view(codec.name).starts_with("libx26")) {
    checkX26xPreset(codec, preset);
  } else {
    startMediaLog();
    const MediaOwner<AVCodecContext> context = owned(avcodec_alloc_context3(&codec));
    if (av_opt_set(context->priv_data, "preset", preset.c_str(), 0) < 0) {
      throw UsageError("--preset: the encoder " + std::string(codec.name) + " has no '" + preset + "'");
    }
  }
  options->set("preset", preset);
}

}  // namespace

EncoderChoice chooseEncoder(const AVOutputFormat& kind, const EncoderWishes& wishes) {
  EncoderChoice choice{wishes.codec.empty() ? usualEncoder(kind) : encoderNamed(wishes.codec), {}};
  if (avformat_query_codec(&kind, choice.codec->id, FF_COMPLIANCE_NORMAL) == 0) {
    throw UsageError("--codec: files of the kind '" + std::string(kind.name) + "' hold no " +
                     avcodec_get_name(choice.codec->id));
  }
  const Quality* quality = std::find_if(std::begin(kQualities), std::end(kQualities), [&](const Quality& entry) {
    return std::strcmp(entry.encoder, choice.codec->name) == 0;
  });
  choice.options.add(quality == std::end(kQualities) ? kOtherQuality : quality->options);
  if (wishes.crf) setCrf(*choice.codec, *wishes.crf, &choice.options);
  if (!wishes.preset.empty()) setPreset(*choice.codec, wishes.preset, &choice.options);
  return choice;
}

bool takesOddSizes(const AVCodec& codec) {
  static constexpr AVCodecID kTaking[] = {AV_CODEC_ID_VP8,   AV_CODEC_ID_VP9,       AV_CODEC_ID_FFV1,
                                          AV_CODEC_ID_MJPEG, AV_CODEC_ID_RAWVIDEO,  AV_CODEC_ID_WRAPPED_AVFRAME,
                                          AV_CODEC_ID_MPEG4, AV_CODEC_ID_MPEG2VIDEO};
  return std::find(std::begin(kTaking), std::end(kTaking), codec.id) != std::end(kTaking);
}

AVPixelFormat encoderFormat(const AVCodec& codec, AVPixelFormat from) {
  const AVPixelFormat* formats = codec.pix_fmts;
  if (formats == nullptr) return from;
  const auto takes = [formats](AVPixelFormat wanted) {
    const AVPixelFormat* format = formats;
    while (*format != AV_PIX_FMT_NONE && *format != wanted)
      ++format;
    return *format == wanted;
  };
  for (const AVPixelFormat format : {from, AV_PIX_FMT_YUV420P, AV_PIX_FMT_NV12}) {
    if (takes(format)) return format;
  }
  return avcodec_find_best_pix_fmt_of_list(formats, from, 0, nullptr);
}

}  // namespace vlvk::tool
