/// The command `video` where the program is built without FFmpeg.
#include <string>

#include "tools/commands/video_steps.h"

namespace vlvk::tool {

bool isMediaSource(const VideoOptions& options) {
  return !options.from.empty();
}

void runMedia(const VideoOptions& options, std::unique_ptr<InputStream> /*stream*/) {
  throw Error(streamName(options.in) + ": this program is built without FFmpeg, and takes only Y4M to Y4M, or frames " +
              "without headers (--format)");
}

void checkMedia(const VideoOptions& /*options*/) {}

}  // namespace vlvk::tool
