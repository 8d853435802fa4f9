/// Picture -> NV21 frame -> engine -> picture.
#include "tools/engine/beautify.h"

#include <cstddef>

#include "tools/engine/nv21_frame.h"

namespace vlvk::tool {
namespace {

Picture filtered(const Nv21Frame& frame, const Look& look) {
  Picture result(frame.width, frame.height);
  Engine(look).beautify({frame.width, frame.height, frame.luma.get(), frame.chroma()}, result.row(0));
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
  Picture result = filtered(nv21FrameOf(source), look);
  cropFromEven(result.pixels.get(), {source.width, source.height}, 4);
  result.width = source.width;
  result.height = source.height;
  result.hasAlpha = source.hasAlpha;
  result.colorProfile = source.colorProfile;
  copyAlpha(source, &result);
  return result;
}

}  // namespace vlvk::tool
