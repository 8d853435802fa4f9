/// The sliding box: column sums of 2R - 1 luma rows, moved down row by row, each row smoothed with them.
#ifndef VLVK_KERNELS_BOX_SLIDER_H
#define VLVK_KERNELS_BOX_SLIDER_H

#include <cstddef>
#include <cstdint>

#include "kernels/box_rows.h"
#include "kernels/pixel_formula.h"
#include "targets/row_loops.h"

namespace vlvk {

/// Smooths consecutive rows of a band, in as many calls as the caller likes. Owns no memory.
class BoxSlider {
 public:
  /// @param sums     one element for each of `columns`; content does not matter
  /// @param squares  likewise
  /// @param columns  a multiple of 8, 0 or more
  /// @param reach    R: the box of row y covers rows y - R + 1 .. y + R - 1; a positive multiple of 8
  /// @param level    strength setting
  BoxSlider(std::uint16_t* sums, std::uint32_t* squares, int columns, int reach, int level);

  /// Takes in rows -R .. R - 2: the box stands one row above row 0 then.
  void start(const BoxRows& rows);

  /// Slides the box over rows firstRow .. firstRow + rowCount - 1 and smooths each. Calls follow each other without
  /// gaps, from row 0.
  ///
  /// @param rows         what the box reaches, up to row firstRow + rowCount + R - 2, and what it leaves behind, from
  /// row
  ///                     firstRow - R
  /// @param source       unsmoothed row `firstRow`
  /// @param destination  smoothed row `firstRow`; `columns` bytes of a row are written
  /// @param stride       bytes between rows of source and destination
  void smoothRows(const BoxRows& rows, std::int64_t firstRow, int rowCount, const std::uint8_t* source,
                  std::uint8_t* destination, std::ptrdiff_t stride);

 private:
  const RowLoops& loops_;
  std::uint16_t* sums_;
  std::uint32_t* squares_;
  int columns_;
  int reach_;
  PixelFormula formula_;
  RowLoops::SmoothRow smoothRow_;
};

}  // namespace vlvk

#endif
