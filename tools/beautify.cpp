/// Picture -> NV21 frame -> filter -> picture.
#include "tools/beautify.h"

#include <cstddef>
#include <memory>
#include <utility>

#include "convert/rgb_to_yuv.h"
#include "tools/error.h"

namespace vlvk::tool {
namespace {

// An NV21 frame.
struct Frame {
  int width;
  int height;
  std::unique_ptr<std::uint8_t[]> luma;  // the chroma follows it

  std::uint8_t* chroma() const {
    return luma.get() + static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  }
};

// `source` has an even width and height.
Frame frameOf(const Picture& source) {
  const int width = source.width;
  const int height = source.height;
  const std::size_t lumaSize = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  Frame frame{width, height, std::make_unique_for_overwrite<std::uint8_t[]>(lumaSize + lumaSize / 2)};
  VKRGBAToNV21_NeonCall(source.row(0), width * 4, frame.luma.get(), width, frame.chroma(), width, width, height);
  return frame;
}

Picture filtered(Frame frame, const Look& look) {
  const int width = frame.width;
  Picture result(width, frame.height);
  LookFilter filter(look);
  if (filter->processVideo(frame.luma.get(), width, frame.chroma(), width, width, frame.height, result.row(0),
                           width * 4, true) != 0) {
    throw Error("not enough memory");
  }
  return result;
}

void copyAlpha(const Picture& from, Picture* to) {
  for (int y = 0; y < to->height; ++y) {
    for (std::size_t i = 3; i < to->rowBytes(); i += 4)
      to->row(y)[i] = from.row(y)[i];
  }
}

}  // namespace

Picture beautify(const Picture& source, const Look& look) {
  const bool even = source.width % 2 == 0 && source.height % 2 == 0;
  // A statement of its own: the padded picture is gone when the result comes.
  Frame frame = even ? frameOf(source) : frameOf(paddedToEven(source));
  Picture result = filtered(std::move(frame), look);
  if (!even) result = cropped(result, source.width, source.height);
  result.hasAlpha = source.hasAlpha;
  result.colorProfile = source.colorProfile;
  copyAlpha(source, &result);
  return result;
}

}  // namespace vlvk::tool
