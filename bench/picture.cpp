/// See picture.h.
#include "bench/picture.h"

namespace vlvk_bench {

Picture::Picture(Size size, VlvkFormat format, VlvkMatrix matrix, VlvkRange range)
    : size_(size), nv21_(skinFrame(size)), bytes_(size.pixels() * 4) {
  frame_.size = sizeof frame_;
  frame_.format = format;
  frame_.matrix = matrix;
  frame_.range = range;
  frame_.width = size.width;
  frame_.height = size.height;
  if (format >= VLVK_RGBA) {
    place(0, 0, size.width * (format >= VLVK_RGB ? 3 : 4));
  } else {
    const std::size_t quarter = size.pixels() / 4;
    place(0, 0, size.width);
    place(1, size.pixels(), format == VLVK_I420 ? size.width / 2 : size.width);
    if (format == VLVK_I420) place(2, size.pixels() + quarter, size.width / 2);
  }
  restore();
}

void Picture::restore() {
  VlvkFrame source = frame_;
  source.format = VLVK_NV21;
  source.plane[0] = nv21_.data();
  source.plane[1] = nv21_.data() + size_.pixels();
  source.stride[0] = source.stride[1] = size_.width;
  VlvkSettings nothing;
  vlvkSettingsInit(&nothing, sizeof nothing);
  nothing.whitening = nothing.softening = 0;
  VlvkMakeup* makeup = nullptr;
  if (vlvkMakeupCreate(&makeup, &nothing) == VLVK_OK) vlvkMakeupProcess(makeup, &source, &frame_, nullptr);
  vlvkMakeupDestroy(makeup);
}

void Picture::place(int plane, std::size_t offset, int stride) {
  frame_.plane[plane] = bytes_.data() + offset;
  frame_.stride[plane] = stride;
}

}  // namespace vlvk_bench
