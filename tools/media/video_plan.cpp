/// See video_plan.h.
#include "tools/media/video_plan.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string_view>
#include <utility>

#include "tools/io/messages.h"
#include "tools/media/encoder_choice.h"
#include "tools/media/media_output.h"
#include "tools/picture/frame_size.h"

namespace vlvk::tool {
namespace {

constexpr int kMpeg4Ticks = 65535;  // most that MPEG-4 divides a second into

bool isY4m(const AVOutputFormat& kind) {
  return std::strcmp(kind.name, "yuv4mpegpipe") == 0;
}

// A matrix for row vectors, x to the right, y down.
Turn turnOf(const AVStream& stream, std::vector<std::string>* notes) {
  const auto* matrix =
      reinterpret_cast<const std::int32_t*>(av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr));
  if (matrix == nullptr) return {};
  std::int64_t x = matrix[0];
  std::int64_t y = matrix[1];
  if (x != 0 && y != 0) {
    notes->push_back("its mark to turn the picture is left out: it is no quarter turn, and only MP4 and MOV hold it");
    return {};
  }
  Turn turn;
  turn.mirrored = x * matrix[4] < y * matrix[3];
  if (turn.mirrored) {
    x = -x;
    y = -y;
  }
  if (y == 0) turn.quarters = x < 0 ? 2 : 0;
  if (x == 0) turn.quarters = y < 0 ? 3 : 1;
  return turn;
}

// What the engine works on as it comes. The J says full range, which has a tag of its own.
AVPixelFormat engineFormat(AVPixelFormat format) {
  const bool direct = format == AV_PIX_FMT_NV12 || format == AV_PIX_FMT_NV21;
  return direct ? format : AV_PIX_FMT_YUV420P;
}

bool isEngineFormat(AVPixelFormat format) {
  return format == AV_PIX_FMT_YUVJ420P || engineFormat(format) == format;
}

// Where times are those of a clock, not numbers of frames.
bool hasFreeTimes(const AVOutputFormat& kind, const AVCodec& encoder, AVRational ticks) {
  static constexpr std::string_view kSteady[] = {"avi", "yuv4mpegpipe", "dv", "mxf", "gxf", "ogg", "swf"};
  const bool steady = std::find(std::begin(kSteady), std::end(kSteady), kind.name) != std::end(kSteady);
  return !steady && (kind.flags & AVFMT_NOTIMESTAMPS) == 0 && encoder.supported_framerates == nullptr &&
         (encoder.id != AV_CODEC_ID_MPEG4 || ticks.den <= kMpeg4Ticks);
}

void planTimes(const AVStream& stream, const AVOutputFormat& kind, const AVCodec& encoder, VideoPlan* plan) {
  plan->rate = stream.avg_frame_rate.num > 0 ? stream.avg_frame_rate : stream.r_frame_rate;
  plan->timeBase = stream.time_base;
  const AVRational finest = stream.r_frame_rate.num > 0 ? stream.r_frame_rate : plan->rate;
  if (!hasFreeTimes(kind, encoder, stream.time_base) && finest.num > 0) plan->timeBase = av_inv_q(finest);
}

void planSize(const AVCodec& encoder, VideoPlan* plan, std::vector<std::string>* notes) {
  plan->width = plan->decodedWidth;
  plan->height = plan->decodedHeight;
  if (plan->turn.swapsSides()) std::swap(plan->width, plan->height);
  checkPictureSize(static_cast<std::uint32_t>(plan->width), static_cast<std::uint32_t>(plan->height));
  if (takesOddSizes(encoder) || ((plan->width | plan->height) & 1) == 0) return;
  plan->width &= ~1;
  plan->height &= ~1;
  if (plan->width == 0 || plan->height == 0) throw Error(std::string(encoder.name) + " takes no frames so small");
  notes->push_back("the odd last row or column is left out, the encoder wants even sizes: " +
                   std::to_string(plan->width) + "x" + std::to_string(plan->height));
}

// Where chroma is made smaller it comes to lie as in H.264 that says nothing. Turned, it lies elsewhere.
AVChromaLocation workSite(const ColorPlan& colors, const VideoPlan& plan) {
  if (!plan.turn.none()) return AVCHROMA_LOC_UNSPECIFIED;
  return hasSameChroma(plan.decoded, plan.conversion.format) ? colors.work.site : AVCHROMA_LOC_LEFT;
}

void noteConversion(const ColorPlan& colors, const VideoPlan& plan, std::vector<std::string>* notes) {
  if (!isEngineFormat(plan.decoded)) {
    const bool alpha = (av_pix_fmt_desc_get(plan.decoded)->flags & AV_PIX_FMT_FLAG_ALPHA) != 0;
    notes->push_back(std::string("frames of ") + av_get_pix_fmt_name(plan.decoded) + " are converted to " +
                     "8-bit 4:2:0" + (alpha ? ", without their transparency" : ""));
  }
  if (colors.converted && colors.source.matrix != AVCOL_SPC_RGB) {
    notes->push_back("colours of " + colorWords(colors.source) + " are converted to " + colorWords(colors.work));
  }
  if (!colors.assumed.empty()) {
    notes->push_back("its colours are not tagged, and taken as " + colors.assumed);
  }
}

// Whether players find the tags, in the frames or beside them.
bool holdsColorTags(const AVOutputFormat& kind, const AVCodec& encoder) {
  static constexpr AVCodecID kTelling[] = {AV_CODEC_ID_H264, AV_CODEC_ID_HEVC, AV_CODEC_ID_AV1, AV_CODEC_ID_VP9,
                                           AV_CODEC_ID_MPEG2VIDEO};
  return isMovKind(kind) || std::strcmp(kind.name, "matroska") == 0 || std::strcmp(kind.name, "webm") == 0 ||
         std::find(std::begin(kTelling), std::end(kTelling), encoder.id) != std::end(kTelling);
}

// What is written: as it came, unless players would take it for something else.
ColorTags resultColors(const ColorTags& work, const AVOutputFormat& kind, const AVCodec& encoder, int height) {
  ColorTags result = work;
  if (isY4m(kind)) {
    result.matrix = AVCOL_SPC_SMPTE170M;  // the range has a tag
  } else if (encoder.id == AV_CODEC_ID_MJPEG) {
    result.matrix = AVCOL_SPC_SMPTE170M;
    result.range = AVCOL_RANGE_JPEG;
  } else if (!holdsColorTags(kind, encoder)) {
    const ColorTags usual = planColors({}, AV_PIX_FMT_YUV420P, height, UntaggedMatrix::kBySize).work;
    result.matrix = usual.matrix;
    result.range = usual.range;
  }
  return result;
}

}  // namespace

