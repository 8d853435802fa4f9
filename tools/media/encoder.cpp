/// See encoder.h.
#include "tools/media/encoder.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "tools/io/messages.h"
#include "tools/media/media_log.h"

namespace vlvk::tool {
namespace {

bool isHardware(AVPixelFormat format) {
  const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
  return description != nullptr && (description->flags & AV_PIX_FMT_FLAG_HWACCEL) != 0;
}

bool isInterlaced(AVFieldOrder order) {
  return order != AV_FIELD_UNKNOWN && order != AV_FIELD_PROGRESSIVE;
}

// This one writes to standard error by itself.
void silence(const AVCodec& codec) {
  if (std::strcmp(codec.name, "libsvtav1") == 0) ::setenv("SVT_LOG", "1", 0);
}

}  // namespace

Encoder::Encoder(const EncoderChoice& choice, const VideoPlan& plan, bool headers)
    : context_(owned(avcodec_alloc_context3(choice.codec))), packet_(owned(av_packet_alloc())) {
  startMediaLog();
  silence(*choice.codec);
  named(choice.codec->name, [&] {
    configure(plan, headers);
    MediaOptions options = choice.options;
    require(avcodec_open2(context_.get(), choice.codec, options.get()));
  });
}

void Encoder::configure(const VideoPlan& plan, bool headers) {
  context_->width = plan.width;
  context_->height = plan.height;
  context_->pix_fmt = plan.encoded;
  context_->time_base = plan.timeBase;
  context_->framerate = plan.rate;
  context_->sample_aspect_ratio = plan.aspect;
  context_->colorspace = plan.result.matrix;
  context_->color_range = plan.result.range;
  context_->color_primaries = plan.result.primaries;
  context_->color_trc = plan.result.transfer;
  context_->chroma_sample_location = plan.result.site;
  context_->thread_count = 0;  // as many as processors
  context_->field_order = plan.fieldOrder;
  if (isInterlaced(plan.fieldOrder)) context_->flags |= AV_CODEC_FLAG_INTERLACED_DCT | AV_CODEC_FLAG_INTERLACED_ME;
  if (headers) context_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
  if (isHardware(plan.encoded)) {
    hardware_.emplace(context_.get(), plan.written);
  } else if (plan.encoded != plan.written && plan.encoded != AV_PIX_FMT_YUVJ420P) {
    converter_.emplace(Conversion{plan.result, plan.result, plan.encoded});
  }
}

MediaPicture Encoder::prepared(AVFrame* frame) {
  if (hardware_) return hardware_->upload(*frame);
  return converter_ ? converter_->convert(*frame) : nullptr;
}

void Encoder::encode(AVFrame* frame, const Sink& sink) {
  named(context_->codec->name, [&] {
    MediaPicture other = frame == nullptr ? nullptr : prepared(frame);
    AVFrame* sent = other == nullptr ? frame : other.get();
    if (sent != nullptr) {
      sent->pict_type = AV_PICTURE_TYPE_NONE;  // the decoder's, which the encoder would follow
      sent->quality = context_->global_quality;
      if (sent->pkt_duration > 0) durations_[sent->pts] = sent->pkt_duration;
    }
    require(avcodec_send_frame(context_.get(), sent));
  });
  drain(sink);
}

void Encoder::drain(const Sink& sink) {
  for (;;) {
    const int code = avcodec_receive_packet(context_.get(), packet_.get());
    if (code == AVERROR(EAGAIN) || code == AVERROR_EOF) return;
    named(context_->codec->name, [code] { require(code); });
    if (const auto found = durations_.find(packet_->pts); found != durations_.end()) {
      packet_->duration = found->second;
      durations_.erase(found);
    }
    sink(packet_.get());
  }
}

}  // namespace vlvk::tool
