/// The columns of the blend of a row pair on targets with registers of up to 16 bytes, and what their operations mean
/// on all. Included by the targets' headers.
#ifndef VLVK_SIMD_BLEND_BY_16_H
#define VLVK_SIMD_BLEND_BY_16_H

#include <cstdint>

#include "simd/inline.h"

namespace vlvk::VLVK_TARGET {

/// kBlendColumns bytes of a row, and as many of each of two rows. A target may have more columns than 16: the
/// operations that the blend applies to them are those on U8x16 and U8x16x2.
using BlendBytes = U8x16;
using BlendRows = U8x16x2;
inline constexpr int kBlendColumns = 16;

VLVK_INLINE BlendBytes loadBlendBytes(const std::uint8_t* from) {
  return loadU8x16(from);
}
VLVK_INLINE BlendRows loadBlendRows(const std::uint8_t* from0, const std::uint8_t* from1) {
  return loadRows(from0, from1);
}
VLVK_INLINE void storeBlendRows(std::uint8_t* to0, std::uint8_t* to1, BlendRows v) {
  storeRows(to0, to1, v);
}
/// first, second, first, second ...
VLVK_INLINE BlendBytes splatBlendPair(std::uint8_t first, std::uint8_t second) {
  return splatPair16(first, second);
}
/// Calls `use` with the table of these 64 bytes, in a form that suits them: some targets look up fewer entries faster.
template <class Use>
VLVK_INLINE void withBlendTable(const std::uint8_t* from, const Use& use) {
  use(loadTable64(from));
}

}  // namespace vlvk::VLVK_TARGET

#endif
