/// Row loops on chroma: pairs made of planes and back, and other colorimetry. Included by rows/all_rows.h.

#include <algorithm>
#include <cstdint>

#include "rows/yuv_matrix.h"

namespace vlvk::VLVK_TARGET {

/// See RowLoops::interleave.
inline void interleave(const std::uint8_t* first, const std::uint8_t* second, std::uint8_t* pairs, int count) {
  for (; count > 0; count -= 8) {
    store(pairs, interleaved(loadU8x8(first), loadU8x8(second)));
    first += 8;
    second += 8;
    pairs += 16;
  }
}

/// See RowLoops::separate.
inline void separate(const std::uint8_t* pairs, std::uint8_t* first, std::uint8_t* second, int count) {
  for (; count > 0; count -= 8) {
    const U8x16 both = loadU8x16(pairs);
    store(first, evenBytes(both));
    store(second, oddBytes(both));
    pairs += 16;
    first += 8;
    second += 8;
  }
}

/// A sum of weighted samples as a sample.
inline std::uint8_t sampleOf(std::int32_t sum, int offset) {
  constexpr std::int32_t kHalf = 1 << (kYuvMatrixBits - 1);
  return static_cast<std::uint8_t>(std::clamp(((sum + kHalf) >> kYuvMatrixBits) + offset, 0, 255));
}

/// See RowLoops::convertLuma.
inline void convertLuma(const std::uint8_t* __restrict luma, const std::uint8_t* __restrict pairs,
                        std::uint8_t* __restrict destination, int columns, const YuvMatrix& matrix) {
  for (int i = 0; i < columns; i += 2) {
    const std::int32_t chroma =
        matrix.lumaOfFirst * (pairs[i] - kChromaOffset) + matrix.lumaOfSecond * (pairs[i + 1] - kChromaOffset);
    destination[i] = sampleOf(matrix.luma * (luma[i] - matrix.lumaOffset) + chroma, matrix.newLumaOffset);
    destination[i + 1] = sampleOf(matrix.luma * (luma[i + 1] - matrix.lumaOffset) + chroma, matrix.newLumaOffset);
  }
}

/// See RowLoops::convertChroma.
inline void convertChroma(const std::uint8_t* __restrict pairs, std::uint8_t* __restrict destination, int columns,
                          const YuvMatrix& matrix) {
  for (int i = 0; i < columns; i += 2) {
    const std::int32_t first = pairs[i] - kChromaOffset;
    const std::int32_t second = pairs[i + 1] - kChromaOffset;
    destination[i] = sampleOf(matrix.firstOfFirst * first + matrix.firstOfSecond * second, kChromaOffset);
    destination[i + 1] = sampleOf(matrix.secondOfFirst * first + matrix.secondOfSecond * second, kChromaOffset);
  }
}

}  // namespace vlvk::VLVK_TARGET
