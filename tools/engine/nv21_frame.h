/// A picture as the video frame that the engine takes.
#ifndef VLVK_TOOLS_ENGINE_NV21_FRAME_H
#define VLVK_TOOLS_ENGINE_NV21_FRAME_H

#include <cstddef>
#include <cstdint>
#include <memory>

#include "tools/picture/picture.h"

namespace vlvk::tool {

/// An NV21 frame without padding.
struct Nv21Frame {
  int width;                             ///< even
  int height;                            ///< even
  std::unique_ptr<std::uint8_t[]> luma;  ///< the chroma follows it

  std::uint8_t* chroma() const {
    return luma.get() + static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  }
};

/// The frame of a picture. Where the picture's width or height is odd, its last column or row is repeated.
Nv21Frame nv21FrameOf(const Picture& picture);

}  // namespace vlvk::tool

#endif
