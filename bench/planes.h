/// The two amounts of data that conversions are timed on.
#ifndef VLVK_BENCH_PLANES_H
#define VLVK_BENCH_PLANES_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "bench/scene.h"

namespace vlvk_bench {

/// `plane`: the whole frame, which comes from memory. `rows`: eight rows, which stay in the cache, as in the engine.
struct Extent {
  const char* name;
  int (*rows)(Size size);
};

inline constexpr Extent kExtents[] = {{"plane", [](Size size) { return size.height; }},
                                      {"rows", [](Size /*size*/) { return 8; }}};

/// An NV21 frame and its pixels.
struct ConversionPlanes {
  explicit ConversionPlanes(Size size) : nv21(skinFrame(size)), rgba(size.pixels() * 4, 120), chroma(size.pixels()) {}

  Nv21Frame nv21;
  std::vector<std::uint8_t> rgba;
  std::size_t chroma;  ///< where the chroma plane begins
};

}  // namespace vlvk_bench

#endif
