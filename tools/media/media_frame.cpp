/// See media_frame.h.
#include "tools/media/media_frame.h"

extern "C" {
#include <libavutil/imgutils.h>
}

#include <algorithm>

#include "tools/media/media_log.h"

namespace vlvk::tool {
namespace {

constexpr int kAlignment = 64;  // of rows, for the encoder's vectors

VlvkFormat formatOf(int format) {
  if (format == AV_PIX_FMT_NV12) return VLVK_NV12;
  return format == AV_PIX_FMT_NV21 ? VLVK_NV21 : VLVK_I420;
}

}  // namespace

VlvkFrame engineFrame(const AVFrame& picture, const ColorTags& colors) {
  VlvkFrame frame{};
  frame.size = sizeof frame;
  frame.format = formatOf(picture.format);
  frame.matrix = colors.matrix == AVCOL_SPC_BT709 ? VLVK_BT709 : VLVK_BT601;
  frame.range = colors.range == AVCOL_RANGE_JPEG ? VLVK_FULL : VLVK_LIMITED;
  frame.width = picture.width;
  frame.height = picture.height;
  std::copy_n(picture.data, 3, frame.plane);
  std::copy_n(picture.linesize, 3, frame.stride);
  return frame;
}

PicturePool::PicturePool(int width, int height, AVPixelFormat format)
    : width_(width),
      height_(height),
      format_(format),
      buffers_(owned(av_buffer_pool_init(
          static_cast<std::size_t>(require(av_image_get_buffer_size(format, width, height, kAlignment))) + kAlignment,
          nullptr))) {}

MediaPicture PicturePool::get() {
  MediaPicture picture = owned(av_frame_alloc());
  picture->buf[0] = owned(av_buffer_pool_get(buffers_.get())).release();
  picture->width = width_;
  picture->height = height_;
  picture->format = format_;
  require(av_image_fill_arrays(picture->data, picture->linesize, picture->buf[0]->data, format_, width_, height_,
                               kAlignment));
  return picture;
}

}  // namespace vlvk::tool
