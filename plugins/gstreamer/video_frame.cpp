/// See video_frame.h.
#include "plugins/gstreamer/video_frame.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace vlvk::gstreamer {
namespace {

Failure refused(const std::string& what, const std::string& help) {
  return {GST_STREAM_ERROR, GST_STREAM_ERROR_FORMAT, what + " are not processed" + help};
}

std::int32_t formatOf(const GstVideoInfo& info) {
  switch (GST_VIDEO_INFO_FORMAT(&info)) {
    case GST_VIDEO_FORMAT_NV12:
      return VLVK_NV12;
    case GST_VIDEO_FORMAT_NV21:
      return VLVK_NV21;
    case GST_VIDEO_FORMAT_I420:
      return VLVK_I420;
    case GST_VIDEO_FORMAT_RGBA:
      return VLVK_RGBA;
    case GST_VIDEO_FORMAT_BGRA:
      return VLVK_BGRA;
    case GST_VIDEO_FORMAT_RGBx:
      return VLVK_RGBX;
    case GST_VIDEO_FORMAT_BGRx:
      return VLVK_BGRX;
    case GST_VIDEO_FORMAT_RGB:
      return VLVK_RGB;
    case GST_VIDEO_FORMAT_BGR:
      return VLVK_BGR;
    default:
      return 0;  // the engine refuses it
  }
}

// GStreamer's converters take everything that is not limited for full.
bool isLimited(const GstVideoInfo& info) {
  return info.colorimetry.range == GST_VIDEO_COLOR_RANGE_16_235;
}

const char* nameOf(GstVideoColorMatrix matrix) {
  switch (matrix) {
    case GST_VIDEO_COLOR_MATRIX_RGB:
      return "RGB";
    case GST_VIDEO_COLOR_MATRIX_FCC:
      return "FCC";
    case GST_VIDEO_COLOR_MATRIX_SMPTE240M:
      return "SMPTE 240M";
    case GST_VIDEO_COLOR_MATRIX_BT2020:
      return "BT.2020";
    default:
      return "unknown";
  }
}

MaybeFailure colorRefusalOf(const GstVideoInfo& info) {
  const GstVideoColorimetry& colors = info.colorimetry;
  if (colors.transfer == GST_VIDEO_TRANSFER_SMPTE2084 || colors.transfer == GST_VIDEO_TRANSFER_ARIB_STD_B67) {
    return refused("HDR frames (PQ, HLG)", ": make them SDR before vlvkmakeup.");
  }
  if (GST_VIDEO_INFO_IS_RGB(&info)) {
    if (!isLimited(info)) return {};
    return refused("RGB frames of limited range",
                   ", only of full range: put 'videoconvert ! video/x-raw,colorimetry=sRGB' before vlvkmakeup.");
  }
  if (colors.matrix == GST_VIDEO_COLOR_MATRIX_BT601 || colors.matrix == GST_VIDEO_COLOR_MATRIX_BT709) return {};
  return refused(std::string("Frames with the matrix ") + nameOf(colors.matrix),
                 ", only with that of BT.601 or BT.709: put "
                 "'videoconvert ! video/x-raw,format=NV12,colorimetry=bt709' before vlvkmakeup.");
}

VlvkFrame withoutPlanes(const GstVideoInfo& info) {
  VlvkFrame frame{};
  frame.size = sizeof frame;
  frame.format = formatOf(info);
  frame.matrix = info.colorimetry.matrix == GST_VIDEO_COLOR_MATRIX_BT709 ? VLVK_BT709 : VLVK_BT601;
  frame.range = isLimited(info) ? VLVK_LIMITED : VLVK_FULL;
  frame.width = GST_VIDEO_INFO_WIDTH(&info);
  frame.height = GST_VIDEO_INFO_HEIGHT(&info);
  return frame;
}

/// Bytes from the first of a plane to the end of its last row. In all formats the component with the number of a plane
/// lies in it. Rows that go backwards are the engine's to refuse.
std::int64_t planeBytes(const GstVideoInfo& info, guint plane, int stride) {
  const std::int64_t rowBytes =
      std::int64_t{GST_VIDEO_INFO_COMP_WIDTH(&info, plane)} * GST_VIDEO_INFO_COMP_PSTRIDE(&info, plane);
  return std::int64_t{GST_VIDEO_INFO_COMP_HEIGHT(&info, plane) - 1} * std::max(stride, 0) + rowBytes;
}

/// Whether a plane lies in one of the buffer's memories: only the one where it begins is mapped.
bool hasPlane(GstBuffer* buffer, gsize offset, std::int64_t bytes) {
  guint first = 0;
  guint count = 0;
  gsize skipped = 0;
  return static_cast<std::uint64_t>(bytes) <= gst_buffer_get_size(buffer) &&
         gst_buffer_find_memory(buffer, offset, bytes, &first, &count, &skipped) != FALSE && count == 1;
}

}  // namespace

Failure unusable(const std::string& reason) {
  return {GST_STREAM_ERROR, GST_STREAM_ERROR_FORMAT, "A frame cannot be processed: " + reason + "."};
}

MaybeFailure refusalOf(const GstVideoInfo& info) {
  if (GST_VIDEO_INFO_INTERLACE_MODE(&info) != GST_VIDEO_INTERLACE_MODE_PROGRESSIVE) {
    const char* mode = gst_video_interlace_mode_to_string(GST_VIDEO_INFO_INTERLACE_MODE(&info));
    return refused(std::string("Interlaced frames (interlace-mode=") + mode + ")",
                   ": put 'deinterlace' before vlvkmakeup.");
  }
  if (GST_VIDEO_INFO_MULTIVIEW_MODE(&info) == GST_VIDEO_MULTIVIEW_MODE_SEPARATED) {
    return refused("Buffers with a frame for each of several views", ", only one frame in a buffer.");
  }
  const VlvkFrame frame = withoutPlanes(info);
  char reason[200];
  if (vlvkFrameCheck(&frame, reason, sizeof reason) != VLVK_NULL_POINTER) return unusable(reason);
  return colorRefusalOf(info);
}

MaybeFailure refusalOf(const GstVideoInfo& info, GstBuffer* buffer) {
  const GstVideoMeta* meta = gst_buffer_get_video_meta(buffer);
  bool isWhole = meta != nullptr || gst_buffer_get_size(buffer) >= GST_VIDEO_INFO_SIZE(&info);
  for (guint plane = 0; meta != nullptr && plane < std::min(GST_VIDEO_INFO_N_PLANES(&info), meta->n_planes); ++plane) {
    isWhole = isWhole && hasPlane(buffer, meta->offset[plane], planeBytes(info, plane, meta->stride[plane]));
  }
  if (isWhole) return {};
  return unusable("a buffer of " + std::to_string(gst_buffer_get_size(buffer)) + " bytes does not hold its planes");
}

VlvkFrame describe(const GstVideoInfo& info, const GstVideoFrame& frame) {
  VlvkFrame described = withoutPlanes(info);
  for (guint plane = 0; plane < GST_VIDEO_FRAME_N_PLANES(&frame); ++plane) {
    described.plane[plane] = static_cast<unsigned char*>(GST_VIDEO_FRAME_PLANE_DATA(&frame, plane));
    described.stride[plane] = GST_VIDEO_FRAME_PLANE_STRIDE(&frame, plane);
  }
  return described;
}

}  // namespace vlvk::gstreamer
