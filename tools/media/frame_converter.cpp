/// See frame_converter.h. The work is done by FFmpeg's filters.
#include "tools/media/frame_converter.h"

extern "C" {
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
}

#include <string>

#include "tools/media/media_log.h"

namespace vlvk::tool {
namespace {

// Words of the filter for a matrix.
const char* matrixWord(AVColorSpace matrix) {
  switch (matrix) {
    case AVCOL_SPC_BT709:
      return "bt709";
    case AVCOL_SPC_BT2020_NCL:
      return "bt2020";
    case AVCOL_SPC_FCC:
      return "fcc";
    case AVCOL_SPC_SMPTE240M:
      return "smpte240m";
    default:
      return "bt601";
  }
}

const char* rangeWord(AVColorRange range) {
  return range == AVCOL_RANGE_JPEG ? "full" : "limited";
}

// Where chroma is made smaller, its samples come to lie as in H.264 that says nothing: left, between the rows.
std::string chromaPositions(AVPixelFormat from, AVPixelFormat to) {
  if (hasSameChroma(from, to)) return "";
  return ":in_h_chr_pos=0:out_h_chr_pos=0:out_v_chr_pos=128";
}

std::string scaleFilter(const Conversion& conversion, AVPixelFormat from) {
  std::string text = "scale=flags=bicubic+accurate_rnd+full_chroma_int+full_chroma_inp:interl=-1";
  if (conversion.source.matrix != AVCOL_SPC_RGB) {
    text += std::string(":in_color_matrix=") + matrixWord(conversion.source.matrix);
    text += std::string(":in_range=") + rangeWord(conversion.source.range);
  }
  text += std::string(":out_color_matrix=") + matrixWord(conversion.target.matrix);
  text += std::string(":out_range=") + rangeWord(conversion.target.range);
  return text + chromaPositions(from, conversion.format);
}

// Primaries and transfer change as well, which is more than a matrix can do.
std::string fromBt2020(const Conversion& conversion) {
  return std::string("colorspace=ispace=bt2020nc:iprimaries=bt2020:itrc=bt2020-10:all=bt709:irange=") +
         (conversion.source.range == AVCOL_RANGE_JPEG ? "pc" : "tv") +
         ":range=" + (conversion.target.range == AVCOL_RANGE_JPEG ? "pc" : "tv");
}

std::string turnFilters(const Turn& turn) {
  static constexpr const char* kQuarters[] = {"", ",transpose=clock", ",hflip,vflip", ",transpose=cclock"};
  return std::string(turn.mirrored ? ",hflip" : "") + kQuarters[turn.quarters & 3];
}

std::string filtersOf(const Conversion& conversion, AVPixelFormat from) {
  const bool wide = conversion.source.matrix == AVCOL_SPC_BT2020_NCL;
  return (wide ? fromBt2020(conversion) : scaleFilter(conversion, from)) +
         ",format=" + av_get_pix_fmt_name(conversion.format) + turnFilters(conversion.turn);
}

}  // namespace

void FrameConverter::build(const AVFrame& like) {
  graph_ = owned(avfilter_graph_alloc());
  // Times go through as they are: the unit does not matter.
  const std::string arguments = "time_base=1/1000:video_size=" + std::to_string(like.width) + "x" +
                                std::to_string(like.height) + ":pix_fmt=" + std::to_string(like.format);
  require(avfilter_graph_create_filter(&source_, avfilter_get_by_name("buffer"), "in", arguments.c_str(), nullptr,
                                       graph_.get()));
  require(
      avfilter_graph_create_filter(&sink_, avfilter_get_by_name("buffersink"), "out", nullptr, nullptr, graph_.get()));
  AVFilterInOut* inputs = nullptr;
  AVFilterInOut* outputs = nullptr;
  const std::string filters = filtersOf(conversion_, static_cast<AVPixelFormat>(like.format));
  const int parsed = avfilter_graph_parse2(graph_.get(), filters.c_str(), &inputs, &outputs);
  int linked = parsed;
  if (parsed >= 0) linked = avfilter_link(source_, 0, inputs->filter_ctx, static_cast<unsigned>(inputs->pad_idx));
  if (linked >= 0) linked = avfilter_link(outputs->filter_ctx, static_cast<unsigned>(outputs->pad_idx), sink_, 0);
  avfilter_inout_free(&inputs);
  avfilter_inout_free(&outputs);
  require(linked);
  require(avfilter_graph_config(graph_.get(), nullptr));
}

MediaPicture FrameConverter::convert(const AVFrame& frame) {
  if (graph_ == nullptr) build(frame);
  MediaPicture given = owned(av_frame_clone(&frame));
  require(av_buffersrc_add_frame(source_, given.get()));
  MediaPicture result = owned(av_frame_alloc());
  require(av_buffersink_get_frame(sink_, result.get()));
  return result;
}

bool hasSameChroma(AVPixelFormat one, AVPixelFormat other) {
  const AVPixFmtDescriptor* a = av_pix_fmt_desc_get(one);
  const AVPixFmtDescriptor* b = av_pix_fmt_desc_get(other);
  return a->log2_chroma_w == b->log2_chroma_w && a->log2_chroma_h == b->log2_chroma_h;
}

}  // namespace vlvk::tool
