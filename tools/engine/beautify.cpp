/// Picture -> NV21 frame -> filter -> picture.
#include "tools/engine/beautify.h"

#include <cstddef>
#include <utility>

#include "tools/engine/nv21_frame.h"
#include "tools/io/error.h"

namespace vlvk::tool {
namespace {

Picture filtered(Nv21Frame frame, const Look& look) {
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
  Picture result = filtered(nv21FrameOf(source), look);
  if (result.width != source.width || result.height != source.height) {
    result = cropped(result, source.width, source.height);
  }
  result.hasAlpha = source.hasAlpha;
  result.colorProfile = source.colorProfile;
  copyAlpha(source, &result);
  return result;
}

}  // namespace vlvk::tool
