/// See media_log.h. FFmpeg has one log for the whole process, and its threads write to it too.
#include "tools/media/media_log.h"

#include <cstdarg>
#include <cstdio>
#include <exception>
#include <mutex>

#include "tools/io/messages.h"
#include "tools/media/ffmpeg.h"

namespace vlvk::tool {
namespace {

struct Log {
  std::mutex mutex;
  std::string last;
  bool endedEarly = false;
  std::uint64_t decoderErrors = 0;
};

Log& log() {
  static Log only;
  return only;
}

AVClassCategory categoryOf(void* object) {
  const AVClass* kind = object == nullptr ? nullptr : *static_cast<AVClass**>(object);
  if (kind == nullptr) return AV_CLASS_CATEGORY_NA;
  return kind->get_category != nullptr ? kind->get_category(object) : kind->category;
}

// Of videos that were cut without being encoded again: pictures are missing that were never to be shown.
bool isHarmless(const std::string& line) {
  return line.starts_with("mmco:") || line.starts_with("co located POCs");
}

void keepLine(AVClassCategory category, std::string line) {
  line.erase(line.find_last_not_of(" .\n") + 1);
  if (line.empty()) return;
  const std::lock_guard lock(log().mutex);
  log().last = line;
  if (category == AV_CLASS_CATEGORY_DEMUXER && line.find("ended prematurely") != std::string::npos) {
    log().endedEarly = true;
  }
  if (category == AV_CLASS_CATEGORY_DECODER && !isHarmless(line)) ++log().decoderErrors;
}

// Called by C code, which an exception must not reach.
void keepErrors(void* object, int level, const char* format, va_list arguments) noexcept {
  if (level > AV_LOG_ERROR) return;
  char text[512];
  std::vsnprintf(text, sizeof text, format, arguments);
  try {
    keepLine(categoryOf(object), text);
  } catch (const std::exception&) {  // without memory there is no reason to tell
  }
}

}  // namespace

void startMediaLog() {
  av_log_set_callback(keepErrors);
  const std::lock_guard lock(log().mutex);
  log().last.clear();
}

void startInputLog() {
  startMediaLog();
  const std::lock_guard lock(log().mutex);
  log().endedEarly = false;
}

std::string mediaReason(int code) {
  {
    const std::lock_guard lock(log().mutex);
    if (!log().last.empty()) return log().last;
  }
  char text[AV_ERROR_MAX_STRING_SIZE];
  av_strerror(code, text, sizeof text);
  return text;
}

bool inputEndedEarly() {
  const std::lock_guard lock(log().mutex);
  return log().endedEarly;
}

std::uint64_t decoderErrors() {
  const std::lock_guard lock(log().mutex);
  return log().decoderErrors;
}

int require(int code) {
  if (code < 0) throw Error(mediaReason(code));
  return code;
}

}  // namespace vlvk::tool
