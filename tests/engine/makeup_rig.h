/// Frames of any format in guarded memory, and their way through a handle compared with the model. For tests and
/// fuzzers, so without a test library: what is wrong comes back in words, nothing wrong as "".
#ifndef VLVK_TESTS_ENGINE_MAKEUP_RIG_H
#define VLVK_TESTS_ENGINE_MAKEUP_RIG_H

#include <array>
#include <memory>
#include <string>

#include <vlvk/makeup.h>
#include "tests/engine/makeup_model.h"
#include "tests/frames/frame_rig.h"

namespace makeup_rig {

using frame_rig::Content;
using frame_rig::Guard;
using frame_rig::Random;
using model::Byte;
using model::Bytes;

inline constexpr int kFormats[] = {VLVK_NV12, VLVK_NV21, VLVK_I420, VLVK_RGBA, VLVK_BGRA,
                                   VLVK_RGBX, VLVK_BGRX, VLVK_RGB,  VLVK_BGR};

struct Shape {
  int format;
  int colors;  ///< bit 0: full range, bit 1: BT.709
  int width, height;
  std::array<int, 3> slack{};  ///< bytes between the rows of a plane
  Guard guard = Guard::kBehind;
};

/// With any distances between rows.
Shape randomShape(int format, int colors, int width, int height, Random& random);

class Picture {
 public:
  using Memory = std::array<Bytes, 3>;

  explicit Picture(const Shape& s);

  /// Any luma, chroma that is mostly skin; pixels of both.
  void fill(Random& random) const;
  Memory content() const { return {planes[0].bytes(), planes[1].bytes(), planes[2].bytes()}; }
  void put(const Memory& content) const;
  VlvkFrame frame() const { return frameIn({planes[0].row(0), planes[1].row(0), planes[2].row(0)}); }
  VlvkFrame frameIn(Memory& memory) const { return frameIn({memory[0].data(), memory[1].data(), memory[2].data()}); }
  std::string difference(const Memory& expected) const;

  const Shape shape;
  const std::array<frame_rig::Plane, 3> planes;

 private:
  VlvkFrame frameIn(const std::array<Byte*, 3>& memory) const;
};

struct Destroy {
  void operator()(VlvkMakeup* makeup) const { vlvkMakeupDestroy(makeup); }
};
using Handle = std::unique_ptr<VlvkMakeup, Destroy>;

VlvkSettings settingsOf(int whitening, int softening, int radius, int threads = 2);
Handle create(const VlvkSettings& settings);

/// A colour picture as a resource file.
const Bytes& noiseTable();

/// Takes a frame through a handle that has these settings and this table, and compares target, source and what lies
/// between rows.
///
/// @param target  may be `source`
std::string check(VlvkMakeup* makeup, const VlvkSettings& settings, bool hasTable, const Picture& source,
                  const Picture& target);

}  // namespace makeup_rig

#endif
