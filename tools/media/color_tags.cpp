/// See color_tags.h.
#include "tools/media/color_tags.h"

#include "tools/io/messages.h"

namespace vlvk::tool {
namespace {

constexpr int kHdLines = 720;

bool isBt601(AVColorSpace matrix) {
  return matrix == AVCOL_SPC_SMPTE170M || matrix == AVCOL_SPC_BT470BG;
}

bool isRgb(const AVPixFmtDescriptor& format) {
  return (format.flags & (AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_PAL)) != 0;
}

// Older FFmpeg has a format of its own for full range.
bool isFullRange(const AVPixFmtDescriptor& description) {
  return std::string(description.name).starts_with("yuvj") || isRgb(description);
}

AVColorSpace assumedMatrix(const ColorTags& tags, int height, UntaggedMatrix untagged) {
  if (tags.primaries == AVCOL_PRI_BT709) return AVCOL_SPC_BT709;
  if (tags.primaries == AVCOL_PRI_BT2020) return AVCOL_SPC_BT2020_NCL;
  if (tags.primaries == AVCOL_PRI_SMPTE170M || tags.primaries == AVCOL_PRI_BT470BG) return AVCOL_SPC_SMPTE170M;
  return untagged == UntaggedMatrix::kBySize && height >= kHdLines ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
}

// Primaries and transfer that belong to a matrix, where neither is tagged.
void completeTags(ColorTags* tags) {
  if (tags->primaries != AVCOL_PRI_UNSPECIFIED || tags->transfer != AVCOL_TRC_UNSPECIFIED) return;
  const bool hd = tags->matrix == AVCOL_SPC_BT709;
  const bool pal = tags->matrix == AVCOL_SPC_BT470BG;
  tags->primaries = hd ? AVCOL_PRI_BT709 : pal ? AVCOL_PRI_BT470BG : AVCOL_PRI_SMPTE170M;
  tags->transfer = hd ? AVCOL_TRC_BT709 : AVCOL_TRC_SMPTE170M;
}

void refuseHdr(AVColorTransferCharacteristic transfer) {
  if (transfer != AVCOL_TRC_SMPTE2084 && transfer != AVCOL_TRC_ARIB_STD_B67) return;
  throw Error(std::string("HDR video (") + (transfer == AVCOL_TRC_SMPTE2084 ? "PQ" : "HLG") +
              ") is not taken: make it SDR first, docs/video.md has a line for that");
}

void refuseUnknown(const ColorTags& tags) {
  if (tags.matrix == AVCOL_SPC_BT709 || isBt601(tags.matrix) || tags.matrix == AVCOL_SPC_BT2020_NCL ||
      tags.matrix == AVCOL_SPC_FCC || tags.matrix == AVCOL_SPC_SMPTE240M) {
    return;
  }
  const char* name = av_color_space_name(tags.matrix);
  throw Error(std::string("colours of the matrix ") + (name == nullptr ? "?" : name) + " are not taken");
}

// Of pixels, and of matrices that the engine does not have.
ColorTags workTags(const ColorTags& source, int height) {
  ColorTags work = source;
  work.matrix = source.matrix == AVCOL_SPC_RGB && height < kHdLines ? AVCOL_SPC_SMPTE170M : AVCOL_SPC_BT709;
  if (source.matrix == AVCOL_SPC_RGB) work.range = AVCOL_RANGE_MPEG;
  if (source.matrix == AVCOL_SPC_BT2020_NCL) {
    work.primaries = AVCOL_PRI_UNSPECIFIED;
    work.transfer = AVCOL_TRC_UNSPECIFIED;
  }
  completeTags(&work);
  return work;
}

}  // namespace

bool isGrey(AVPixelFormat format) {
  const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
  return description->nb_components <= 2 && !isRgb(*description);
}

ColorPlan planColors(const ColorTags& tags, AVPixelFormat format, int height, UntaggedMatrix untagged) {
  const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
  if (description == nullptr) throw Error("its pixel format is unknown");
  refuseHdr(tags.transfer);
  ColorPlan plan{tags, {}, {}, false};
  ColorTags& source = plan.source;
  if (isFullRange(*description)) source.range = AVCOL_RANGE_JPEG;
  if (source.range == AVCOL_RANGE_UNSPECIFIED) source.range = isGrey(format) ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
  if (isRgb(*description)) {
    source.matrix = AVCOL_SPC_RGB;
  } else if (tags.matrix == AVCOL_SPC_UNSPECIFIED || tags.matrix == AVCOL_SPC_RGB) {
    source.matrix = assumedMatrix(tags, height, untagged);
    plan.assumed = colorWords(source);
  }
  plan.converted = source.matrix != AVCOL_SPC_BT709 && !isBt601(source.matrix);
  if (plan.converted && source.matrix != AVCOL_SPC_RGB) refuseUnknown(source);
  if (!plan.converted) completeTags(&source);
  plan.work = plan.converted ? workTags(source, height) : source;
  return plan;
}

ColorTags colorTagsOf(const AVCodecParameters& stream) {
  return {stream.color_space, stream.color_range, stream.color_primaries, stream.color_trc, stream.chroma_location};
}

std::string colorWords(const ColorTags& tags) {
  std::string matrix = tags.matrix == AVCOL_SPC_BT709 ? "BT.709" : isBt601(tags.matrix) ? "BT.601" : "";
  if (tags.matrix == AVCOL_SPC_RGB) return "RGB";
  if (matrix.empty()) matrix = av_color_space_name(tags.matrix);
  return matrix + (tags.range == AVCOL_RANGE_JPEG ? ", full range" : ", limited range");
}

}  // namespace vlvk::tool
