/// See makeup_stream.h.
#include "plugins/gstreamer/makeup_stream.h"

#include <cerrno>
#include <utility>

#include "plugins/gstreamer/video_frame.h"
#include "plugins/table_file.h"

namespace vlvk::gstreamer {
namespace {

Failure failureOf(VlvkResult result) {
  if (result == VLVK_NO_MEMORY) return noMemory();
  return {GST_LIBRARY_ERROR, GST_LIBRARY_ERROR_SETTINGS, std::string("The engine refuses: ") + vlvkResultText(result)};
}

MaybeFailure readTable(const std::string& path, plugins::TableBytes& table) {
  const int error = plugins::readTable(path.c_str(), table);
  if (error == 0) return {};
  if (error == ENOMEM) return noMemory();
  return Failure{GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_OPEN_READ,
                 "The colour table '" + path + "' cannot be read: " + g_strerror(error) + "."};
}

MaybeFailure useTable(VlvkMakeup* makeup, const std::string& path, const plugins::TableBytes& table) {
  const VlvkResult result = vlvkMakeupSetTable(makeup, table.data.get(), table.size);
  if (result == VLVK_OK) return {};
  if (result == VLVK_NO_MEMORY) return noMemory();
  return Failure{GST_RESOURCE_ERROR, GST_RESOURCE_ERROR_READ,
                 "'" + path + "' is no colour table, or not a whole one: it must be an adjust.vlk file."};
}

// Words with the numbers of the frame, where it is at fault.
Failure failureOf(VlvkResult result, const VlvkFrame& frame) {
  char text[200];
  if (result == VLVK_NO_MEMORY || vlvkFrameCheck(&frame, text, sizeof text) == VLVK_OK) return failureOf(result);
  return unusable(text);
}

}  // namespace

MakeupStream::MakeupStream() : settings_{} {
  vlvkSettingsInit(&settings_, sizeof settings_);
}

MakeupStream::~MakeupStream() {
  vlvkMakeupDestroy(makeup_);
}

std::int32_t MakeupStream::setting(Setting member) const {
  const std::lock_guard lock(mutex_);
  return settings_.*member;
}

void MakeupStream::put(Setting member, std::int32_t value) {
  const std::lock_guard lock(mutex_);
  changed_ = changed_ || settings_.*member != value;
  settings_.*member = value;
}

bool MakeupStream::isEnabled() const {
  const std::lock_guard lock(mutex_);
  return enabled_;
}

void MakeupStream::enable(bool enabled) {
  const std::lock_guard lock(mutex_);
  enabled_ = enabled;
}

std::string MakeupStream::table() const {
  const std::lock_guard lock(mutex_);
  return table_;
}

bool MakeupStream::keepForStart(const std::string& path) {
  const std::lock_guard lock(mutex_);
  if (makeup_ == nullptr) table_ = path;
  return makeup_ == nullptr;
}

MaybeFailure MakeupStream::setTable(const std::string& path) {
  if (keepForStart(path)) return {};
  plugins::TableBytes table;
  if (MaybeFailure failure = readTable(path, table)) return failure;
  const std::lock_guard lock(mutex_);
  if (makeup_ != nullptr) {  // it may have been stopped meanwhile
    if (MaybeFailure failure = useTable(makeup_, path, table)) return failure;
  }
  table_ = path;
  return {};
}

bool MakeupStream::isIdle() const {
  const std::lock_guard lock(mutex_);
  const bool softens = settings_.radius != 0 && (settings_.softening != 0 || settings_.evenTone != 0);
  return !enabled_ || (settings_.whitening == 0 && table_.empty() && !softens);
}

MaybeFailure MakeupStream::start() {
  {
    const std::lock_guard lock(mutex_);
    if (const VlvkResult result = vlvkMakeupCreate(&makeup_, &settings_); result != VLVK_OK) return failureOf(result);
    changed_ = false;
  }
  MaybeFailure failure = setTable(table());
  if (failure) stop();
  return failure;
}

void MakeupStream::stop() {
  const std::lock_guard lock(mutex_);
  vlvkMakeupDestroy(std::exchange(makeup_, nullptr));
}

MaybeFailure MakeupStream::process(const VlvkFrame& source, const VlvkFrame& target) {
  VlvkMakeup* makeup = nullptr;
  {
    const std::lock_guard lock(mutex_);
    makeup = makeup_;
    if (changed_) {
      if (const VlvkResult result = vlvkMakeupConfigure(makeup, &settings_); result != VLVK_OK)
        return failureOf(result);
      changed_ = false;
    }
  }
  const VlvkResult result = vlvkMakeupProcess(makeup, &source, &target, nullptr);
  if (result == VLVK_OK) return {};
  return failureOf(result, source);
}

}  // namespace vlvk::gstreamer
