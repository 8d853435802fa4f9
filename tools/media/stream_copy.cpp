/// See stream_copy.h.
#include "tools/media/stream_copy.h"

#include <cstring>
#include <memory>

extern "C" {
#include <libavutil/mem.h>
}

#include "tools/io/messages.h"
#include "tools/media/media_log.h"
#include "tools/video/frame_stream.h"

namespace vlvk::tool {
namespace {

constexpr int kLeftOut = -1;

bool isCover(const AVStream& stream) {
  return (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
}

bool isMatroska(const AVOutputFormat& kind) {
  return std::strcmp(kind.name, "matroska") == 0;
}

bool holdsCovers(const AVOutputFormat& kind) {
  return isMatroska(kind) || std::strcmp(kind.name, "mp4") == 0 || std::strcmp(kind.name, "ipod") == 0;
}

// A four-letter code is kept where the kind of file has no other one for the codec.
std::uint32_t keptTag(const AVOutputFormat& kind, const AVCodecParameters& source) {
  unsigned other = 0;
  const bool kept = kind.codec_tag == nullptr || av_codec_get_id(kind.codec_tag, source.codec_tag) == source.codec_id ||
                    av_codec_get_tag2(kind.codec_tag, source.codec_id, &other) == 0;
  return kept ? source.codec_tag : 0;
}

void copySideData(const AVStream& from, bool keepsRotation, AVStream* to) {
  for (int i = 0; i < from.nb_side_data; ++i) {
    const AVPacketSideData& data = from.side_data[i];
    if (data.type == AV_PKT_DATA_DISPLAYMATRIX && !keepsRotation) continue;
    std::uint8_t* copy = av_stream_new_side_data(to, data.type, data.size);
    if (copy == nullptr) throw std::bad_alloc();
    std::memcpy(copy, data.data, data.size);
  }
}

void copyMarks(const AVStream& from, bool keepsRotation, AVStream* to) {
  av_dict_copy(&to->metadata, from.metadata, 0);
  to->disposition = from.disposition;
  if (from.duration != AV_NOPTS_VALUE) to->duration = av_rescale_q(from.duration, from.time_base, to->time_base);
  copySideData(from, keepsRotation, to);
}

void setDefault(AVDictionary** entries, const char* key, const char* value) {
  av_dict_set(entries, key, value, AV_DICT_DONT_OVERWRITE);
}

// In Matroska a cover picture is an attached file.
void attachCover(const AVStream& from, AVStream* to) {
  const AVPacket& picture = from.attached_pic;
  const bool png = from.codecpar->codec_id == AV_CODEC_ID_PNG;
  AVCodecParameters* coded = to->codecpar;
  coded->codec_type = AVMEDIA_TYPE_ATTACHMENT;
  av_freep(static_cast<void*>(&coded->extradata));
  const auto size = static_cast<std::size_t>(picture.size);
  coded->extradata = static_cast<std::uint8_t*>(av_mallocz(size + AV_INPUT_BUFFER_PADDING_SIZE));
  if (coded->extradata == nullptr) throw std::bad_alloc();
  std::memcpy(coded->extradata, picture.data, size);
  coded->extradata_size = picture.size;
  to->disposition = 0;
  setDefault(&to->metadata, "filename", png ? "cover.png" : "cover.jpg");
  setDefault(&to->metadata, "mimetype", png ? "image/png" : "image/jpeg");
}

AVStream* newStream(AVFormatContext* format) {
  AVStream* stream = avformat_new_stream(format, nullptr);
  if (stream == nullptr) throw std::bad_alloc();
  return stream;
}

AVStream* addCopy(const AVStream& from, AVFormatContext* format) {
  AVStream* to = newStream(format);
  require(avcodec_parameters_copy(to->codecpar, from.codecpar));
  to->codecpar->codec_tag = keptTag(*format->oformat, *from.codecpar);
  to->time_base = from.time_base;
  to->avg_frame_rate = from.avg_frame_rate;
  to->sample_aspect_ratio = from.sample_aspect_ratio;
  copyMarks(from, true, to);
  if (isCover(from) && isMatroska(*format->oformat)) attachCover(from, to);
  return to;
}

// As far as the kind of file has a list. Pictures and files that are attached are on none.
bool isRefused(const AVOutputFormat& kind, const AVStream& stream) {
  const AVMediaType type = stream.codecpar->codec_type;
  if (type == AVMEDIA_TYPE_AUDIO && kind.audio_codec == AV_CODEC_ID_NONE) return true;
  return !isCover(stream) && type != AVMEDIA_TYPE_ATTACHMENT && type != AVMEDIA_TYPE_DATA &&
         avformat_query_codec(&kind, stream.codecpar->codec_id, FF_COMPLIANCE_NORMAL) == 0;
}

void freeInMemory(AVFormatContext* format) {
  std::uint8_t* written = nullptr;
  if (format->pb != nullptr) avio_close_dyn_buf(format->pb, &written);
  av_free(written);
  avformat_free_context(format);
}

// Why files of the kind cannot hold the stream; empty: they can. A file of nothing else, in memory, shows it best.
std::string reasonAgainst(const AVOutputFormat& kind, const AVStream& stream) {
  if (isCover(stream) && !holdsCovers(kind)) return "such files hold no cover pictures";
  if (isRefused(kind, stream)) return std::string("files of the kind '") + kind.name + "' do not hold it";
  AVFormatContext* format = nullptr;
  startMediaLog();
  require(avformat_alloc_output_context2(&format, &kind, nullptr, nullptr));
  const std::unique_ptr<AVFormatContext, decltype(&freeInMemory)> owner(format, freeInMemory);
  if ((kind.flags & AVFMT_NOFILE) == 0) require(avio_open_dyn_buf(&format->pb));
  addCopy(stream, format);
  const int code = (kind.flags & AVFMT_NOFILE) == 0 ? avformat_write_header(format, nullptr) : AVERROR(ENOSYS);
  return code < 0 ? mediaReason(code) : "";
}

std::string wordsFor(const AVStream& stream) {
  const char* type = av_get_media_type_string(stream.codecpar->codec_type);
  return "stream " + std::to_string(stream.index) + " (" +
         (isCover(stream) ? "cover picture"
          : type          ? type
                          : "data") +
         ", " + avcodec_get_name(stream.codecpar->codec_id) + ")";
}

// What describes the old bytes, not the video.
void dropStatistics(AVDictionary** entries) {
  for (const char* key : {"encoder", "DURATION", "BPS", "NUMBER_OF_FRAMES", "NUMBER_OF_BYTES"})
    av_dict_set(entries, key, nullptr, 0);
  while (const AVDictionaryEntry* entry = av_dict_get(*entries, "_STATISTICS_", nullptr, AV_DICT_IGNORE_SUFFIX))
    av_dict_set(entries, entry->key, nullptr, 0);
}

void addVideo(const AVStream& from, const AVCodecContext& encoder, bool keepsRotation, AVFormatContext* format) {
  AVStream* to = newStream(format);
  require(avcodec_parameters_from_context(to->codecpar, &encoder));
  // Some players take HEVC under no other name.
  if (isMovKind(*format->oformat) && encoder.codec_id == AV_CODEC_ID_HEVC) {
    to->codecpar->codec_tag = MKTAG('h', 'v', 'c', '1');
  }
  to->time_base = encoder.time_base;
  to->avg_frame_rate = from.avg_frame_rate;
  to->sample_aspect_ratio = encoder.sample_aspect_ratio;
  copyMarks(from, keepsRotation, to);
  dropStatistics(&to->metadata);
}

void copyChapters(const AVFormatContext& from, AVFormatContext* to) {
  if (from.nb_chapters == 0) return;
  to->chapters = static_cast<AVChapter**>(av_calloc(from.nb_chapters, sizeof(AVChapter*)));
  if (to->chapters == nullptr) throw std::bad_alloc();
  for (unsigned i = 0; i < from.nb_chapters; ++i) {
    auto* chapter = static_cast<AVChapter*>(av_mallocz(sizeof(AVChapter)));
    if (chapter == nullptr) throw std::bad_alloc();
    *chapter = *from.chapters[i];
    chapter->metadata = nullptr;
    av_dict_copy(&chapter->metadata, from.chapters[i]->metadata, 0);
    to->chapters[to->nb_chapters++] = chapter;
  }
}

void copyTags(const AVFormatContext& from, AVFormatContext* to) {
  av_dict_copy(&to->metadata, from.metadata, 0);
  for (const char* key : {"major_brand", "minor_version", "compatible_brands", "encoder"})
    av_dict_set(&to->metadata, key, nullptr, 0);
}

}  // namespace

StreamCopy::StreamCopy(const MediaInput& input, const AVCodecContext& encoder, bool keepsRotation, MediaOutput* output,
                       std::vector<std::string>* notes)
    : output_(output), start_(input.startTime()) {
  const AVFormatContext& from = input.format();
  AVFormatContext* to = output->format();
  for (unsigned i = 0; i < from.nb_streams; ++i) {
    const AVStream& stream = *from.streams[i];
    streams_.push_back({kLeftOut, stream.time_base, wordsFor(stream)});
    if (&stream == &input.video()) {
      video_ = static_cast<int>(to->nb_streams);
      addVideo(stream, encoder, keepsRotation, to);
      continue;
    }
    if (stream.discard == AVDISCARD_ALL) continue;  // chapters, which are read already
    const std::string reason = reasonAgainst(*to->oformat, stream);
    if (!reason.empty()) {
      notes->push_back(streams_.back().words + " is left out: " + reason);
      continue;
    }
    if (stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO && !isCover(stream)) {
      notes->push_back(streams_.back().words + " is copied as it is");
    }
    const bool attached = addCopy(stream, to)->codecpar->codec_type == AVMEDIA_TYPE_ATTACHMENT;
    if (!attached) streams_.back().number = static_cast<int>(to->nb_streams) - 1;
  }
  copyChapters(from, to);
  copyTags(from, to);
  if (hasPhoneTags(from) && !holdsPhoneTags(*to->oformat)) {
    notes->push_back("tags whose names begin with 'com.' are left out: MOV and MKV hold them");
  }
}

void StreamCopy::write(AVPacket* packet) {
  const auto index = static_cast<std::size_t>(packet->stream_index);
  if (index >= streams_.size() || streams_[index].number < 0) return;
  const Stream& stream = streams_[index];
  const std::int64_t start = av_rescale_q(start_, av_get_time_base_q(), stream.timeBase);
  if (packet->pts != AV_NOPTS_VALUE) packet->pts -= start;
  if (packet->dts != AV_NOPTS_VALUE) packet->dts -= start;
  if (output_->writeCopy(packet, stream.number, stream.timeBase)) return;
  if (refused_ == 0) damaged_ = stream.words;
  ++refused_;
}

void StreamCopy::reportDamage() const {
  if (refused_ == 0) return;
  throw BrokenStream(damaged_ + " is damaged: packets are left out, " + std::to_string(refused_) + " in all");
}

}  // namespace vlvk::tool
