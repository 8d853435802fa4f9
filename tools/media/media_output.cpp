/// See media_output.h.
#include "tools/media/media_output.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <span>
#include <string_view>

extern "C" {
#include <libavdevice/avdevice.h>
#include <libavutil/mem.h>
}

#include "tools/io/messages.h"
#include "tools/media/media_input.h"
#include "tools/media/media_log.h"

namespace vlvk::tool {
namespace {

constexpr int kIoBuffer = 1 << 16;
constexpr std::string_view kMovKinds[] = {"mp4", "mov", "ipod", "3gp", "3g2", "ismv", "f4v", "psp"};

const AVOutputFormat* guessedKind(const std::string& path, const std::string& kind) {
  if (!kind.empty()) return av_guess_format(kind.c_str(), nullptr, nullptr);
  if (isVideoDevice(path)) return av_guess_format("v4l2", nullptr, nullptr);
  if (isStandardOutput(path)) return av_guess_format("yuv4mpegpipe", nullptr, nullptr);
  return av_guess_format(nullptr, path.c_str(), nullptr);
}

}  // namespace

const AVOutputFormat& outputKind(const std::string& path, const std::string& kind) {
  avdevice_register_all();
  const AVOutputFormat* format = guessedKind(path, kind);
  if (format == nullptr && kind.empty()) {
    throw UsageError(
        "its name ends like no kind of video file: .mp4, .mov, .mkv, .webm and .avi are some; or say --to");
  }
  if (format == nullptr) throw UsageError("--to: FFmpeg writes no '" + kind + "' here");
  if ((format->flags & AVFMT_NOFILE) != 0 && !isOutputDevice(*format)) {
    throw UsageError("files of the kind '" + std::string(format->name) + "' are not written in one piece");
  }
  return *format;
}

bool isMovKind(const AVOutputFormat& kind) {
  return std::find(std::begin(kMovKinds), std::end(kMovKinds), kind.name) != std::end(kMovKinds);
}

bool hasPhoneTags(const AVFormatContext& format) {
  return av_dict_get(format.metadata, "com.", nullptr, AV_DICT_IGNORE_SUFFIX) != nullptr;
}

bool holdsPhoneTags(const AVOutputFormat& kind) {
  return std::strcmp(kind.name, "mov") == 0 || std::strcmp(kind.name, "matroska") == 0;
}

bool isOutputDevice(const AVOutputFormat& kind) {
  return (kind.flags & AVFMT_NOFILE) != 0 && kind.priv_class != nullptr &&
         AV_IS_OUTPUT_DEVICE(kind.priv_class->category);
}

MediaOutput::MediaOutput(const std::string& name, const AVOutputFormat& kind, OutputFile* file)
    : name_(name), file_(file) {
  AVFormatContext* format = nullptr;
  const int code = avformat_alloc_output_context2(&format, &kind, nullptr, name.c_str());
  format_.reset(format);
  checked(code);
  if (file == nullptr) return;
  auto* buffer = static_cast<unsigned char*>(av_malloc(kIoBuffer));
  io_ = owned(avio_alloc_context(buffer, kIoBuffer, 1, this, nullptr, onWrite, file->seekable() ? onSeek : nullptr));
  format_->pb = io_.get();
  format_->flags |= AVFMT_FLAG_CUSTOM_IO;
  if (!file->seekable()) return;
  // The file is read again under this name, to move its index to the front.
  av_freep(static_cast<void*>(&format_->url));
  format_->url = av_strdup(("file:" + file->temporary()).c_str());
}

void MediaOutput::writeHeader() {
  startMediaLog();
  MediaOptions options;
  if (io_ != nullptr && io_->seekable != 0 && isMovKind(*format_->oformat)) {
    options.set("movflags", hasPhoneTags(*format_) && holdsPhoneTags(*format_->oformat) ? "+faststart+use_metadata_tags"
                                                                                        : "+faststart");
  }
  checked(avformat_write_header(format_.get(), options.get()));
}

void MediaOutput::write(AVPacket* packet, int stream, AVRational timeBase) {
  checked(interleave(packet, stream, timeBase));
}

bool MediaOutput::writeCopy(AVPacket* packet, int stream, AVRational timeBase) {
  const int code = interleave(packet, stream, timeBase);
  if (failure_ == nullptr && (code == AVERROR_INVALIDDATA || code == AVERROR(EINVAL))) return false;
  checked(code);
  return true;
}

int MediaOutput::interleave(AVPacket* packet, int stream, AVRational timeBase) {
  packet->stream_index = stream;
  packet->pos = -1;
  av_packet_rescale_ts(packet, timeBase, format_->streams[stream]->time_base);
  return av_interleaved_write_frame(format_.get(), packet);
}

void MediaOutput::finish() {
  checked(av_write_trailer(format_.get()));
  if (io_ != nullptr) avio_flush(io_.get());
  checked(io_ == nullptr ? 0 : io_->error);
}

void MediaOutput::checked(int code) {
  if (failure_ != nullptr) std::rethrow_exception(failure_);
  if (code < 0) throw Error(name_ + ": cannot be written: " + mediaReason(code));
}

int MediaOutput::onWrite(void* self, std::uint8_t* bytes, int count) {
  auto* output = static_cast<MediaOutput*>(self);
  if (output->failure_ != nullptr) return AVERROR_EXIT;
  try {
    output->file_->write({bytes, static_cast<std::size_t>(count)});
    return count;
  } catch (...) {
    output->failure_ = std::current_exception();
    return AVERROR_EXIT;
  }
}

std::int64_t MediaOutput::onSeek(void* self, std::int64_t offset, int whence) {
  auto* output = static_cast<MediaOutput*>(self);
  try {
    if (whence == AVSEEK_SIZE) return static_cast<std::int64_t>(output->file_->size());
    if ((whence & ~AVSEEK_FORCE) != SEEK_SET) return AVERROR(EINVAL);
    output->file_->seek(static_cast<std::uint64_t>(offset));
    return offset;
  } catch (...) {
    output->failure_ = std::current_exception();
    return AVERROR_EXIT;
  }
}

}  // namespace vlvk::tool
