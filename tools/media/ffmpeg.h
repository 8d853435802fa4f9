/// FFmpeg's libraries: their headers, and owners of what they allocate.
#ifndef VLVK_TOOLS_MEDIA_FFMPEG_H
#define VLVK_TOOLS_MEDIA_FFMPEG_H

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavfilter/avfilter.h>
#include <libavformat/avformat.h>
#include <libavutil/buffer.h>
#include <libavutil/dict.h>
#include <libavutil/frame.h>
#include <libavutil/pixdesc.h>
}

#include <memory>
#include <new>
#include <string>

namespace vlvk::tool {

struct MediaDeleter {
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
  void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
  void operator()(AVFilterGraph* graph) const { avfilter_graph_free(&graph); }
  void operator()(AVBufferRef* buffer) const { av_buffer_unref(&buffer); }
  void operator()(AVBufferPool* pool) const { av_buffer_pool_uninit(&pool); }
  void operator()(AVIOContext* io) const {
    av_freep(static_cast<void*>(&io->buffer));  // FFmpeg may have replaced it
    avio_context_free(&io);
  }
};

template <typename T>
using MediaOwner = std::unique_ptr<T, MediaDeleter>;

using MediaPacket = MediaOwner<AVPacket>;
using MediaPicture = MediaOwner<AVFrame>;

/// `object`, which FFmpeg has just allocated.
template <typename T>
MediaOwner<T> owned(T* object) {
  if (object == nullptr) throw std::bad_alloc();
  return MediaOwner<T>(object);
}

/// Options by name, as FFmpeg takes them; it removes those that it has used.
class MediaOptions {
 public:
  MediaOptions() = default;
  MediaOptions(const MediaOptions& other) { av_dict_copy(&entries_, other.entries_, 0); }
  MediaOptions& operator=(const MediaOptions&) = delete;
  ~MediaOptions() { av_dict_free(&entries_); }

  /// Replaces a value of that name.
  void set(const std::string& name, const std::string& value) {
    if (av_dict_set(&entries_, name.c_str(), value.c_str(), 0) < 0) throw std::bad_alloc();
  }

  /// "name=value:name=value".
  void add(const char* text) {
    if (av_dict_parse_string(&entries_, text, "=", ":", 0) < 0) throw std::bad_alloc();
  }

  AVDictionary** get() { return &entries_; }

 private:
  AVDictionary* entries_ = nullptr;
};

}  // namespace vlvk::tool

#endif
