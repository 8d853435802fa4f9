/// Row loops of the evening of skin tone. Builds on smooth_rows.h. Included by rows/all_rows.h.

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "rows/colorimetry.h"
#include "rows/pixel_orders.h"
#include "rows/tone_formula.h"

namespace vlvk::VLVK_TARGET {

/// See RowLoops::averageBlocks.
inline void averageBlocks(const std::uint8_t* __restrict luma0, const std::uint8_t* __restrict luma1,
                          std::uint8_t* __restrict means, int count) {
  for (int i = 0; i < count; ++i) {
    const int sum = luma0[2 * i] + luma0[2 * i + 1] + luma1[2 * i] + luma1[2 * i + 1];
    means[i] = static_cast<std::uint8_t>((sum + 2) >> 2);
  }
}

/// Chroma of 8 samples, and how far it is from the mean of the box.
struct ChromaLanes {
  F32x8 samples;
  F32x8 distance;
};

inline ChromaLanes chromaLanes(const std::uint8_t* samples, const std::uint32_t* sums, F32x8 inverseArea) {
  const F32x8 exact = toFloat(loadU8x8(samples));
  return {exact, sub(mul(toFloatBelow2To31(load8(sums)), inverseArea), exact)};
}

/// A sample moved by a part of its distance, rounded.
inline U8x8 moved(const ChromaLanes& chroma, F32x8 part) {
  return truncToLowBytes(add(addProduct(chroma.samples, chroma.distance, part), splat8(0.5F)));
}

/// See RowLoops::evenChroma.
template <ContrastRule kRule>
inline void evenChroma(const ToneRow& row, std::uint8_t* pairs, const ToneFormula& formula) {
  const FormulaLanes k = formulaLanes(formula.luma);
  const F32x8 amount = splat8(formula.amount);
  const F32x8 farthestOfBias = splat8(formula.farthestOfBias);
  const F32x8 one = splat8(1.0F);
  const F32x8 zero = splat8(0.0F);
  const std::ptrdiff_t n = row.count;
  for (std::ptrdiff_t i = 0; i < n; i += 8) {
    const F32x8 mean = mul(toFloatBelow2To31(load8(row.sums + i)), k.inverseArea);
    const F32x8 meanSquare = mul(mean, mean);
    const F32x8 variance = sub(mul(toFloatBelow2To31(load8(row.squares + i)), k.inverseArea), meanSquare);
    const LitConstants lit = litConstants<kRule>(mean, meanSquare, k);
    const F32x8 whole = add(add(variance, lit.bias), lit.strength);
    const ChromaLanes first = chromaLanes(row.samples + n + i, row.sums + n + i, k.inverseArea);
    const ChromaLanes second = chromaLanes(row.samples + 2 * n + i, row.sums + 2 * n + i, k.inverseArea);
    const F32x8 square = addProduct(mul(first.distance, first.distance), second.distance, second.distance);
    const F32x8 farthest = reciprocalEstimateOfNormal(mul(lit.bias, farthestOfBias));
    const F32x8 near = max(subProduct(one, square, farthest), zero);
    const F32x8 part = mul(mul(lit.strength, reciprocalEstimateOfNormal(whole)), mul(mul(near, near), amount));
    store(pairs + 2 * i, interleaved(moved(first, part), moved(second, part)));
  }
}

/// See RowLoops::mixPairs.
inline void mixPairs(const std::uint8_t* pairs, const std::uint8_t* __restrict changed,
                     const std::uint8_t* __restrict weights0, const std::uint8_t* __restrict weights1,
                     std::uint8_t* mixed, int columns) {
  for (int i = 0; i < columns; i += 2) {
    const int weight = weights0[i] + weights0[i + 1] + weights1[i] + weights1[i + 1];
    for (int j = i; j < i + 2; ++j)
      mixed[j] = static_cast<std::uint8_t>((pairs[j] * (256 - weight) + changed[j] * weight + 128) >> 8);
  }
}

/// See RowLoops::shiftChroma.
template <PixelOrder kPixels>
inline void shiftChroma(const std::uint8_t* __restrict pairs, const std::uint8_t* __restrict newPairs,
                        std::uint8_t* __restrict pixels, int columns) {
  constexpr YuvToRgb k = kYuvToRgb[kBt601Limited];
  constexpr int kHalf = 1 << (kYuvToRgbBits - 1);
  constexpr int kRed = kPixels == kRgba ? 0 : 2;
  for (int i = 0; i < columns; i += 2) {
    const int u = newPairs[i] - pairs[i];
    const int v = newPairs[i + 1] - pairs[i + 1];
    const int red = (k.redV * v + kHalf) >> kYuvToRgbBits;
    const int green = (k.greenU * u + k.greenV * v + kHalf) >> kYuvToRgbBits;
    const int blue = (k.blueU * u + kHalf) >> kYuvToRgbBits;
    for (std::uint8_t* pixel : {pixels + 4 * i, pixels + 4 * i + 4}) {
      pixel[kRed] = static_cast<std::uint8_t>(std::clamp(pixel[kRed] + red, 0, 255));
      pixel[1] = static_cast<std::uint8_t>(std::clamp(pixel[1] + green, 0, 255));
      pixel[2 - kRed] = static_cast<std::uint8_t>(std::clamp(pixel[2 - kRed] + blue, 0, 255));
    }
  }
}

}  // namespace vlvk::VLVK_TARGET
