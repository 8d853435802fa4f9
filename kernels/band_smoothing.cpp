/// The exported band kernels: each names its rows and lets the sliding box do the rest.
#include <vlvk/band_smoothing.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "base/arm_math.h"
#include "kernels/box_rows.h"
#include "kernels/smooth_plane.h"
#include "rows/pixel_formula.h"
#include "rows/row_loops.h"

namespace {

using vlvk::BoxRows;

/// The arguments that every band kernel hands on.
struct Band {
  const unsigned char* source;
  unsigned char* destination;
  int width;
  int rows;
  int stride;
  int radius;
  int level;
  const VKBandScratch* scratch;

  int reach() const { return vlvk::roundUpTo8(radius); }
  int columns() const { return vlvk::wholeGroups(width); }

  /// The bottom edge repeats the band's last row; a band shorter than the box repeats the last row that entered first.
  std::int64_t bottomRow() const { return std::int64_t{std::max(rows, reach())} - 1; }
};

/// Where rows outside a band come from: the plane itself unless a field says otherwise.
struct Surroundings {
  bool repeatTop = false;
  bool repeatBottom = false;
  bool savedAbove = false;
  bool savedBelow = false;  ///< after the saved rows above, if there are any
};

BoxRows boxRows(const Band& band, const Surroundings& around) {
  BoxRows box{.plane = band.source, .stride = band.stride};
  if (around.repeatTop) box.firstRow = 0;
  if (around.repeatBottom) box.lastRow = band.bottomRow();
  if (!around.savedAbove && !around.savedBelow) return box;  // a record without saved rows may end before `edgeRows`
  const unsigned char* saved = band.scratch->edgeRows;
  if (around.savedAbove) {
    box.above = saved;
    box.aboveRows = band.reach();
    saved += static_cast<std::ptrdiff_t>(band.reach()) * band.stride;
  }
  if (around.savedBelow) {
    box.below = saved;
    box.belowRows = band.reach();
    box.belowFrom = band.rows - 1;
  }
  return box;
}

void smoothBand(const Band& band, const Surroundings& around) {
  if (band.columns() <= 0 || band.rows <= 0) return;
  vlvk::smoothRows(vlvk::columnSumsIn(band.scratch->scratchA, band.scratch->scratchB, band.columns()),
                   boxRows(band, around), band.reach(), vlvk::makePixelFormula(band.reach() - 1, band.level), band.rows,
                   {band.source, band.stride}, {band.destination, band.stride});
}

}  // namespace

void MeanTop_Window_Neon(const unsigned char* source, unsigned char* destination, int width, int rows, int stride,
                         int radius, int level, const VKBandScratch* scratch) {
  smoothBand({source, destination, width, rows, stride, radius, level, scratch}, {.repeatTop = true});
}

void MeanMid_Window_Neon(const unsigned char* source, unsigned char* destination, int width, int rows, int stride,
                         int radius, int level, const VKBandScratch* scratch) {
  smoothBand({source, destination, width, rows, stride, radius, level, scratch}, {});
}

void MeanBottom_Window_Neon(const unsigned char* source, unsigned char* destination, int width, int rows, int stride,
                            int radius, int level, const VKBandScratch* scratch) {
  smoothBand({source, destination, width, rows, stride, radius, level, scratch}, {.repeatBottom = true});
}

void MeanTop_Window_V3_Neon(const unsigned char* source, unsigned char* destination, int width, int rows, int stride,
                            int radius, int level, const VKBandScratch* scratch) {
  smoothBand({source, destination, width, rows, stride, radius, level, scratch},
             {.repeatTop = true, .savedBelow = true});
}

void MeanMid_Window_V3_Neon(const unsigned char* source, unsigned char* destination, int width, int rows, int stride,
                            int radius, int level, const VKBandScratch* scratch) {
  smoothBand({source, destination, width, rows, stride, radius, level, scratch},
             {.savedAbove = true, .savedBelow = true});
}

void MeanBottom_Window_V3_Neon(const unsigned char* source, unsigned char* destination, int width, int rows, int stride,
                               int radius, int level, const VKBandScratch* scratch) {
  smoothBand({source, destination, width, rows, stride, radius, level, scratch},
             {.repeatBottom = true, .savedAbove = true});
}

void MeanLineEx_Neon(unsigned short* columnSums, unsigned int* columnSquares, const unsigned char* addRow,
                     const unsigned char* subRow, int width, const unsigned char* source, unsigned char* destination,
                     int halfSize, int level) {
  vlvk::rowLoops().slideColumnSums(columnSums, columnSquares, addRow, subRow, vlvk::wholeGroups(width));
  MeanLine_Neon(columnSums, columnSquares, width, source, destination, halfSize, level);
}

void MeanLine_Neon(const unsigned short* columnSums, const unsigned int* columnSquares, int width,
                   const unsigned char* source, unsigned char* destination, int halfSize, int level) {
  // The sums are the caller's own and need not stem from samples.
  const auto smoothRow = vlvk::rowLoops().smoothRowAnySums[vlvk::kAbsoluteContrast];
  smoothRow(columnSums, columnSquares, vlvk::wholeGroups(width), source, destination, halfSize,
            vlvk::makePixelFormula(halfSize, level));
}
