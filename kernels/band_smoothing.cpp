/// The exported band kernels: each names its rows and lets the sliding box do the rest.
#include "kernels/band_smoothing.h"

#include <algorithm>
#include <cstdint>

#include "base/arm_math.h"
#include "kernels/box_rows.h"
#include "kernels/box_slider.h"
#include "kernels/pixel_formula.h"
#include "targets/row_loops.h"

namespace {

using vlvk::BoxRows;
using vlvk::BoxSlider;

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
  const unsigned char* savedRow(int i) const { return scratch->edgeRows + static_cast<std::ptrdiff_t>(i) * stride; }
};

void smoothBand(const Band& band, const BoxRows& rows) {
  const int columns = band.width & ~7;
  if (columns <= 0 || band.rows <= 0) return;
  // The record's byte pointers are aligned for the sums they hold.
  auto* sums = static_cast<std::uint16_t*>(static_cast<void*>(band.scratch->scratchA));
  auto* squares = static_cast<std::uint32_t*>(static_cast<void*>(band.scratch->scratchB));
  BoxSlider slider(sums, squares, columns, band.reach(), band.level);
  slider.start(rows);
  slider.smoothRows(rows, rows, 0, band.rows, band.source, band.destination, band.stride);
}

BoxRows planeRows(const Band& band) {
  return {.plane = band.source, .stride = band.stride};
}

/// The bottom edge repeats the band's last row; a band shorter than the box repeats the last row that entered first.
std::int64_t bottomRow(const Band& band) {
  return std::int64_t{std::max(band.rows, band.reach())} - 1;
}

void takeAboveFromSavedRows(const Band& band, BoxRows& rows) {
  rows.above = band.savedRow(0);
  rows.aboveRows = band.reach();
}

void takeBelowFromSavedRows(const Band& band, int firstSavedRow, BoxRows& rows) {
  rows.below = band.savedRow(firstSavedRow);
  rows.belowRows = band.reach();
  rows.belowFrom = band.rows - 1;
}

}  // namespace

void MeanTop_Window_Neon(const unsigned char* source, unsigned char* destination, int width, int rows, int stride,
                         int radius, int level, const VKBandScratch* scratch) {
  const Band band{source, destination, width, rows, stride, radius, level, scratch};
  BoxRows box = planeRows(band);
  box.firstRow = 0;
  smoothBand(band, box);
}

void MeanMid_Window_Neon(const unsigned char* source, unsigned char* destination, int width, int rows, int stride,
                         int radius, int level, const VKBandScratch* scratch) {
  const Band band{source, destination, width, rows, stride, radius, level, scratch};
  smoothBand(band, planeRows(band));
}

void MeanBottom_Window_Neon(const unsigned char* source, unsigned char* destination, int width, int rows, int stride,
                            int radius, int level, const VKBandScratch* scratch) {
  const Band band{source, destination, width, rows, stride, radius, level, scratch};
  BoxRows box = planeRows(band);
  box.lastRow = bottomRow(band);
  smoothBand(band, box);
}

void MeanTop_Window_V3_Neon(const unsigned char* source, unsigned char* destination, int width, int rows, int stride,
                            int radius, int level, const VKBandScratch* scratch) {
  const Band band{source, destination, width, rows, stride, radius, level, scratch};
  BoxRows box = planeRows(band);
  box.firstRow = 0;
  takeBelowFromSavedRows(band, 0, box);
  smoothBand(band, box);
}

void MeanMid_Window_V3_Neon(const unsigned char* source, unsigned char* destination, int width, int rows, int stride,
                            int radius, int level, const VKBandScratch* scratch) {
  const Band band{source, destination, width, rows, stride, radius, level, scratch};
  BoxRows box = planeRows(band);
  takeAboveFromSavedRows(band, box);
  takeBelowFromSavedRows(band, band.reach(), box);
  smoothBand(band, box);
}

void MeanBottom_Window_V3_Neon(const unsigned char* source, unsigned char* destination, int width, int rows, int stride,
                               int radius, int level, const VKBandScratch* scratch) {
  const Band band{source, destination, width, rows, stride, radius, level, scratch};
  BoxRows box = planeRows(band);
  takeAboveFromSavedRows(band, box);
  box.lastRow = bottomRow(band);
  smoothBand(band, box);
}

void MeanLineEx_Neon(unsigned short* columnSums, unsigned int* columnSquares, const unsigned char* addRow,
                     const unsigned char* subRow, int width, const unsigned char* source, unsigned char* destination,
                     int halfSize, int level) {
  vlvk::rowLoops().slideColumnSums(columnSums, columnSquares, addRow, subRow, std::max(width, 0) & ~7);
  MeanLine_Neon(columnSums, columnSquares, width, source, destination, halfSize, level);
}

void MeanLine_Neon(const unsigned short* columnSums, const unsigned int* columnSquares, int width,
                   const unsigned char* source, unsigned char* destination, int halfSize, int level) {
  // The sums are the caller's own and need not stem from samples.
  vlvk::rowLoops().smoothRowAnySums(columnSums, columnSquares, std::max(width, 0) & ~7, source, destination, halfSize,
                                    vlvk::makePixelFormula(halfSize, level));
}
