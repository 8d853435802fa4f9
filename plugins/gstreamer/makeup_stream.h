/// What an element holds: the settings that its properties show, and the engine while it runs.
#ifndef VLVK_PLUGINS_GSTREAMER_MAKEUP_STREAM_H
#define VLVK_PLUGINS_GSTREAMER_MAKEUP_STREAM_H

#include <cstdint>
#include <mutex>
#include <string>

#include <vlvk/makeup.h>
#include "plugins/gstreamer/failure.h"

namespace vlvk::gstreamer {

/// Any function may be called on any thread at any time, but for start, stop and process: GStreamer calls these in
/// turns. No lock is held while a frame is processed or a file is read, so properties never wait for either.
class MakeupStream {
 public:
  using Setting = std::int32_t VlvkSettings::*;

  MakeupStream();
  ~MakeupStream();
  MakeupStream(const MakeupStream&) = delete;
  MakeupStream& operator=(const MakeupStream&) = delete;

  std::int32_t setting(Setting member) const;
  void put(Setting member, std::int32_t value);
  bool isEnabled() const;
  void enable(bool enabled);

  /// The file whose table is in use, or will be from `start` on; empty: none.
  std::string table() const;

  /// Another table, read at once where the engine runs. A failure leaves the table of before.
  MaybeFailure setTable(const std::string& path);

  /// Whether frames come out as they went in.
  bool isIdle() const;

  MaybeFailure start();
  void stop();

  /// A frame with the settings of now; between start and stop.
  MaybeFailure process(const VlvkFrame& source, const VlvkFrame& target);

 private:
  bool keepForStart(const std::string& path);

  mutable std::mutex mutex_;  // for all below
  VlvkSettings settings_;
  bool enabled_ = true;
  bool changed_ = false;  // the settings, since the last frame
  std::string table_;
  VlvkMakeup* makeup_ = nullptr;
};

}  // namespace vlvk::gstreamer

#endif
