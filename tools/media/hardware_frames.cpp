/// See hardware_frames.h.
#include "tools/media/hardware_frames.h"

extern "C" {
#include <libavutil/hwcontext.h>
}

#include "tools/io/messages.h"
#include "tools/media/media_log.h"

namespace vlvk::tool {
namespace {

constexpr int kFrames = 32;  // an encoder holds some

AVHWDeviceType deviceFor(const AVCodecContext& encoder) {
  for (int i = 0; const AVCodecHWConfig* config = avcodec_get_hw_config(encoder.codec, i); ++i) {
    const bool fits = (config->methods & AV_CODEC_HW_CONFIG_METHOD_HW_FRAMES_CTX) != 0;
    if (fits && config->pix_fmt == encoder.pix_fmt) return config->device_type;
  }
  throw Error("FFmpeg does not say which device it needs");
}

}  // namespace

HardwareFrames::HardwareFrames(AVCodecContext* encoder, AVPixelFormat format) {
  AVBufferRef* device = nullptr;
  if (av_hwdevice_ctx_create(&device, deviceFor(*encoder), nullptr, nullptr, 0) < 0) {
    throw Error("this machine has no video processor for it");
  }
  device_.reset(device);
  frames_ = owned(av_hwframe_ctx_alloc(device));
  auto* frames = reinterpret_cast<AVHWFramesContext*>(frames_->data);
  frames->format = encoder->pix_fmt;
  frames->sw_format = format;
  frames->width = encoder->width;
  frames->height = encoder->height;
  frames->initial_pool_size = kFrames;
  require(av_hwframe_ctx_init(frames_.get()));
  encoder->hw_frames_ctx = owned(av_buffer_ref(frames_.get())).release();
}

MediaPicture HardwareFrames::upload(const AVFrame& frame) {
  MediaPicture uploaded = owned(av_frame_alloc());
  require(av_hwframe_get_buffer(frames_.get(), uploaded.get(), 0));
  require(av_hwframe_transfer_data(uploaded.get(), &frame, 0));
  require(av_frame_copy_props(uploaded.get(), &frame));
  return uploaded;
}

}  // namespace vlvk::tool
