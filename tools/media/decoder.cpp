/// See decoder.h.
#include "tools/media/decoder.h"

#include <string>

#include "tools/io/messages.h"
#include "tools/media/media_log.h"

namespace vlvk::tool {
namespace {

const AVCodec* decoderFor(const AVCodecParameters& stream) {
  const AVCodec* codec = avcodec_find_decoder(stream.codec_id);
  if (codec == nullptr) {
    throw Error("FFmpeg has no decoder for its codec " + std::string(avcodec_get_name(stream.codec_id)) + " here");
  }
  return codec;
}

bool isMarked(const AVFrame& frame) {
  return frame.decode_error_flags != 0 || (frame.flags & AV_FRAME_FLAG_CORRUPT) != 0;
}

}  // namespace

Decoder::Decoder(const AVStream& stream) : context_(owned(avcodec_alloc_context3(nullptr))) {
  const AVCodec* codec = decoderFor(*stream.codecpar);
  require(avcodec_parameters_to_context(context_.get(), stream.codecpar));
  context_->pkt_timebase = stream.time_base;
  context_->framerate = stream.avg_frame_rate;
  context_->thread_count = 0;  // as many as processors
  require(avcodec_open2(context_.get(), codec, nullptr));
}

// A recording may begin with packets that need earlier ones. Later on that is damage.
void Decoder::send(const AVPacket* packet) {
  if (!begun_ && packet != nullptr && (packet->flags & AV_PKT_FLAG_KEY) != 0) begin();
  if (begun_ && packet != nullptr && (packet->flags & AV_PKT_FLAG_CORRUPT) != 0) damaged_ = true;
  const int code = avcodec_send_packet(context_.get(), packet);
  if (code == AVERROR(ENOMEM)) throw std::bad_alloc();
  if (code < 0 && code != AVERROR_EOF && begun_) damaged_ = true;
}

void Decoder::begin() {
  errorsBefore_ = decoderErrors();
  begun_ = true;
}

bool Decoder::receive(AVFrame* frame) {
  int code = avcodec_receive_frame(context_.get(), frame);
  while (code < 0 && code != AVERROR(EAGAIN) && code != AVERROR_EOF) {
    if (code == AVERROR(ENOMEM)) throw std::bad_alloc();
    damaged_ = damaged_ || begun_;
    code = avcodec_receive_frame(context_.get(), frame);
  }
  if (code < 0) return false;
  if (!begun_) begin();
  damaged_ = damaged_ || isMarked(*frame) || decoderErrors() > errorsBefore_;
  return true;
}

}  // namespace vlvk::tool
