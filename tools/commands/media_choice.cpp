/// What can be said of a result's kind and encoder before anything is read.
#include "tools/commands/video_steps.h"
#include "tools/media/encoder_choice.h"
#include "tools/media/media_output.h"

namespace vlvk::tool {
namespace {

// Null for a name that tells none.
const AVOutputFormat* kindOf(const VideoOptions& options) {
  try {
    return &outputKind(options.out, options.to);
  } catch (const UsageError&) {
    if (options.to.empty()) return nullptr;
    throw;
  }
}

}  // namespace

void checkMedia(const VideoOptions& options) {
  if (options.raw || (options.to.empty() && !options.encoder.any())) return;
  const AVOutputFormat* kind = kindOf(options);
  if (kind != nullptr) chooseEncoder(*kind, options.encoder);
}

}  // namespace vlvk::tool
