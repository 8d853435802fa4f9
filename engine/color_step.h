/// Whitening and colour table of a handle, as lookup tables.
#ifndef VLVK_ENGINE_COLOR_STEP_H
#define VLVK_ENGINE_COLOR_STEP_H

#include <cstdint>

#include "filter/color_table.h"
#include "filter/tone_curves.h"
#include "rows/pixel_orders.h"
#include "simd/channel_curves.h"

namespace vlvk {

/// What is done to the colours of pixels, in place. Rebuilt when whitening, picture or byte order change.
class ColorStep {
 public:
  /// Whether pixels of these settings change at all.
  static bool isNeeded(int whitening, const unsigned char* picture) { return whitening > 0 || picture != nullptr; }

  /// Makes the tables for a frame.
  ///
  /// @param picture         kColorPictureSize bytes, or null for tone curves alone; read
  /// @param pictureChanged  `picture` holds another picture than at the call before
  /// @param byWeight        whitening goes by weight: the curves are not in the table then, but come after it
  /// @return false, with nothing changed, when there is no memory
  bool prepare(int whitening, const unsigned char* picture, bool pictureChanged, bool byWeight, PixelOrder order);

  /// Changes a row of pixels where it stands.
  ///
  /// @param columns  a multiple of 16
  /// @param alpha    kOpaque where the pixels are, which is faster
  void apply(std::uint8_t* pixels, int columns, AlphaRule alpha) const;

  /// Whether the colours go through a picture.
  bool usesTable() const { return usesTable_; }

  /// The same with whitening by weight.
  ///
  /// @param weights  one for each channel of each pixel, 0 .. 64
  /// @param scratch  room for a row of pixels
  void applyByWeight(std::uint8_t* pixels, int columns, AlphaRule alpha, const std::uint8_t* weights,
                     std::uint8_t* scratch) const;

 private:
  void buildCurves(int whitening);
  void buildTable(const unsigned char* picture, int whitening);
  void applyCurves(const std::uint8_t* pixels, std::uint8_t* changed, int columns, AlphaRule alpha) const;
  void applyTable(std::uint8_t* pixels, int columns, AlphaRule alpha) const;

  unsigned char curves_[3][kToneCurveSize] = {};  // red, green, blue
  ChannelCurves preparedCurves_ = {};             // in the order of the pixels
  int whitening_ = -1;                            // of the curves
  PixelOrder curvesOrder_ = kRgba;                // of the prepared ones
  Memory table_;
  int tableWhitening_ = -1;  // in the table; below 0: not built
  PixelOrder order_ = kRgba;
  bool usesTable_ = false;
  bool usesCurves_ = false;
};

}  // namespace vlvk

#endif
