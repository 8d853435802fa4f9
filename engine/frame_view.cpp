/// The checks of frames. Nothing here reads a sample.
#include "engine/frame_view.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>

#include "engine/plane_extent.h"
#include "engine/versioned.h"

namespace vlvk {

namespace {

constexpr int kMaxSide = 65535;
constexpr std::int32_t kOtherBt601 = 5;  // H.273 has two numbers for the same matrix

PlaneExtent extentOfPlane(const FrameView& frame, int plane) {
  const FrameFormat& format = *frame.format;
  return extentOf(frame.plane[plane], planeBytes(frame.stride[plane], format.rowBytes(plane, frame.width),
                                                 format.rows(plane, frame.height)));
}

bool readColorimetry(const VlvkFrame& frame, Colorimetry& colors) {
  const bool isBt601 = frame.matrix == VLVK_BT601 || frame.matrix == kOtherBt601;
  if (!isBt601 && frame.matrix != VLVK_BT709) return false;
  if (frame.range != VLVK_LIMITED && frame.range != VLVK_FULL) return false;
  const bool full = frame.range == VLVK_FULL;
  if (isBt601) {
    colors = full ? kBt601Full : kBt601Limited;
  } else {
    colors = full ? kBt709Full : kBt709Limited;
  }
  return true;
}

VlvkResult checkPlane(const VlvkFrame& frame, const FrameFormat& format, int plane, Reason& reason) {
  if (frame.plane[plane] == nullptr) {
    reason.say("plane %d: null pointer", plane);
    return VLVK_NULL_POINTER;
  }
  const std::int64_t rowBytes = format.rowBytes(plane, frame.width);
  if (frame.stride[plane] < rowBytes) {
    reason.say("plane %d: stride %d, a row has %d bytes", plane, frame.stride[plane], static_cast<int>(rowBytes));
    return VLVK_BAD_STRIDE;
  }
  const std::int64_t bytes = planeBytes(frame.stride[plane], rowBytes, format.rows(plane, frame.height));
  if (!fitsMemory(frame.plane[plane], bytes)) {
    reason.say("plane %d: %lld bytes do not fit the memory from its address on", plane, static_cast<long long>(bytes));
    return VLVK_BAD_SIZE;
  }
  return VLVK_OK;
}

}  // namespace

void Reason::say(const char* format, ...) {
  if (text_ == nullptr) return;
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text_, size_, format, arguments);  // NOLINT(clang-analyzer-valist.Uninitialized): it is started
  va_end(arguments);
}

VlvkResult checkFrame(const VlvkFrame* given, FrameView& view, Reason& reason) {
  if (given == nullptr) {
    reason.say("no frame: null pointer");
    return VLVK_NULL_POINTER;
  }
  VlvkFrame frame{};
  if (!copyVersioned<kFirstFrameSize>(*given, frame)) {
    const auto known = static_cast<unsigned>(sizeof frame);
    if (given->size > known && given->size <= kLargestStructure) {
      reason.say("frame: bytes past the first %u are not 0, members of a later version", known);
    } else {
      reason.say("frame: size %u, this version has %u bytes", given->size, known);
    }
    return VLVK_OTHER_VERSION;
  }
  const FrameFormat* format = frameFormat(frame.format);
  if (format == nullptr) {
    reason.say("format %d is unknown", frame.format);
    return VLVK_BAD_FORMAT;
  }
  Colorimetry colors = kBt601Full;
  if (format->isYuv() && !readColorimetry(frame, colors)) {
    reason.say("matrix %d, range %d: the matrix is 1 (BT.709), 5 or 6 (BT.601), the range 0 (limited) or 1 (full)",
               frame.matrix, frame.range);
    return VLVK_BAD_FORMAT;
  }
  if (frame.width < 1 || frame.height < 1 || frame.width > kMaxSide || frame.height > kMaxSide) {
    reason.say("%d x %d pixels: each side has 1 to %d", frame.width, frame.height, kMaxSide);
    return VLVK_BAD_SIZE;
  }
  FrameView checked{format, colors, frame.width, frame.height, {}, {}};
  for (int plane = 0; plane < format->planes; ++plane) {
    const VlvkResult result = checkPlane(frame, *format, plane, reason);
    if (result != VLVK_OK) return result;
    checked.plane[plane] = frame.plane[plane];
    checked.stride[plane] = frame.stride[plane];
  }
  view = checked;
  return VLVK_OK;
}

bool isInPlace(const FrameView& source, const FrameView& target) {
  if (source.format != target.format || (source.format->isYuv() && source.colors != target.colors)) return false;
  for (int plane = 0; plane < source.format->planes; ++plane) {
    if (source.plane[plane] != target.plane[plane] || source.stride[plane] != target.stride[plane]) return false;
  }
  return true;
}

bool overlapsPlanes(const FrameView& frame, const PlaneExtent& extent) {
  for (int plane = 0; plane < frame.format->planes; ++plane) {
    if (extent.overlaps(extentOfPlane(frame, plane))) return true;
  }
  return false;
}

VlvkResult checkPair(const FrameView& source, const FrameView& target) {
  if (source.width != target.width || source.height != target.height) return VLVK_BAD_SIZE;
  const bool inPlace = isInPlace(source, target);
  for (int t = 0; t < target.format->planes; ++t) {
    const PlaneExtent extent = extentOfPlane(target, t);
    for (int other = 0; other < t; ++other) {
      if (extent.overlaps(extentOfPlane(target, other))) return VLVK_OVERLAP;
    }
    for (int s = 0; s < source.format->planes && !inPlace; ++s) {
      if (extent.overlaps(extentOfPlane(source, s))) return VLVK_OVERLAP;
    }
  }
  return VLVK_OK;
}

}  // namespace vlvk
