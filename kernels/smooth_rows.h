/// Row loops of the smoothing filter: column sums, box sums, pixel formula. Included by targets/all_rows.h.

#include <cstddef>
#include <cstdint>

#include "kernels/pixel_formula.h"

namespace vlvk::VLVK_TARGET {

/// See RowLoops::addRow. Runs a few times for a band, so the multiplication costs nothing.
inline void addRow(std::uint16_t* __restrict sums, std::uint32_t* __restrict squares,
                   const std::uint8_t* __restrict row, std::uint32_t times, int columns) {
  for (int c = 0; c < columns; ++c) {
    const std::uint32_t sample = row[c];
    sums[c] = static_cast<std::uint16_t>(sums[c] + times * sample);
    squares[c] += times * (sample * sample);
  }
}

/// See RowLoops::slideColumnSums.
inline void slideColumnSums(std::uint16_t* sums, std::uint32_t* squares, const std::uint8_t* entering,
                            const std::uint8_t* leaving, int columns) {
  for (int c = 0; c < columns; c += 8) {
    const U8x8 in = loadU8x8(entering + c);
    const U8x8 out = loadU8x8(leaving + c);
    store(sums + c, subWiden(addWiden(load8(sums + c), in), out));
    store(squares + c, subWiden(addWiden(load8(squares + c), squareWiden(in)), squareWiden(out)));
  }
}

/// Constants of the pixel formula, one vector each.
struct FormulaLanes {
  F32x8 inverseArea;
  F32x8 bias;
  F32x8 strength;
};

/// The pixel formula, see PixelFormula. The denominator is 0 or far from the ends of the float range: samples, sums and
/// strengths are integers.
inline U8x8 smoothedPixels(U8x8 samples, F32x8 sums, F32x8 squares, const FormulaLanes& k) {
  const F32x8 mean = mul(sums, k.inverseArea);
  const F32x8 variance = sub(mul(squares, k.inverseArea), mul(mean, mean));
  const F32x8 biased = add(variance, k.bias);
  const F32x8 numerator = add(mul(toFloat(samples), biased), mul(mean, k.strength));
  return truncToLowBytes(mul(numerator, reciprocalEstimateOfModest(add(biased, k.strength))));
}

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

/// The sum of the 2h + 1 elements -h .. h, each index clamped to 0 .. last, modulo 2^32.
template <class T>
inline std::uint32_t firstBoxSum(const T* row, int halfSize, std::ptrdiff_t last) {
  const auto h = static_cast<std::uint32_t>(halfSize);
  const std::ptrdiff_t reached = halfSize < last ? halfSize : last;
  std::uint32_t sum = h * row[0] + (h - static_cast<std::uint32_t>(reached)) * row[last];
  for (std::ptrdiff_t i = 0; i <= reached; ++i)
    sum += row[i];
  return sum;
}

/// See RowLoops::smoothRow, smoothRowAnySums.
///
/// The box of column j is the one of column j - 1 plus column j + h + 1 less column j - h, which leaves it one column
/// to the right of the sample. Runs of 8 columns at both ends clamp their indices, those between do not need to.
template <bool kAnySums>
inline void smoothRow(const std::uint16_t* sums, const std::uint32_t* squares, int columns, const std::uint8_t* source,
                      std::uint8_t* destination, int halfSize, const PixelFormula& formula) {
  if (columns <= 0) return;
  const std::ptrdiff_t last = columns - 1;
  const std::ptrdiff_t reach = halfSize < columns ? halfSize : columns;  // farther indices clamp alike
  const FormulaLanes k{splat8(formula.inverseArea), splat8(formula.bias), splat8(formula.strength)};
  U32x8 carriedSum = splat8(firstBoxSum(sums, halfSize, last));
  U32x8 carriedSquare = splat8(firstBoxSum(squares, halfSize, last));

  const auto smooth8 = [&](std::ptrdiff_t j, U16x8 sumsIn, U16x8 sumsOut, U32x8 squaresIn, U32x8 squaresOut)
      __attribute__((always_inline)) {
    const U32x8 boxSums = add(carriedSum, prefixSum(differenceWiden(sumsIn, sumsOut)));
    const U32x8 boxSquares = add(carriedSquare, prefixSum(sub(squaresIn, squaresOut)));
    carriedSum = splatLast(boxSums);
    carriedSquare = splatLast(boxSquares);
    const U8x8 samples = loadU8x8(source + j);
    if constexpr (kAnySums) {
      store(destination + j, smoothedPixels(samples, toFloat(boxSums), toFloat(boxSquares), k));
    } else {
      store(destination + j, smoothedPixels(samples, toFloatBelow2To31(boxSums), toFloatBelow2To31(boxSquares), k));
    }
  };
  const auto smoothClamped8 = [&](std::ptrdiff_t j) {
    smooth8(j, loadClamped(sums, j + reach + 1, last), loadClamped(sums, j - reach, last),
            loadClamped(squares, j + reach + 1, last), loadClamped(squares, j - reach, last));
  };

  std::ptrdiff_t j = 0;
  for (; j < reach && j < columns; j += 8)
    smoothClamped8(j);
  for (; j + reach + 8 <= last; j += 8) {
    smooth8(j, load8(sums + j + reach + 1), load8(sums + j - reach), load8(squares + j + reach + 1),
            load8(squares + j - reach));
  }
  for (; j < columns; j += 8)
    smoothClamped8(j);
}

}  // namespace vlvk::VLVK_TARGET
