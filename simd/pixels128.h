/// Vocabulary operations on row pairs, chroma and pixels, which take one 128-bit vector for each 16 bytes of a row.
/// Made of a target's instructions under plain names, see bytes128.h. scalar.h tells what each operation means.
#ifndef VLVK_SIMD_PIXELS128_H
#define VLVK_SIMD_PIXELS128_H

#include <cstdint>

#include "simd/bytes128.h"
#include "simd/channel_weights.h"

namespace vlvk::VLVK_TARGET {

struct I16x8 {
  V128 v;
};
struct U8x16x2 {
  V128 row[2];
};
struct I16x8x2 {
  V128 row[2];
};
struct Pixels16 {
  V128 four[4];
};
struct Pixels8 {
  V128 four[2];
};

// Skin weights.

/// Factors of 16 columns, widened once for both rows.
VLVK_INLINE TwoV128 wideBytes(V128 v) {
  return {widenLow8(v), widenHigh8(v)};
}
VLVK_INLINE V128 mix8(V128 a, V128 aFactors, V128 b, V128 bFactors) {
  return shiftRight16<6>(add16(mul16(a, aFactors), mul16(b, bFactors)));
}
VLVK_INLINE U8x16x2 mixBy64ths(U8x16x2 a, U8x16x2 b, U8x16 weight) {
  const TwoV128 share = wideBytes(weight.v);
  const TwoV128 rest = wideBytes(sub8(all8(64), weight.v));
  U8x16x2 result;
  for (int r = 0; r < 2; ++r) {
    const TwoV128 from = wideBytes(a.row[r]);
    const TwoV128 to = wideBytes(b.row[r]);
    result.row[r] =
        narrowSat16(mix8(from.low, rest.low, to.low, share.low), mix8(from.high, rest.high, to.high, share.high));
  }
  return result;
}

// Row pairs.

VLVK_INLINE U8x16x2 loadRows(const std::uint8_t* from0, const std::uint8_t* from1) {
  return {{load128(from0), load128(from1)}};
}
VLVK_INLINE void storeRows(std::uint8_t* to0, std::uint8_t* to1, U8x16x2 v) {
  store128(to0, v.row[0]);
  store128(to1, v.row[1]);
}
VLVK_INLINE U8x16x2 splatRows(std::uint8_t value) {
  return {{all8(value), all8(value)}};
}
VLVK_INLINE I16x8x2 bothRows(I16x8 v) {
  return {{v.v, v.v}};
}
VLVK_INLINE I16x8x2 add(I16x8x2 a, I16x8x2 b) {
  return {{add16(a.row[0], b.row[0]), add16(a.row[1], b.row[1])}};
}
VLVK_INLINE I16x8x2 addSat(I16x8x2 a, I16x8x2 b) {
  return {{addSatSigned16(a.row[0], b.row[0]), addSatSigned16(a.row[1], b.row[1])}};
}
VLVK_INLINE I16x8x2 mulWidenLow(U8x16x2 v, std::uint8_t factor) {
  return {{mul16(widenLow8(v.row[0]), all16(factor)), mul16(widenLow8(v.row[1]), all16(factor))}};
}
VLVK_INLINE I16x8x2 mulWidenHigh(U8x16x2 v, std::uint8_t factor) {
  return {{mul16(widenHigh8(v.row[0]), all16(factor)), mul16(widenHigh8(v.row[1]), all16(factor))}};
}
/// The saturating addition cannot change a sum that matters: 32767 stays far above 255.
template <int kBits>
VLVK_INLINE U8x16x2 roundShiftNarrowSat(I16x8x2 low, I16x8x2 high) {
  const V128 half = all16(1 << (kBits - 1));
  U8x16x2 result;
  for (int r = 0; r < 2; ++r) {
    result.row[r] = narrowSat16(shiftRightSigned16<kBits>(addSatSigned16(low.row[r], half)),
                                shiftRightSigned16<kBits>(addSatSigned16(high.row[r], half)));
  }
  return result;
}
VLVK_INLINE void storePixels(std::uint8_t* to0, std::uint8_t* to1, U8x16x2 c0, U8x16x2 c1, U8x16x2 c2, U8x16x2 c3) {
  for (int r = 0; r < 2; ++r) {
    std::uint8_t* to = r == 0 ? to0 : to1;
    const V128 low01 = interleaveLow8(c0.row[r], c1.row[r]);
    const V128 low23 = interleaveLow8(c2.row[r], c3.row[r]);
    const V128 high01 = interleaveHigh8(c0.row[r], c1.row[r]);
    const V128 high23 = interleaveHigh8(c2.row[r], c3.row[r]);
    store128(to, interleaveLow16(low01, low23));
    store128(to + 16, interleaveHigh16(low01, low23));
    store128(to + 32, interleaveLow16(high01, high23));
    store128(to + 48, interleaveHigh16(high01, high23));
  }
}

// Chroma terms.

using ChromaPairs = U8x16;
VLVK_INLINE ChromaPairs loadChromaPairs(const std::uint8_t* from) {
  return loadU8x16(from);
}
VLVK_INLINE I16x8 splatI16(std::int16_t value) {
  return {all16(value)};
}
template <int kFirst, int kSecond>
VLVK_INLINE I16x8 weightedPairs(ChromaPairs v, I16x8 offset) {
  V128 sum = offset.v;
  if constexpr (kFirst != 0) sum = add16(sum, mul16(evenBytes16(v.v), all16(kFirst)));
  if constexpr (kSecond != 0) sum = add16(sum, mul16(oddBytes16(v.v), all16(kSecond)));
  return {sum};
}
struct I16x16 {
  I16x8 low;
  I16x8 high;
};
VLVK_INLINE I16x16 duplicateEach(I16x8 v) {
  return {{interleaveLow16(v.v, v.v)}, {interleaveHigh16(v.v, v.v)}};
}
VLVK_INLINE I16x16 duplicateFours(I16x8 v) {
  return {{twiceLow64(v.v)}, {twiceHigh64(v.v)}};
}

// Pixels to luma and chroma.

VLVK_INLINE Pixels16 loadPixels16(const std::uint8_t* from) {
  return {{load128(from), load128(from + 16), load128(from + 32), load128(from + 48)}};
}
VLVK_INLINE Pixels8 evenPixels(const Pixels16& v) {
  return {{evenWords(v.four[0], v.four[1]), evenWords(v.four[2], v.four[3])}};
}
/// Every digit is shifted to its place in the 32-bit lane of its pixel.
template <int c0, int c2>
VLVK_INLINE void storeColorIndices(std::uint32_t* to, const Pixels16& v) {
  static_assert(c0 + c2 == 2);
  for (int i = 0; i < 4; ++i) {
    const V128 pixels = v.four[i];
    const V128 c0Digit = and128(shiftRight32 < c0 == 0 ? 2 : 18 > (pixels), all32(0x3F));
    const V128 c1Digit = and128(shiftRight32<4>(pixels), all32(0xFC0));
    const V128 c2Digit = and128(c0 == 0 ? shiftRight32<6>(pixels) : shiftLeft32<10>(pixels), all32(0x3F000));
    store128(to + 4 * i, or128(or128(c0Digit, c1Digit), c2Digit));
  }
}
/// Four sums in 32-bit lanes: channels 0 and 2, then 1 and alpha, as pairs of 16 bits for the multiply-add.
template <ChannelWeights k>
VLVK_INLINE V128 weightedSums4(V128 pixels) {
  const V128 outer = pairProductSums32(
      evenBytes16(pixels), all32(static_cast<std::uint32_t>(k.c2) << 16 | (static_cast<std::uint32_t>(k.c0) & 0xFFFF)));
  const V128 inner = pairProductSums32(oddBytes16(pixels), all32(static_cast<std::uint32_t>(k.c1) & 0xFFFF));
  return shiftRight32<8>(add32(add32(outer, inner), all32(static_cast<std::uint32_t>(k.bias))));
}
template <ChannelWeights k>
VLVK_INLINE V128 weightedSums8(V128 four0, V128 four1) {
  return narrowSat32(weightedSums4<k>(four0), weightedSums4<k>(four1));
}
template <ChannelWeights k>
VLVK_INLINE U8x16 weightedChannels(const Pixels16& v) {
  return {narrowSat16(weightedSums8<k>(v.four[0], v.four[1]), weightedSums8<k>(v.four[2], v.four[3]))};
}
template <ChannelWeights kFirst, ChannelWeights kSecond>
VLVK_INLINE void storeWeightedPairs(std::uint8_t* to, const Pixels8& v) {
  const V128 first = weightedSums8<kFirst>(v.four[0], v.four[1]);
  const V128 second = weightedSums8<kSecond>(v.four[0], v.four[1]);
  store128(to, or128(first, shiftLeft16<8>(second)));
}

// Pixels changed.

VLVK_INLINE void store(std::uint8_t* to, const Pixels16& v) {
  for (int i = 0; i < 4; ++i)
    store128(to + 16 * i, v.four[i]);
}
/// Byte i of `v` to the first three bytes of pixel i.
VLVK_INLINE Pixels16 toChannels(U8x16 v) {
  const V128 colors = all32(0x00FFFFFF);
  const V128 low = interleaveLow8(v.v, v.v);
  const V128 high = interleaveHigh8(v.v, v.v);
  return {{and128(interleaveLow16(low, low), colors), and128(interleaveHigh16(low, low), colors),
           and128(interleaveLow16(high, high), colors), and128(interleaveHigh16(high, high), colors)}};
}
VLVK_INLINE Pixels16 shiftedChannels(const Pixels16& v, U8x16 up, U8x16 down) {
  const Pixels16 raise = toChannels(up);
  const Pixels16 lower = toChannels(down);
  Pixels16 shifted;
  for (int i = 0; i < 4; ++i)
    shifted.four[i] = subSat8(addSat8(v.four[i], raise.four[i]), lower.four[i]);
  return shifted;
}
VLVK_INLINE Pixels16 withOpaqueAlpha(const Pixels16& v) {
  Pixels16 solid;
  for (int i = 0; i < 4; ++i)
    solid.four[i] = or128(v.four[i], all32(0xFF000000U));
  return solid;
}
VLVK_INLINE Pixels8 averagedBlocks(const Pixels16& upper, const Pixels16& lower) {
  V128 rows[4];
  for (int i = 0; i < 4; ++i)
    rows[i] = average8(upper.four[i], lower.four[i]);
  return {{average8(evenWords(rows[0], rows[1]), oddWords(rows[0], rows[1])),
           average8(evenWords(rows[2], rows[3]), oddWords(rows[2], rows[3]))}};
}

}  // namespace vlvk::VLVK_TARGET

#endif
