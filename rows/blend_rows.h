/// Row loop of the skin-weighted blend. Included by rows/all_rows.h.

#include <cstdint>

namespace vlvk::VLVK_TARGET {

/// Blends one row pair of 8 columns: the last ones of a row whose width is an odd multiple of 8.
inline void blendLast8(const std::uint8_t* unsmoothed, const std::uint8_t* smoothed, std::uint8_t* out,
                       const std::uint8_t* weights) {
  for (int i = 0; i < 8; ++i) {
    out[i] = static_cast<std::uint8_t>((unsmoothed[i] * (64 - weights[i]) + smoothed[i] * weights[i]) >> 6);
  }
}

/// See RowLoops::blendRowPair.
inline void blendRowPair(const std::uint8_t* unsmoothed0, const std::uint8_t* unsmoothed1,
                         const std::uint8_t* smoothed0, const std::uint8_t* smoothed1, std::uint8_t* out0,
                         std::uint8_t* out1, const std::uint8_t* chroma, int columns, const std::uint8_t* weights,
                         const std::uint8_t* centre) {
  const Table64 table = loadTable64(weights);
  const U8x16 centres = splatPair16(centre[0], centre[1]);
  const auto weightsOf = [&](U8x16 pairs) { return mulPairsShift6(lookup(table, absDifference(pairs, centres))); };

  int c = 0;
  for (; c + 16 <= columns; c += 16) {
    storeRows(out0 + c, out1 + c,
              mixBy64ths(loadRows(unsmoothed0 + c, unsmoothed1 + c), loadRows(smoothed0 + c, smoothed1 + c),
                         weightsOf(loadU8x16(chroma + c))));
  }
  if (c < columns) {
    std::uint8_t pairs[16] = {};
    for (int i = 0; i < 8; ++i)
      pairs[i] = chroma[c + i];
    std::uint8_t pixelWeights[16];
    store(pixelWeights, weightsOf(loadU8x16(pairs)));
    blendLast8(unsmoothed0 + c, smoothed0 + c, out0 + c, pixelWeights);
    blendLast8(unsmoothed1 + c, smoothed1 + c, out1 + c, pixelWeights);
  }
}

}  // namespace vlvk::VLVK_TARGET