VideoPlan planVideo(const MediaInput& input, const AVOutputFormat& kind, const AVCodec& encoder,
                    std::vector<std::string>* notes) {
  const AVStream& stream = input.video();
  const AVCodecParameters& coded = *stream.codecpar;
  if (coded.width <= 0 || coded.format == AV_PIX_FMT_NONE) {
    throw Error("its frames cannot be decoded" +
                std::string((input.format().pb != nullptr && input.format().pb->seekable == 0)
                                ? ": from a pipe an MP4 must have its index in front, ffmpeg -movflags +faststart"
                                : ": no size or pixel format is known"));
  }
  VideoPlan plan{};
  plan.decoded = static_cast<AVPixelFormat>(coded.format);
  plan.decodedWidth = coded.width;
  plan.decodedHeight = coded.height;
  const bool y4m = input.isKind("yuv4mpegpipe");
  const ColorPlan colors = planColors(colorTagsOf(coded), plan.decoded, coded.height,
                                      y4m ? UntaggedMatrix::kBt601 : UntaggedMatrix::kBySize);
  if (isMovKind(kind)) {
    std::vector<std::string> none;  // the mark stays, of whatever turn
    plan.marked = turnOf(stream, &none);
  } else {
    plan.turn = turnOf(stream, notes);
  }
  planSize(encoder, &plan, notes);
  planTimes(stream, kind, encoder, &plan);
  plan.aspect = stream.sample_aspect_ratio.num > 0 ? stream.sample_aspect_ratio : coded.sample_aspect_ratio;
  if (plan.turn.swapsSides() && plan.aspect.num > 0) plan.aspect = av_inv_q(plan.aspect);
  plan.fieldOrder = coded.field_order;

  plan.converted = colors.converted || !plan.turn.none() || !isEngineFormat(plan.decoded);
  plan.conversion = {colors.source, colors.work, engineFormat(plan.decoded), plan.turn};
  plan.conversion.target.site = workSite(colors, plan);
  plan.result = resultColors(plan.conversion.target, kind, encoder, plan.height);
  plan.encoded = encoderFormat(encoder, plan.conversion.format);
  plan.written = isEngineFormat(plan.encoded) ? engineFormat(plan.encoded) : plan.conversion.format;
  noteConversion(colors, plan, notes);
  return plan;
}

}  // namespace vlvk::tool
