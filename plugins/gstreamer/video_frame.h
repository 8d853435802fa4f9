/// GStreamer's description of video as the engine's.
#ifndef VLVK_PLUGINS_GSTREAMER_VIDEO_FRAME_H
#define VLVK_PLUGINS_GSTREAMER_VIDEO_FRAME_H

#include <gst/video/video.h>

#include <string>

#include <vlvk/makeup.h>
#include "plugins/gstreamer/failure.h"

namespace vlvk::gstreamer {

/// The pad templates' caps: the formats of the engine, in plain memory.
///
/// Interlacing, colorimetry and size are not limited here, though the engine takes only some: what a template leaves
/// out ends a pipeline with "not negotiated" and no reason. refusalOf has the reasons.
#define VLVK_GSTREAMER_CAPS GST_VIDEO_CAPS_MAKE("{ NV12, NV21, I420, BGRA, RGBA, BGRx, RGBx, RGB, BGR }")

/// Why video of the template's formats is not processed, and what helps; nothing where it is.
MaybeFailure refusalOf(const GstVideoInfo& info);

/// What is said of frames that the engine refuses.
///
/// @param reason  the engine's words, without a full stop
Failure unusable(const std::string& reason);

/// Why a buffer is none of these frames: it is too short. The base class would only warn of that, and go on.
MaybeFailure refusalOf(const GstVideoInfo& info, GstBuffer* buffer);

/// A mapped frame. Its strides and the places of its planes are those of the buffer, its size is that of the caps,
/// which leave out what a decoder has added to fill its blocks.
///
/// @param info  of the caps; refusalOf has taken it
VlvkFrame describe(const GstVideoInfo& info, const GstVideoFrame& frame);

}  // namespace vlvk::gstreamer

#endif
