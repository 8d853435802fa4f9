/// How a target smooths the columns of a row whose boxes lie inside it. Each target names its way, kInsideColumns.
#ifndef VLVK_SIMD_INSIDE_COLUMNS_H
#define VLVK_SIMD_INSIDE_COLUMNS_H

namespace vlvk {

enum InsideColumns {
  /// Cut into runs, each worked off in several short loops, which hand over in memory, instead of one long loop.
  /// Processors that reorder much gain from the short chains of operations.
  kInRuns,
  /// 16 at a time, even and odd ones apart, from column sums to pixels in registers: fewest instructions.
  kInPairs,
  /// The same, forming the next 16 box sums beside the formula of these. Processors that do not reorder wait less, but
  /// it takes more than 16 registers.
  kInPairsOneStepLate
};

}  // namespace vlvk

#endif
