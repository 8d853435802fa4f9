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

inline constexpr std::size_t kPictureSize = std::size_t{4} * 512 * 512;

/// For red, green and blue.
using Curves = std::array<std::array<Byte, 256>, 3>;
Curves toneCurves(int whiten);

struct Tables {
  Curves curves;
  Bytes colors;  ///< in the memory order of the filter's colour table
};

/// @param picture  its beginning; the rest is the picture that maps every colour to itself, at 6 bits a channel
Tables buildTables(const Bytes& picture, int whiten, bool rgbOrder);

/// Adjusts rows of pixels where they stand.
///
/// @param apart  not null: receives the adjusted pixels in place of `pixels`, which stay; where green alone changes it
///               receives red and blue, and green changes where it stands
void adjustBand(const Tables& tables, const Settings& settings, bool rgbOrder, int width, int rows, Byte* pixels,
                int stride, Byte* apart = nullptr, int apartStride = 0);

/// The frames of one filter, in order: what a frame looks like depends on earlier ones through the colour table alone.
class Filter {
 public:
  explicit Filter(const Resource* resource) : resource_(resource) {}

  void put(const Settings& settings);

  /// The planes are overwritten when `out` is null.
  void processVideo(Byte* y, int yStride, Byte* uv, int uvStride, int width, int height, Byte* out, int outStride,
                    bool rgbOrder);

  /// `out` may be `bgra` with the same stride, or null.
  void processBgra(const Byte* bgra, int width, int height, int stride, Byte* out, int outStride);

  int loads() const { return loads_; }                    ///< how often the picture was asked for
  int smoothedFrames() const { return smoothedFrames_; }  ///< frames in which smoothing changed something

 private:
  void makeTables(bool rgbOrder);
  Bytes beautified(const Bytes& y, const Byte* uv, int uvStride, int width, int height, bool rgbOrder) const;

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
