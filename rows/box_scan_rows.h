/// Horizontal half of the box: scans a row of column sums into box sums. Included by rows/all_rows.h.

#include <cstddef>
#include <cstdint>

#include "simd/inline.h"

namespace vlvk::VLVK_TARGET {

/// 8 elements from `index` on, each index clamped to 0 .. last.
template <class T>
inline auto loadClamped(const T* row, std::ptrdiff_t index, std::ptrdiff_t last) {
  if (index >= 0 && index + 7 <= last) return load8(row + index);
  if (index + 7 <= 0) return splat8(row[0]);
  if (index >= last) return splat8(row[last]);
  T elements[8];
  for (int i = 0; i < 8; ++i) {
    const std::ptrdiff_t at = index + i;
    elements[i] = row[at < 0 ? 0 : at > last ? last : at];
  }
  return load8(elements);
}

/// Where the box of a column lies.
enum BoxShift { kCentred = 0, kOneToTheRight = 1 };

/// The sum of the 2h + 1 elements around element -1, shifted, each index clamped to 0 .. last, modulo 2^32.
template <BoxShift kShift, class T>
inline std::uint32_t boxSumBeforeRow(const T* row, int halfSize, std::ptrdiff_t last) {
  const std::uint32_t negative = static_cast<std::uint32_t>(halfSize) + 1U - kShift;
  const std::ptrdiff_t highest = static_cast<std::ptrdiff_t>(halfSize) - 1 + kShift;
  const std::ptrdiff_t reached = highest < last ? highest : last;
  std::uint32_t sum = negative * row[0] + static_cast<std::uint32_t>(highest - reached) * row[last];
  for (std::ptrdiff_t i = 0; i <= reached; ++i)
    sum += row[i];
  return sum;
}

/// What 8 box sums gain on their predecessors.
inline U32x8 boxSteps(U16x8 entering, U16x8 leaving) {
  return differenceWiden(entering, leaving);
}
inline U32x8 boxSteps(U32x8 entering, U32x8 leaving) {
  return sub(entering, leaving);
}

/// Sums for 16 columns, even and odd ones apart.
struct PairedSums {
  U32x8 even;
  U32x8 odd;
};

template <class Steps>
inline PairedSums sumsOfPairs(U32x8 carried, const Steps& steps) {
  const U32x8 odd = prefixSum(carried, steps.pair);
  return {sub(odd, steps.odd), odd};
}

/// Both box sums of 16 columns.
struct PairedBoxes {
  PairedSums sums;
  PairedSums squares;
};

/// Box sums of a run of columns, even and odd ones apart: 8 even columns, the 8 odd ones among them, 8 even ones ...
struct BoxRun {
  static constexpr int kColumns = 256;
  std::uint32_t sums[kColumns];
  std::uint32_t squares[kColumns];
};

inline void storePaired(std::uint32_t* to, const PairedSums& sums) {
  store(to, sums.even);
  store(to + 8, sums.odd);
}

/// A scan of one row: the column sums, and the box sums of the column before the next one in every lane.
///
/// The box of column j is the one of column j - 1 plus column j + toEntering, less column j + toLeaving.
template <BoxShift kShift, class Sum>
struct BoxScan {
  const Sum* sums;
  const std::uint32_t* squares;
  std::ptrdiff_t last;
  std::ptrdiff_t toEntering;
  std::ptrdiff_t toLeaving;
  U32x8 boxSum;
  U32x8 boxSquare;

  VLVK_INLINE BoxScan(const Sum* columnSums, const std::uint32_t* columnSquares, std::ptrdiff_t lastColumn,
                      int halfSize)
      : sums(columnSums),
        squares(columnSquares),
        last(lastColumn),
        toEntering((halfSize <= lastColumn ? halfSize : lastColumn + 1) + kShift),  // farther indices clamp alike
        toLeaving(2 * kShift - toEntering - 1),
        boxSum(splat8(boxSumBeforeRow<kShift>(columnSums, halfSize, lastColumn))),
        boxSquare(splat8(boxSumBeforeRow<kShift>(columnSquares, halfSize, lastColumn))) {}

  /// The last column from which on `count` boxes reach no column past `last`.
  VLVK_INLINE std::ptrdiff_t lastInside(int count) const { return last - toEntering - (count - 1); }

