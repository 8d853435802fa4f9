/// See beautify.h.
#include "tools/engine/beautify.h"

#include <cstddef>

namespace vlvk::tool {

VlvkFrame frameOf(const Picture& picture) {
  return {sizeof(VlvkFrame),      VLVK_RGBA,          0, 0, picture.width, picture.height,
          {picture.pixels.get()}, {4 * picture.width}};
}

std::vector<std::uint8_t> nv21Of(const Picture& source, VlvkRange range) {
  const auto width = static_cast<std::size_t>(source.width);
  const auto height = static_cast<std::size_t>(source.height);
  std::vector<std::uint8_t> frame(width * height + (width + width % 2) * ((height + 1) / 2));
  Look unchanged;
  unchanged.settings.whitening = unchanged.settings.softening = 0;
  Engine(unchanged).beautify(frameOf(source), nv21Frame(frame.data(), source.width, source.height, range));
  return frame;
}

Picture beautify(const Picture& source, const Look& look) {
  Picture result = emptyLike(source, source.width, source.height);
  Engine(look).beautify(frameOf(source), frameOf(result));
  return result;
}

}  // namespace vlvk::tool
