/// The engine applied to one picture.
#ifndef VLVK_TOOLS_BEAUTIFY_H
#define VLVK_TOOLS_BEAUTIFY_H

#include <cstdint>
#include <vector>

#include "tools/picture.h"

namespace vlvk::tool {

/// Settings of a picture. The defaults are the filter's.
struct Look {
  int whiten = 50;                  ///< percent
  int soften = 1000;                ///< 1000: full
  int radius = 20;                  ///< pixels; 0: no smoothing
  int threads = 4;                  ///< does not change the result
  std::vector<std::uint8_t> table;  ///< colour picture of 1,048,576 bytes; empty: none
};

/// The beautified picture, of the same size, with alpha and profile of `source`. Colours go through video chroma (one
/// pair for 2 x 2 pixels) on the way. Throws Error when memory runs out.
Picture beautify(const Picture& source, const Look& look);

}  // namespace vlvk::tool

#endif