  template <class Use8>
  VLVK_INLINE void step8(std::ptrdiff_t j, U32x8 sumSteps, U32x8 squareSteps, const Use8& use8) {
    const U32x8 boxSums = prefixSum(boxSum, sumSteps);
    const U32x8 boxSquares = prefixSum(boxSquare, squareSteps);
    boxSum = splatLast(boxSums);
    boxSquare = splatLast(boxSquares);
    use8(j, boxSums, boxSquares);
  }
  template <class Use8>
  VLVK_INLINE void clamped8(std::ptrdiff_t j, const Use8& use8) {
    step8(j, boxSteps(loadClamped(sums, j + toEntering, last), loadClamped(sums, j + toLeaving, last)),
          boxSteps(loadClamped(squares, j + toEntering, last), loadClamped(squares, j + toLeaving, last)), use8);
  }
  /// Groups of 8 from column j on, an inside column (see scanBoxSums), as far as there are inside columns. Returns the
  /// first column that is not done.
  template <class Use8>
  VLVK_INLINE std::ptrdiff_t groups(std::ptrdiff_t j, const Use8& use8) {
    const std::ptrdiff_t end = lastInside(8);
    if (j > end) return j;
    const Sum* enteringSums = sums + j + toEntering;
    const Sum* leavingSums = sums + j + toLeaving;
    const std::uint32_t* enteringSquares = squares + j + toEntering;
    const std::uint32_t* leavingSquares = squares + j + toLeaving;
    for (; j <= end; j += 8) {
      step8(j, boxSteps(load8(enteringSums), load8(leavingSums)),
            boxSteps(load8(enteringSquares), load8(leavingSquares)), use8);
      enteringSums += 8;
      leavingSums += 8;
      enteringSquares += 8;
      leavingSquares += 8;
    }
    return j;
  }
  /// The box sums of 16 inside columns from column j on.
  VLVK_INLINE PairedBoxes step16(std::ptrdiff_t j) {
    const PairedSums boxSums = sumsOfPairs(boxSum, pairSteps(sums + j + toEntering, sums + j + toLeaving));
    const PairedSums boxSquares = sumsOfPairs(boxSquare, pairSteps(squares + j + toEntering, squares + j + toLeaving));
    boxSum = splatLast(boxSums.odd);
    boxSquare = splatLast(boxSquares.odd);
    return {boxSums, boxSquares};
  }
  /// As groups, but of 16: `use16(j, boxes)` gets columns j .. j + 15.
  template <class Use16>
  VLVK_INLINE std::ptrdiff_t pairs(std::ptrdiff_t j, const Use16& use16) {
    for (const std::ptrdiff_t end = lastInside(16); j <= end; j += 16)
      use16(j, step16(j));
    return j;
  }
  /// The same, using box sums when the next ones are formed.
  template <class Use16>
  VLVK_INLINE std::ptrdiff_t pairsOneStepLate(std::ptrdiff_t j, const Use16& use16) {
    const std::ptrdiff_t end = lastInside(16);
    if (j > end) return j;
    PairedBoxes boxes = step16(j);
    for (j += 16; j <= end; j += 16) {
      const PairedBoxes next = step16(j);
      use16(j - 16, boxes);
      boxes = next;
    }
    use16(j - 16, boxes);
    return j;
  }
  /// The same in runs: `useRun(j, count, run)` gets columns j .. j + count - 1, a multiple of 16, at once. Its loop is
  /// not made of step16, whose result g++ would pass through memory: with AVX2 that takes half as long again.
  template <class UseRun>
  VLVK_INLINE std::ptrdiff_t runs(std::ptrdiff_t j, const UseRun& useRun) {
    const std::ptrdiff_t end = lastInside(16);
    BoxRun run;
    while (j <= end) {
      int count = 0;
      for (; j <= end && count < BoxRun::kColumns; j += 16, count += 16) {
        const PairedSums boxSums = sumsOfPairs(boxSum, pairSteps(sums + j + toEntering, sums + j + toLeaving));
        const PairedSums boxSquares =
            sumsOfPairs(boxSquare, pairSteps(squares + j + toEntering, squares + j + toLeaving));
        boxSum = splatLast(boxSums.odd);
        boxSquare = splatLast(boxSquares.odd);
        storePaired(run.sums + count, boxSums);
        storePaired(run.squares + count, boxSquares);
      }
      useRun(j - count, count, run);
    }
    return j;
  }
};

/// Scans column sums into box sums and calls `use8(j, sums, squares)` for columns j .. j + 7, j = 0, 8 ... below
/// `columns`. Column indices clamp to 0 .. last.
///
/// A row has three parts, each possibly empty: columns at its left end whose boxes reach before column 0, inside
/// columns whose boxes lie wholly in 0 .. last, and columns at its right end whose boxes reach past `last`. Only the
/// ends pay for clamping. A caller may take inside columns another way than 8 at a time: after the left end,
/// `useInside(scan, j)` is called once with the scan standing at column j, the first inside column. It moves the scan
/// over as many inside columns as it likes (none, or what BoxScan's functions take) and returns the first column that
/// it has not done, where the scan goes on with `use8`.
template <BoxShift kShift, class Sum, class Use8, class UseInside>
VLVK_INLINE void scanBoxSums(const Sum* sums, const std::uint32_t* squares, std::ptrdiff_t columns, std::ptrdiff_t last,
                             int halfSize, const Use8& use8, const UseInside& useInside) {
  if (columns <= 0) return;
  BoxScan<kShift, Sum> scan(sums, squares, last, halfSize);
  std::ptrdiff_t j = 0;
  for (; j + scan.toLeaving < 0 && j < columns; j += 8)
    scan.clamped8(j, use8);
  j = useInside(scan, j);
  j = scan.groups(j, use8);
  for (; j < columns; j += 8)
    scan.clamped8(j, use8);
}

/// The same with `use8` for every column.
template <BoxShift kShift, class Sum, class Use8>
VLVK_INLINE void scanBoxSums(const Sum* sums, const std::uint32_t* squares, std::ptrdiff_t columns, std::ptrdiff_t last,
                             int halfSize, const Use8& use8) {
  scanBoxSums<kShift>(sums, squares, columns, last, halfSize, use8, [](auto& /*scan*/, std::ptrdiff_t j) { return j; });
}

}  // namespace vlvk::VLVK_TARGET
