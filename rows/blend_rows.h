/// Row loop of the skin-weighted blend. Included by rows/all_rows.h.

#include <cstdint>
#include <cstring>

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

/// See RowLoops::skinWeights.
inline void skinWeights(const std::uint8_t* chroma, std::uint8_t* pixelWeights, int columns,
                        const std::uint8_t* weights, const std::uint8_t* centre) {
  const Table64 table = loadTable64(weights);
  const U8x16 centres = splatPair16(centre[0], centre[1]);
  for (int c = 0; c < columns; c += 16) {
    store(pixelWeights + c, mulPairsShift6(lookup(table, absDifference(loadU8x16(chroma + c), centres))));
  }
}

/// A share of 255 of a weight of 0 .. 64, rounded.
inline std::uint8_t maskedWeight(std::uint8_t weight, std::uint8_t mask) {
  return static_cast<std::uint8_t>((weight * mask + 127) / 255);
}

// From here on plain loops, which compilers turn into vectors: they run only where weights are wanted pixel by pixel.

/// See RowLoops::maskWeights.
inline void maskWeights(const std::uint8_t* __restrict weights, const std::uint8_t* __restrict mask,
                        std::uint8_t* __restrict masked, int columns) {
  for (int c = 0; c < columns; ++c)
    masked[c] = maskedWeight(weights[c], mask[c]);
}

/// See RowLoops::blendByWeights. The sums are kept in 16 bits for the compiler, which would make vectors of 32 bits of
/// them.
inline void blendByWeights(const std::uint8_t* unsmoothed, const std::uint8_t* smoothed, std::uint8_t* out,
                           const std::uint8_t* __restrict weights, int count) {
  for (int i = 0; i < count; ++i) {
    const auto sum = static_cast<std::uint16_t>(unsmoothed[i] * (64 - weights[i]) + smoothed[i] * weights[i]);
    out[i] = static_cast<std::uint8_t>(sum >> 6);
  }
}

/// See RowLoops::repeatForChannels.
inline void repeatForChannels(const std::uint8_t* __restrict weights, std::uint8_t* __restrict repeated, int columns) {
  for (int c = 0; c < columns; ++c) {
    const std::uint32_t four = weights[c] * 0x01010101U;
    std::memcpy(repeated + 4 * c, &four, sizeof four);
  }
}

}  // namespace vlvk::VLVK_TARGET
