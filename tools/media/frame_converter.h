/// Frames of other formats into those that the engine and the encoder take.
#ifndef VLVK_TOOLS_MEDIA_FRAME_CONVERTER_H
#define VLVK_TOOLS_MEDIA_FRAME_CONVERTER_H

#include "tools/media/color_tags.h"
#include "tools/media/ffmpeg.h"

namespace vlvk::tool {

/// A turn by quarters, clockwise, after an optional mirroring of left and right.
struct Turn {
  int quarters = 0;
  bool mirrored = false;

  bool none() const { return quarters == 0 && !mirrored; }
  bool swapsSides() const { return quarters % 2 != 0; }
};

struct Conversion {
  ColorTags source;
  ColorTags target;
  AVPixelFormat format;  ///< of the result
  Turn turn{};
};

/// Converts frames of one size and format. Throws Error, a bare reason.
class FrameConverter {
 public:
  explicit FrameConverter(const Conversion& conversion) : conversion_(conversion) {}

  /// A new frame with the contents, time and marks of `frame`.
  MediaPicture convert(const AVFrame& frame);

 private:
  void build(const AVFrame& like);

  Conversion conversion_;
  MediaOwner<AVFilterGraph> graph_;
  AVFilterContext* source_ = nullptr;  // of graph_
  AVFilterContext* sink_ = nullptr;    // of graph_
};

/// Whether the chroma of the formats has the same width and height.
bool hasSameChroma(AVPixelFormat one, AVPixelFormat other);

}  // namespace vlvk::tool

#endif
