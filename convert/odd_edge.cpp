/// See odd_edge.h.
#include "convert/odd_edge.h"

#include <cstring>

namespace vlvk {

void repeatOddEdge(unsigned char* luma, std::ptrdiff_t stride, int width, int height) {
  if (width % 2 != 0 && width > 1) {
    for (std::ptrdiff_t y = 0; y < height; ++y)
      luma[y * stride + width - 1] = luma[y * stride + width - 2];
  }
  if (height % 2 != 0 && height > 1) {
    unsigned char* last = luma + (height - 1) * stride;
    std::memcpy(last, last - stride, static_cast<std::size_t>(width));
  }
}

}  // namespace vlvk
