/// What a whole frame must look like, computed the slow way: the naive formulas of tests/naive put together over the
/// full plane, without bands, threads, buffers or anything else of the library's.
#ifndef VLVK_TESTS_FRAMES_FRAME_MODEL_H
#define VLVK_TESTS_FRAMES_FRAME_MODEL_H

#include <array>
#include <optional>
#include <vector>

#include "tests/naive/naive.h"

namespace model {

using naive::Byte;
using Bytes = std::vector<Byte>;

struct Settings {
  int whiten = 50;
  int soften = 1000;
  int radius = 20;
  int colorAdjust = 100;
};

/// How the host answers when it is asked for the colour picture.
struct Resource {
  bool present = true;
  Bytes payload;  ///< may be shorter than a picture; what it does not cover is neutral
};

inline constexpr int kPictureSide = 512;
inline constexpr std::size_t kPictureSize = std::size_t{kPictureSide} * kPictureSide * 4;

/// The colour picture that maps every colour to itself, at 6 bits a channel: one tile of 64 x 64 for each blue.
const Bytes& neutralPicture();

struct Tables {
  std::array<std::array<Byte, 256>, 3> curves;
  Bytes colors;  ///< in the memory order of the filter's colour table
};

/// @param picture  kPictureSize bytes
Tables buildTables(const Bytes& picture, int whiten, bool rgbOrder);

enum class Mapping { kTable, kCurves, kGreenOnly };
Mapping mappingFor(int whiten, int colorAdjust);

/// Adjusts one pixel of 4 bytes where it stands.
void adjustPixel(const Tables& tables, Mapping mapping, bool rgbOrder, Byte* pixel);

/// Half the box (h) for a requested radius, or a negative value for none.
long long halfSizeFor(int radius);

/// Strength that the kernels get.
int softenLevelFor(int soften);

/// Smoothed luma mixed into the unsmoothed by skin weight. Both planes without padding; rows of uv `uvStride` apart.
Bytes beautifiedLuma(const Bytes& y, const Byte* uv, int uvStride, int width, int height, bool rgbOrder,
                     const Settings& settings);

/// The frames of one filter, in order: what a frame looks like depends on earlier ones through the colour table alone.
class Filter {
 public:
  explicit Filter(const Resource* resource) : resource_(resource) {}

  void put(const Settings& settings);

  /// Planes without padding, overwritten when `out` is null.
  void processVideo(Bytes& y, Bytes& uv, int width, int height, Byte* out, int outStride, bool rgbOrder);

  /// `out` may be `bgra` with the same stride, or null.
  void processBgra(const Byte* bgra, int width, int height, int stride, Byte* out, int outStride);

  int loads() const { return loads_; }                    ///< how often the picture was asked for
  int smoothedFrames() const { return smoothedFrames_; }  ///< frames in which smoothing changed something

 private:
  void makeTables(bool rgbOrder);
  void render(const Bytes& y, const Byte* uv, int uvStride, int width, int height, bool rgbOrder, Byte* out,
              int outStride);

  const Resource* resource_;
  Settings settings_;
  bool dirty_ = true;
  bool rgbOrder_ = false;
  std::optional<Tables> tables_;
  int loads_ = 0;
  int smoothedFrames_ = 0;
};

}  // namespace model

#endif
