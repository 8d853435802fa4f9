/// A caller's frame after its checks, in the engine's own terms.
#ifndef VLVK_ENGINE_FRAME_VIEW_H
#define VLVK_ENGINE_FRAME_VIEW_H

#include <cstddef>
#include <cstdint>

#include <vlvk/makeup.h>
#include "engine/frame_format.h"
#include "engine/plane_extent.h"
#include "rows/colorimetry.h"

namespace vlvk {

struct FrameView {
  static constexpr int kPlanes = 3;

  const FrameFormat* format;
  Colorimetry colors;  ///< of YUV
  int width;           ///< 1 or more
  int height;          ///< 1 or more
  std::uint8_t* plane[kPlanes];
  std::ptrdiff_t stride[kPlanes];

  std::uint8_t* row(int plane_, int y) const { return plane[plane_] + y * stride[plane_]; }
};

/// Where the words for a refused frame go.
class Reason {
 public:
  /// @param text  receives at most `size` bytes with the final 0, empty until something is said; null: nothing is
  /// written
  Reason(char* text, std::size_t size) : text_(size == 0 ? nullptr : text), size_(size) {
    if (text_ != nullptr) *text_ = 0;
  }

  /// Writes what printf would.
  __attribute__((format(printf, 2, 3))) void say(const char* format, ...);

 private:
  char* text_;
  std::size_t size_;
};

/// Checks a frame: size of the structure, format, colorimetry, width and height, planes and strides.
///
/// @param given   not trusted
/// @param view    receives the frame where the result is VLVK_OK
/// @param reason  gets the numbers of what is wrong
VlvkResult checkFrame(const VlvkFrame* given, FrameView& view, Reason& reason);

/// Checks how target and source stand to each other: same size, and planes that share memory only where the target is
/// the source.
VlvkResult checkPair(const FrameView& source, const FrameView& target);

/// Whether a plane of the frame shares memory with a plane of something else.
bool overlapsPlanes(const FrameView& frame, const PlaneExtent& extent);

/// Whether the target is the source: the same planes with the same strides, format, matrix and range.
bool isInPlace(const FrameView& source, const FrameView& target);

}  // namespace vlvk

#endif
