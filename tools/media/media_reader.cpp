/// See media_reader.h.
#include "tools/media/media_reader.h"

#include <algorithm>
#include <utility>

#include "tools/io/messages.h"
#include "tools/media/media_log.h"
#include "tools/video/frame_stream.h"

namespace vlvk::tool {

MediaReader::MediaReader(const std::string& name, MediaInput* input, const VideoPlan& plan)
    : name_(name),
      input_(input),
      plan_(plan),
      decoder_(named(name, [input] { return Decoder(input->video()); })),
      pool_(plan.width, plan.height, plan.written),
      packet_(owned(av_packet_alloc())) {
  if (plan.converted) converter_.emplace(plan.conversion);
}

bool MediaReader::read(MediaFrame* frame, const std::stop_token& stop) {
  return named(name_, [&] {
    MediaPicture picture = owned(av_frame_alloc());
    const bool decoded = decodeNext(picture.get(), stop);
    if (damagedFrame_ == 0 && decoder_.isDamaged()) damagedFrame_ = count_ + 1;
    if (!decoded) {
      if (broken_ != nullptr) std::rethrow_exception(broken_);
      if (count_ == 0) throw Error("there is no frame in it that can be decoded");
      reportDamage();
      return false;
    }
    checkPicture(*picture);
    setTime(picture.get());
    frame->number = ++count_;
    fill(frame, std::move(picture));
    return true;
  });
}

bool MediaReader::decodeNext(AVFrame* picture, const std::stop_token& stop) {
  while (!decoder_.receive(picture)) {
    if (ended_) return false;
    readPacket(stop);
  }
  return true;
}

// Where the file breaks off, the decoder still has frames.
void MediaReader::readPacket(const std::stop_token& stop) {
  try {
    ended_ = !input_->read(packet_.get(), stop);
  } catch (const BrokenStream&) {
    broken_ = std::current_exception();
    ended_ = true;
  }
  if (ended_) {
    decoder_.send(nullptr);
  } else if (packet_->stream_index == input_->video().index) {
    decoder_.send(packet_.get());
  } else {
    MediaPacket taken = owned(av_packet_alloc());
    av_packet_move_ref(taken.get(), packet_.get());
    waiting_.push_back(std::move(taken));
  }
  av_packet_unref(packet_.get());
}

void MediaReader::checkPicture(const AVFrame& picture) const {
  if (picture.width == plan_.decodedWidth && picture.height == plan_.decodedHeight && picture.format == plan_.decoded) {
    return;
  }
  throw BrokenStream("from frame " + std::to_string(count_ + 1) + " on the frames have another size or format, " +
                     std::to_string(picture.width) + "x" + std::to_string(picture.height) + " " +
                     av_get_pix_fmt_name(static_cast<AVPixelFormat>(picture.format)));
}

// In units of the encoder, and never twice the same.
void MediaReader::setTime(AVFrame* picture) {
  const AVRational ticks = input_->video().time_base;
  const std::int64_t first = av_rescale_q(input_->startTime(), av_get_time_base_q(), ticks);
  const std::int64_t stamp = picture->best_effort_timestamp;
  const std::int64_t step =
      plan_.rate.num > 0 ? av_rescale_q(1, av_inv_q(plan_.rate), plan_.timeBase) : picture->pkt_duration;
  std::int64_t time = lastTime_ ? *lastTime_ + std::max<std::int64_t>(step, 1) : 0;
  if (stamp != AV_NOPTS_VALUE) time = av_rescale_q(stamp - first, ticks, plan_.timeBase);
  if (lastTime_) time = std::max(time, *lastTime_ + 1);
  picture->pts = time;
  picture->pkt_duration = av_rescale_q(picture->pkt_duration, ticks, plan_.timeBase);
  // Some files have times only. What counts is the last frame's.
  if (picture->pkt_duration <= 0 && lastTime_) picture->pkt_duration = time - *lastTime_;
  lastTime_ = time;
}

// Decoders keep frames that others are predicted from: only one with no other owner can be worked on in place.
void MediaReader::fill(MediaFrame* frame, MediaPicture picture) {
  if (converter_) picture = converter_->convert(*picture);
  picture->width = plan_.width;  // an odd column or row is left out
  picture->height = plan_.height;
  const ColorTags& from = plan_.conversion.target;
  const bool same = plan_.written == plan_.conversion.format && plan_.result.matrix == from.matrix &&
                    plan_.result.range == from.range;
  frame->other = nullptr;
  frame->read = frame->written = engineFrame(*picture, from);
  if (!same || av_frame_is_writable(picture.get()) == 0) {
    frame->other = pool_.get();
    require(av_frame_copy_props(frame->other.get(), picture.get()));
    frame->written = engineFrame(*frame->other, plan_.result);
  }
  frame->decoded = std::move(picture);
  AVFrame* result = frame->result();
  result->format = plan_.written;
  result->colorspace = plan_.result.matrix;
  result->color_range = plan_.result.range;
  result->color_primaries = plan_.result.primaries;
  result->color_trc = plan_.result.transfer;
  result->chroma_location = plan_.result.site;
  frame->before = std::move(waiting_);
  waiting_.clear();
}

void MediaReader::reportDamage() const {
  if (damagedFrame_ == 0) return;
  throw BrokenStream("the video is damaged, at first near frame " + std::to_string(damagedFrame_) +
                     ", and written as far as it could be decoded");
}

}  // namespace vlvk::tool
