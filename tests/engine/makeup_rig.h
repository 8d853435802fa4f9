/// Frames of any format in guarded memory, and an engine that is compared with the model. For tests and fuzzers, so
/// without a test library: what is wrong comes back in words, nothing wrong as "".
#ifndef VLVK_TESTS_ENGINE_MAKEUP_RIG_H
#define VLVK_TESTS_ENGINE_MAKEUP_RIG_H

#include <array>
#include <string>

#include <vlvk/makeup.h>
#include "tests/engine/makeup_model.h"
#include "tests/frames/frame_rig.h"

namespace makeup_rig {

using frame_rig::Guard;
using frame_rig::Random;
using model::Byte;
using model::Bytes;

inline constexpr int kFormats[] = {VLVK_NV12, VLVK_NV21, VLVK_I420, VLVK_RGBA, VLVK_BGRA,
                                   VLVK_RGBX, VLVK_BGRX, VLVK_RGB,  VLVK_BGR};

struct Picture {
  using Memory = std::array<Bytes, 3>;

  /// @param colors  bit 0: full range, bit 1: BT.709
  /// @param slack   bytes between the rows of planes 0, 1 and 2
  Picture(int format, int colors, int width, int height, std::array<int, 3> slack = {}, Guard guard = Guard::kBehind);
  /// With any distances between rows, any luma, and colours that are mostly skin.
  Picture(int format, int colors, int width, int height, Random& random);

  Memory content() const { return {planes[0].bytes(), planes[1].bytes(), planes[2].bytes()}; }
  VlvkFrame frameIn(Memory& memory) const;
  std::string difference(const Memory& expected) const;

  const std::array<frame_rig::Plane, 3> planes;
  const VlvkFrame frame;
};

VlvkSettings settingsOf(int whitening, int softening, int radius, int threads = 2);

/// A mask of any size, mostly of the extremes.
struct Mask {
  Mask(int width, int height, Random& random);

  const frame_rig::Plane plane;
  const VlvkMask mask;
};

/// frame_rig::noisePicture() as a resource file.
const Bytes& tableFile();

/// A handle, and what it was given.
struct Engine {
  explicit Engine(const VlvkSettings& s) : settings(s) { vlvkMakeupCreate(&makeup, &s); }
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;
  ~Engine() { vlvkMakeupDestroy(makeup); }

  void put(const VlvkSettings& s);
  VlvkResult setTable(bool wanted);
  VlvkResult process(const Picture& source, const Picture& target) const {
    return vlvkMakeupProcess(makeup, &source.frame, &target.frame, mask);
  }
  /// What the target becomes.
  Picture::Memory predict(const Picture& source, const Picture& target) const;
  /// Processes, and compares target, source and what lies between rows. The target may be the source.
  std::string check(const Picture& source, const Picture& target) const;

  VlvkMakeup* makeup = nullptr;
  VlvkSettings settings;
  bool hasTable = false;
  const VlvkMask* mask = nullptr;  ///< of the frames that follow
};

}  // namespace makeup_rig

#endif
