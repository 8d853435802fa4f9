/// Row loop of the skin-weighted blend. Included by rows/all_rows.h.

#include <cstdint>
#include <cstring>

#include "simd/inline.h"

namespace vlvk::VLVK_TARGET {

/// A row pair before and after smoothing, where its blend goes, and its chroma.
struct BlendedPair {
  const std::uint8_t* unsmoothed[2];
  const std::uint8_t* smoothed[2];
  std::uint8_t* out[2];
  const std::uint8_t* chroma;
};

/// Blends `columns` columns, kBlendColumns or more.
inline void blendColumns(const BlendedPair& pair, int columns, const std::uint8_t* weights,
                         const std::uint8_t* centre) {
  const BlendedPair rows = pair;  // what is written cannot change these pointers
  const BlendBytes centres = splatBlendPair(centre[0], centre[1]);
  withBlendTable(
      weights, [&](const auto& table) __attribute__((always_inline)) {
        const auto blended = [&](int c) __attribute__((always_inline)) {
          const BlendBytes distances = absDifference(loadBlendBytes(rows.chroma + c), centres);
          return mixBy64ths(loadBlendRows(rows.unsmoothed[0] + c, rows.unsmoothed[1] + c),
                            loadBlendRows(rows.smoothed[0] + c, rows.smoothed[1] + c),
                            mulPairsShift6(lookup(table, distances)));
        };
        const int last = columns - kBlendColumns;
        // These may overlap the columns before them, and what they are made of may be overwritten with those.
        const BlendRows lastOnes = blended(last);
        for (int c = 0; c < last; c += kBlendColumns)
          storeBlendRows(rows.out[0] + c, rows.out[1] + c, blended(c));
        storeBlendRows(rows.out[0] + last, rows.out[1] + last, lastOnes);
      });
}

/// Blends fewer columns, in rows that have kBlendColumns.
inline void blendFewColumns(const BlendedPair& rows, int columns, const std::uint8_t* weights,
                            const std::uint8_t* centre) {
  std::uint8_t few[5][kBlendColumns] = {};
  const std::uint8_t* sources[5] = {rows.unsmoothed[0], rows.unsmoothed[1], rows.smoothed[0], rows.smoothed[1],
                                    rows.chroma};
  for (int i = 0; i < 5; ++i) {
    for (int c = 0; c < columns; ++c)
      few[i][c] = sources[i][c];
  }
  blendColumns({{few[0], few[1]}, {few[2], few[3]}, {few[2], few[3]}, few[4]}, kBlendColumns, weights, centre);
  for (int i = 0; i < 2; ++i) {
    for (int c = 0; c < columns; ++c)
      rows.out[i][c] = few[2 + i][c];
  }
}

/// See RowLoops::blendRowPair.
inline void blendRowPair(const std::uint8_t* unsmoothed0, const std::uint8_t* unsmoothed1,
                         const std::uint8_t* smoothed0, const std::uint8_t* smoothed1, std::uint8_t* out0,
                         std::uint8_t* out1, const std::uint8_t* chroma, int columns, const std::uint8_t* weights,
                         const std::uint8_t* centre) {
  const BlendedPair rows = {{unsmoothed0, unsmoothed1}, {smoothed0, smoothed1}, {out0, out1}, chroma};
  const auto blend = columns >= kBlendColumns ? blendColumns : blendFewColumns;
  blend(rows, columns, weights, centre);
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
