/// Words and descriptions: results as text, frames checked for a caller, three planes as a frame.
#include <cstdint>

#include <vlvk/makeup.h>
#include "engine/frame_view.h"
#include "engine/versioned.h"

namespace {

/// Format of Y, U and V planes whose chroma samples are `step` bytes apart; 0 where it is none that the engine has.
std::int32_t formatOf(unsigned char* const planes[3], int step) {
  const auto u = reinterpret_cast<std::uintptr_t>(planes[1]);
  const auto v = reinterpret_cast<std::uintptr_t>(planes[2]);
  if (step == 1) return VLVK_I420;
  if (step != 2) return 0;
  if (v == u + 1) return VLVK_NV12;
  return u == v + 1 ? VLVK_NV21 : 0;
}

}  // namespace

VlvkResult vlvkFrameFromYuv420(VlvkFrame* frame, unsigned char* const planes[3], const int32_t rowStrides[3],
                               int32_t chromaStep) {
  if (frame == nullptr || planes == nullptr || rowStrides == nullptr) return VLVK_NULL_POINTER;
  if (planes[0] == nullptr || planes[1] == nullptr || planes[2] == nullptr) return VLVK_NULL_POINTER;
  VlvkFrame described{};
  if (!vlvk::copyVersioned<vlvk::kFirstFrameSize>(*frame, described)) return VLVK_OTHER_VERSION;
  described.format = formatOf(planes, chromaStep);
  if (described.format == 0) return VLVK_BAD_FORMAT;
  const bool planar = described.format == VLVK_I420;
  if (!planar && rowStrides[1] != rowStrides[2]) return VLVK_BAD_STRIDE;
  for (int p = 0; p < 4; ++p) {
    described.plane[p] = nullptr;
    described.stride[p] = 0;
  }
  for (int p = 0; p < (planar ? 3 : 2); ++p) {
    described.plane[p] = planes[p];
    described.stride[p] = rowStrides[p];
  }
  if (described.format == VLVK_NV21) described.plane[1] = planes[2];
  // Matrix and range are the caller's matter; here they only must not stand in the way of the other checks.
  VlvkFrame checked = described;
  checked.matrix = VLVK_BT601;
  checked.range = VLVK_LIMITED;
  const VlvkResult result = vlvkFrameCheck(&checked, nullptr, 0);
  if (result != VLVK_OK) return result;
  frame->format = described.format;
  for (int p = 0; p < 4; ++p) {
    frame->plane[p] = described.plane[p];
    frame->stride[p] = described.stride[p];
  }
  return VLVK_OK;
}

VlvkResult vlvkFrameCheck(const VlvkFrame* frame, char* text, size_t size) {
  vlvk::Reason reason(text, size);
  vlvk::FrameView view{};
  return vlvk::checkFrame(frame, view, reason);
}

const char* vlvkResultText(VlvkResult result) {
  switch (result) {
    case VLVK_OK:
      return "done";
    case VLVK_NULL_POINTER:
      return "a pointer is null";
    case VLVK_BAD_FORMAT:
      return "unknown format, matrix or range";
    case VLVK_BAD_SIZE:
      return "width or height out of range, or not the same in source and target, or a plane past the end of memory";
    case VLVK_BAD_STRIDE:
      return "a stride is shorter than a row, or those of U and V differ";
    case VLVK_OVERLAP:
      return "planes share memory";
    case VLVK_BAD_SETTING:
      return "a setting is out of its range";
    case VLVK_BAD_TABLE:
      return "no whole colour table";
    case VLVK_NO_MEMORY:
      return "not enough memory";
    case VLVK_OTHER_VERSION:
      return "a structure of another version of the library";
  }
  return "unknown result";
}
