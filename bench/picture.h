/// Frames of the skin scene.
#ifndef VLVK_BENCH_PICTURE_H
#define VLVK_BENCH_PICTURE_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include <vlvk/makeup.h>
#include "bench/scene.h"

namespace vlvk_bench {

/// The skin scene in some format, with the pixels or planes of its own: one block of memory without padding.
class Picture {
 public:
  Picture(Size size, VlvkFormat format, VlvkMatrix matrix = VLVK_BT601, VlvkRange range = VLVK_LIMITED);

  /// The scene again, unbeautified.
  void restore();

  const VlvkFrame& frame() const { return frame_; }

 private:
  void place(int plane, std::size_t offset, int stride);

  Size size_;
  Nv21Frame nv21_;
  std::vector<std::uint8_t> bytes_;
  VlvkFrame frame_{};
};

}  // namespace vlvk_bench

#endif
