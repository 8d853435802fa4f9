/// The colour table: 64 x 64 x 64 colours, made from a picture and the whitening curves.
///
/// The table keeps each tile of the picture in one piece:
///
///     entry (red r, green g, blue b), 6 bits each, at byte b * 16384 + g * 256 + r * 4
#ifndef VLVK_FILTER_COLOR_TABLE_H
#define VLVK_FILTER_COLOR_TABLE_H

#include <cstddef>
#include <cstdlib>
#include <memory>

#include "resource/color_picture.h"

class CFastEdgePreserved;

namespace vlvk {

inline constexpr std::size_t kColorTableSize = kColorPictureSize;

/// The three curves that a table is passed through.
struct ToneCurves {
  const unsigned char* curve0;
  const unsigned char* curve1;
  const unsigned char* curve2;
};

/// Passes every pixel of `picture` through the curves into `table`, in the channel order of the frames it will serve.
void buildColorTable(const unsigned char* picture, const ToneCurves& curves, bool rgbOrder, unsigned char* table);

struct FreeMemory {
  void operator()(unsigned char* memory) const { std::free(memory); }
};
using Memory = std::unique_ptr<unsigned char, FreeMemory>;

/// Brings a filter's tone curves and colour table up to date, in two steps so that a frame can get hold of all its
/// memory before anything changes.
class TableUpdate {
 public:
  /// @param settingsChanged  the tables no longer match the settings
  TableUpdate(CFastEdgePreserved& filter, bool settingsChanged) : filter_(filter), reload_(settingsChanged) {}

  /// Gets the memory that the update needs. Returns false when there is none; the filter's tables are as before then.
  bool allocate();

  /// Asks the loader where the settings changed, and builds. A resource that cannot be opened leaves the filter without
  /// a table for this frame; the next frame that finds none builds a neutral one.
  void apply(int whitenIntensity);

 private:
  /// Fills the picture. Returns false when the resource cannot be had.
  bool loadPicture();

  CFastEdgePreserved& filter_;
  bool reload_;
  Memory table_;
  Memory picture_;
};

}  // namespace vlvk

#endif
