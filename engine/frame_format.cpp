/// See frame_format.h.
#include "engine/frame_format.h"

namespace vlvk {

const FrameFormat* frameFormat(std::int32_t name) {
  static constexpr FrameFormat kFormats[] = {
      {VLVK_NV12, 2, 0, kRgba, false, kUThenV}, {VLVK_NV21, 2, 0, kRgba, false, kVThenU},
      {VLVK_I420, 3, 0, kRgba, false, kUThenV}, {VLVK_RGBA, 1, 4, kRgba, true, kUThenV},
      {VLVK_BGRA, 1, 4, kBgra, true, kUThenV},  {VLVK_RGBX, 1, 4, kRgba, false, kUThenV},
      {VLVK_BGRX, 1, 4, kBgra, false, kUThenV}, {VLVK_RGB, 1, 3, kRgba, false, kUThenV},
      {VLVK_BGR, 1, 3, kBgra, false, kUThenV},
  };
  for (const FrameFormat& format : kFormats) {
    if (format.name == name) return &format;
  }
  return nullptr;
}

}  // namespace vlvk
