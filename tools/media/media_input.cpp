/// See media_input.h.
#include "tools/media/media_input.h"

#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <span>
#include <thread>

extern "C" {
#include <libavdevice/avdevice.h>
#include <libavutil/opt.h>
}

#include "tools/io/interrupt.h"
#include "tools/io/messages.h"
#include "tools/media/media_log.h"
#include "tools/video/frame_stream.h"

namespace vlvk::tool {
namespace {

constexpr int kIoBuffer = 1 << 15;
constexpr std::chrono::milliseconds kDevicePause{2};  // until one that has nothing yet is asked again

// A file may lead to others (playlists, for example), but not into the network.
constexpr const char* kFileProtocols = "file,crypto,data";

const AVInputFormat* inputFormat(const std::string& kind) {
  if (kind.empty()) return nullptr;
  const AVInputFormat* format = av_find_input_format(kind.c_str());
  if (format == nullptr) throw UsageError("--from: FFmpeg reads no '" + kind + "' here");
  return format;
}

}  // namespace

bool isVideoDevice(const std::string& path) {
  struct stat status {};
  return path.starts_with("/dev/video") && ::stat(path.c_str(), &status) == 0 && S_ISCHR(status.st_mode);
}

bool isOpenedByFfmpeg(const std::string& path, const std::string& kind) {
  struct stat status {};
  if (isVideoDevice(path) || (path.find("://") != std::string::npos && ::stat(path.c_str(), &status) != 0)) return true;
  avdevice_register_all();
  const AVInputFormat* format = inputFormat(kind);
  return format != nullptr && (format->flags & AVFMT_NOFILE) != 0;
}

MediaInput::MediaInput(const std::string& path, std::unique_ptr<InputStream> stream, const std::string& kind)
    : stream_(std::move(stream)) {
  startInputLog();
  avdevice_register_all();
  open(path, kind);
  checked(avformat_find_stream_info(format_.get(), nullptr));
  const int video = av_find_best_stream(format_.get(), AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
  if (video < 0 || (format_->streams[video]->disposition & AV_DISPOSITION_ATTACHED_PIC) != 0) {
    throw Error("there is no video in it");
  }
  video_ = static_cast<unsigned>(video);
}

void MediaInput::open(const std::string& path, const std::string& kind) {
  const AVInputFormat* stated = inputFormat(kind.empty() && isVideoDevice(path) ? "v4l2" : kind);
  format_.reset(avformat_alloc_context());
  if (format_ == nullptr) throw std::bad_alloc();
  AVFormatContext* format = format_.get();
  format->interrupt_callback = {isStopped, this};
  MediaOptions options;
  if (stream_ != nullptr) {
    auto* buffer = static_cast<unsigned char*>(av_malloc(kIoBuffer));
    const auto seek = stream_->fileSize() ? onSeek : nullptr;
    io_ = owned(avio_alloc_context(buffer, kIoBuffer, 0, this, onRead, nullptr, seek));
    format->pb = io_.get();
    options.set("protocol_whitelist", kFileProtocols);
  }
  static_cast<void>(format_.release());  // freed where it cannot be opened
  const int code = avformat_open_input(&format, path.c_str(), stated, options.get());
  format_.reset(format);
  checked(code);
}

bool MediaInput::isKind(const char* kind) const {
  return std::strcmp(format_->iformat->name, kind) == 0;
}

std::optional<std::uint64_t> MediaInput::expectedFrames() const {
  const AVStream& stream = video();
  if (stream.nb_frames > 0) return static_cast<std::uint64_t>(stream.nb_frames);
  if (format_->duration <= 0 || stream.avg_frame_rate.num <= 0) return std::nullopt;
  return static_cast<std::uint64_t>(
      av_rescale_q(format_->duration, av_get_time_base_q(), av_inv_q(stream.avg_frame_rate)));
}

std::int64_t MediaInput::startTime() const {
  const AVClass* device = format_->iformat->priv_class;
  const bool joined =
      (format_->iformat->flags & AVFMT_TS_DISCONT) != 0 || (device != nullptr && AV_IS_INPUT_DEVICE(device->category));
  return joined && format_->start_time != AV_NOPTS_VALUE ? format_->start_time : 0;
}

bool MediaInput::read(AVPacket* packet, const std::stop_token& stop) {
  stop_ = stop;
  if (next_ != nullptr) {
    av_packet_move_ref(packet, next_.get());
    next_.reset();
  } else if (!readNext(packet)) {
    checkEnd();
    return false;
  }
  if (packet->stream_index != static_cast<int>(video_)) return true;
  if ((packet->flags & AV_PKT_FLAG_CORRUPT) != 0) readPast();
  ++packets_;
  return true;
}

// A file that is cut off ends with part of a frame. Where more follows, the decoder makes the best of it.
void MediaInput::readPast() {
  next_ = owned(av_packet_alloc());
  if (readNext(next_.get())) return;
  next_.reset();
  throw BrokenStream("the file is cut off or damaged in frame " + std::to_string(packets_ + 1));
}

bool MediaInput::readNext(AVPacket* packet) {
  for (;;) {
    if (isStopped(this) != 0) throw Error("interrupted");
    const int code = av_read_frame(format_.get(), packet);
    if (failure_ != nullptr) std::rethrow_exception(failure_);
    if (isStopped(this) != 0) throw Error("interrupted");
    if (code == AVERROR_EOF) return false;
    if (code >= 0) return true;
    if (code != AVERROR(EAGAIN)) throw BrokenStream(mediaReason(code));
    std::this_thread::sleep_for(kDevicePause);
  }
}

// FFmpeg takes a file that is cut off for one that ends. Where there is a list of all frames, it tells.
void MediaInput::checkEnd() const {
  const bool listed = std::strstr(format_->iformat->name, "mp4") != nullptr;
  const int entries = listed ? avformat_index_get_entries_count(&video()) : 0;
  if (static_cast<std::uint64_t>(entries) > packets_) {
    throw BrokenStream("the file ends after " + std::to_string(packets_) + " of its " + std::to_string(entries) +
                       " frames");
  }
  if (inputEndedEarly()) throw BrokenStream("the file is cut off");
}

int MediaInput::checked(int code) {
  if (failure_ != nullptr) std::rethrow_exception(failure_);
  return require(code);
}

int MediaInput::onRead(void* self, std::uint8_t* bytes, int count) {
  auto* input = static_cast<MediaInput*>(self);
  try {
    const std::size_t read = input->stream_->read({bytes, static_cast<std::size_t>(count)}, input->stop_);
    return read == 0 ? AVERROR_EOF : static_cast<int>(read);
  } catch (...) {
    input->failure_ = std::current_exception();
    return AVERROR_EXIT;
  }
}

std::int64_t MediaInput::onSeek(void* self, std::int64_t offset, int whence) {
  auto* input = static_cast<MediaInput*>(self);
  try {
    const auto size = static_cast<std::int64_t>(input->stream_->fileSize().value_or(0));
    if (whence == AVSEEK_SIZE) return size;
    if ((whence & ~AVSEEK_FORCE) != SEEK_SET) return AVERROR(EINVAL);
    input->stream_->seek(static_cast<std::uint64_t>(offset));
    return offset;
  } catch (...) {
    input->failure_ = std::current_exception();
    return AVERROR_EXIT;
  }
}

int MediaInput::isStopped(void* self) {
  return static_cast<MediaInput*>(self)->stop_.stop_requested() || InterruptPause::isDue() ? 1 : 0;
}

}  // namespace vlvk::tool
