/// See beautify.h.
#include "tools/engine/beautify.h"

namespace vlvk::tool {

VlvkFrame frameOf(const Picture& picture) {
  return {sizeof(VlvkFrame),      VLVK_RGBA,          0, 0, picture.width, picture.height,
          {picture.pixels.get()}, {4 * picture.width}};
}

Picture beautify(const Picture& source, const Look& look) {
  Picture result(source.width, source.height);
  Engine(look).beautify(frameOf(source), frameOf(result));
  result.hasAlpha = source.hasAlpha;
  result.colorProfile = source.colorProfile;
  return result;
}

}  // namespace vlvk::tool
