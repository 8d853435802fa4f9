/// The vector vocabulary in plain C++: the exact meaning of every operation, and the target of processors without a
/// header of their own.
///
/// Names say what an operation does to lanes: `Widen` results have twice the bits, plain `add`, `sub`, `mul` wrap,
/// `Sat` saturates, `Narrow` halves the bits. Types are unsigned (U), signed (I) or float (F), named bits x lanes; a
/// trailing x2 means two picture rows, handled alike.
///
/// Lane order is memory order. Loads and stores need no alignment.
#ifndef VLVK_SIMD_SCALAR_H
#define VLVK_SIMD_SCALAR_H

#include <cstdint>
#include <cstring>
#include <type_traits>

#include "base/arm_math.h"
#include "simd/channel_weights.h"
#include "simd/inside_columns.h"
#include "simd/reciprocal_estimate.h"

#ifndef VLVK_TARGET
#define VLVK_TARGET scalar
#endif

namespace vlvk::VLVK_TARGET {

template <class T, int kLanes>
struct Lanes {
  T lane[kLanes];
};

using U8x8 = Lanes<std::uint8_t, 8>;
using U8x16 = Lanes<std::uint8_t, 16>;
using U16x8 = Lanes<std::uint16_t, 8>;
using I16x8 = Lanes<std::int16_t, 8>;
using U32x8 = Lanes<std::uint32_t, 8>;
using F32x8 = Lanes<float, 8>;

/// The same columns of two rows.
template <class T>
struct TwoRows {
  T row[2];
};
using U8x16x2 = TwoRows<U8x16>;
using I16x8x2 = TwoRows<I16x8>;

/// 16 or 8 pixels of 4 bytes, channels still interleaved.
using Pixels16 = Lanes<std::uint8_t, 64>;
using Pixels8 = Lanes<std::uint8_t, 32>;

/// Applies `f` to each lane number.
template <class Result, int kLanes = static_cast<int>(sizeof(Result::lane) / sizeof(Result{}.lane[0])), class F>
inline Result forLanes(F f) {
  using T = std::remove_cvref_t<decltype(Result{}.lane[0])>;
  Result result;
  for (int i = 0; i < kLanes; ++i)
    result.lane[i] = static_cast<T>(f(i));
  return result;
}

// Memory.

template <class V, class T>
inline V loadLanes(const T* from) {
  V v;
  std::memcpy(v.lane, from, sizeof v.lane);
  return v;
}
template <class V, class T>
inline void storeLanes(T* to, const V& v) {
  std::memcpy(to, v.lane, sizeof v.lane);
}

inline U8x8 loadU8x8(const std::uint8_t* from) {
  return loadLanes<U8x8>(from);
}
inline U8x16 loadU8x16(const std::uint8_t* from) {
  return loadLanes<U8x16>(from);
}
inline U16x8 load8(const std::uint16_t* from) {
  return loadLanes<U16x8>(from);
}
inline U32x8 load8(const std::uint32_t* from) {
  return loadLanes<U32x8>(from);
}
inline F32x8 load8(const float* from) {
  return loadLanes<F32x8>(from);
}
/// The low halves of eight 64-bit elements.
inline U32x8 loadLow8(const std::uint64_t* from) {
  return forLanes<U32x8>([&](int i) { return from[i]; });
}
inline void store(std::uint8_t* to, U8x8 v) {
  storeLanes(to, v);
}
inline void store(std::uint8_t* to, U8x16 v) {
  storeLanes(to, v);
}
inline void store(std::uint16_t* to, U16x8 v) {
  storeLanes(to, v);
}
inline void store(std::uint32_t* to, U32x8 v) {
  storeLanes(to, v);
}
inline void store(float* to, F32x8 v) {
  storeLanes(to, v);
}

inline U16x8 splat8(std::uint16_t value) {
  return forLanes<U16x8>([&](int) { return value; });
}
inline U32x8 splat8(std::uint32_t value) {
  return forLanes<U32x8>([&](int) { return value; });
}
inline F32x8 splat8(float value) {
  return forLanes<F32x8>([&](int) { return value; });
}

// Running sums.

/// sums + a - b.
inline U16x8 addDifference(U16x8 sums, U8x8 a, U8x8 b) {
  return forLanes<U16x8>([&](int i) { return sums.lane[i] + a.lane[i] - b.lane[i]; });
}
/// sums + a * a - b * b.
inline U32x8 addSquareDifference(U32x8 sums, U8x8 a, U8x8 b) {
  return forLanes<U32x8>([&](int i) {
    const auto difference = a.lane[i] * a.lane[i] - b.lane[i] * b.lane[i];
    return sums.lane[i] + static_cast<std::uint32_t>(difference);
  });
}

/// Adds a - b, and a * a - b * b, to the sums of 16 columns in memory.
inline void slideSums16(std::uint16_t* sums, U8x16 a, U8x16 b) {
  for (int i = 0; i < 16; ++i)
    sums[i] = static_cast<std::uint16_t>(sums[i] + a.lane[i] - b.lane[i]);
}
inline void slideSquares16(std::uint32_t* squares, U8x16 a, U8x16 b) {
  for (int i = 0; i < 16; ++i)
    squares[i] += static_cast<std::uint32_t>(a.lane[i] * a.lane[i] - b.lane[i] * b.lane[i]);
}

/// a - b, sign-extended to 32 bits.
inline U32x8 differenceWiden(U16x8 a, U16x8 b) {
  return forLanes<U32x8>([&](int i) { return a.lane[i] - b.lane[i]; });
}
inline U32x8 add(U32x8 a, U32x8 b) {
  return forLanes<U32x8>([&](int i) { return a.lane[i] + b.lane[i]; });
}
inline U32x8 sub(U32x8 a, U32x8 b) {
  return forLanes<U32x8>([&](int i) { return a.lane[i] - b.lane[i]; });
}
/// Lanes 0 .. 3 of a, lanes 4 .. 7 of b.
inline U32x8 joinHalves(U32x8 a, U32x8 b) {
  return forLanes<U32x8>([&](int i) { return i < 4 ? a.lane[i] : b.lane[i]; });
}
/// Lane i becomes the sum of lanes 0 .. i and of `before`, whose lanes are all the same.
inline U32x8 prefixSum(U32x8 before, U32x8 v) {
  for (int i = 1; i < 8; ++i)
    v.lane[i] += v.lane[i - 1];
  return add(before, v);
}
/// The last lane, in every lane.
inline U32x8 splatLast(U32x8 v) {
  return splat8(v.lane[7]);
}

/// What the box sums of 16 columns gain on their left neighbours, for 8 pairs of columns.
struct PairSteps {
  U32x8 pair;  ///< both columns together
  U32x8 odd;   ///< the second (odd) column alone
};
/// entering - leaving of 16 columns. The differences must fit the sums' width with their sign, those of a pair together
/// 32 bits.
template <class Sum>
inline PairSteps pairSteps(const Sum* entering, const Sum* leaving) {
  using Difference = std::make_signed_t<Sum>;
  const auto step = [&](int i) { return static_cast<Difference>(static_cast<Sum>(entering[i] - leaving[i])); };
  return {forLanes<U32x8>([&](int i) { return static_cast<std::int64_t>(step(2 * i)) + step(2 * i + 1); }),
          forLanes<U32x8>([&](int i) { return step(2 * i + 1); })};
}

inline constexpr InsideColumns kInsideColumns = kInRuns;

// Single precision. Every operation rounds by itself.

/// Any 32-bit value, rounded to nearest.
inline F32x8 toFloat(U32x8 v) {
  return forLanes<F32x8>([&](int i) { return static_cast<float>(v.lane[i]); });
}
/// Values below 2^31 only.
inline F32x8 toFloatBelow2To31(U32x8 v) {
  return forLanes<F32x8>([&](int i) { return static_cast<float>(static_cast<std::int32_t>(v.lane[i])); });
}
inline F32x8 toFloat(U8x8 v) {
  return forLanes<F32x8>([&](int i) { return static_cast<float>(v.lane[i]); });
}
inline F32x8 toFloatEven(U8x16 v) {
  return forLanes<F32x8>([&](int i) { return static_cast<float>(v.lane[2 * i]); });
}
inline F32x8 toFloatOdd(U8x16 v) {
  return forLanes<F32x8>([&](int i) { return static_cast<float>(v.lane[2 * i + 1]); });
}
inline F32x8 add(F32x8 a, F32x8 b) {
  return forLanes<F32x8>([&](int i) { return a.lane[i] + b.lane[i]; });
}
inline F32x8 sub(F32x8 a, F32x8 b) {
  return forLanes<F32x8>([&](int i) { return a.lane[i] - b.lane[i]; });
}
inline F32x8 mul(F32x8 a, F32x8 b) {
  return forLanes<F32x8>([&](int i) { return a.lane[i] * b.lane[i]; });
}
inline F32x8 div(F32x8 a, F32x8 b) {
  return forLanes<F32x8>([&](int i) { return a.lane[i] / b.lane[i]; });
}
/// The smaller and the larger of numbers.
inline F32x8 min(F32x8 a, F32x8 b) {
  return forLanes<F32x8>([&](int i) { return a.lane[i] < b.lane[i] ? a.lane[i] : b.lane[i]; });
}
inline F32x8 max(F32x8 a, F32x8 b) {
  return forLanes<F32x8>([&](int i) { return a.lane[i] > b.lane[i] ? a.lane[i] : b.lane[i]; });
}
/// sum + a * b and sum - a * b; the product is rounded, then the result.
inline F32x8 addProduct(F32x8 sum, F32x8 a, F32x8 b) {
  return add(sum, mul(a, b));
}
inline F32x8 subProduct(F32x8 sum, F32x8 a, F32x8 b) {
  return sub(sum, mul(a, b));
}
/// The ARM reciprocal estimate, for every input.
inline F32x8 reciprocalEstimate(F32x8 v) {
  return forLanes<F32x8>([&](int i) { return vlvk::reciprocalEstimate(v.lane[i]); });
}
/// The same for zeros and normal numbers below 2^126 in magnitude only: without the special cases it may be cheaper.
inline F32x8 reciprocalEstimateOfNormal(F32x8 v) {
  return reciprocalEstimate(v);
}
/// Truncates to unsigned 32-bit integers (negative and NaN: 0, too large: 2^32 - 1) and keeps their low 8 bits.
inline U8x8 truncToLowBytes(F32x8 v) {
  return forLanes<U8x8>([&](int i) { return truncSaturate<std::uint32_t>(v.lane[i]); });
}
/// Adds 1/2 exactly, truncates to signed 32-bit integers (too small: -2^31, too large: 2^31 - 1, NaN: 0) and keeps
/// their low 8 bits.
inline U8x8 roundHalfUpToLowBytes(F32x8 v) {
  return forLanes<U8x8>([&](int i) { return truncSaturate<std::int32_t>(static_cast<double>(v.lane[i]) + 0.5); });
}
/// truncToLowBytes for even and odd columns, 0 or more and below 2^15.
inline U8x16 truncToLowBytes(F32x8 even, F32x8 odd) {
  return forLanes<U8x16>(
      [&](int i) { return static_cast<std::int32_t>(i % 2 == 0 ? even.lane[i / 2] : odd.lane[i / 2]); });
}

// Skin weights. Byte pairs are chroma pairs.

/// first, second, first, second ...
inline U8x16 splatPair16(std::uint8_t first, std::uint8_t second) {
  return forLanes<U8x16>([&](int i) { return i % 2 == 0 ? first : second; });
}
inline U8x16 absDifference(U8x16 a, U8x16 b) {
  return forLanes<U8x16>([&](int i) { return a.lane[i] > b.lane[i] ? a.lane[i] - b.lane[i] : b.lane[i] - a.lane[i]; });
}

/// A lookup table of 64 bytes.
struct Table64 {
  std::uint8_t entry[64];
};
inline Table64 loadTable64(const std::uint8_t* from) {
  Table64 table;
  std::memcpy(table.entry, from, sizeof table.entry);
  return table;
}
/// table[index], 0 for an index of 64 and more.
inline U8x16 lookup(const Table64& table, U8x16 index) {
  return forLanes<U8x16>([&](int i) { return index.lane[i] < 64 ? table.entry[index.lane[i]] : 0; });
}
/// (first * second) >> 6 of each byte pair, put back into both bytes of the pair. Both are at most 64.
inline U8x16 mulPairsShift6(U8x16 v) {
  return forLanes<U8x16>([&](int i) { return (v.lane[i & ~1] * v.lane[i | 1]) >> 6; });
}
/// (a * (64 - weight) + b * weight) >> 6, weight at most 64, the same for both rows.
inline U8x16x2 mixBy64ths(U8x16x2 a, U8x16x2 b, U8x16 weight) {
  U8x16x2 result;
  for (int r = 0; r < 2; ++r) {
    result.row[r] = forLanes<U8x16>(
        [&](int i) { return (a.row[r].lane[i] * (64 - weight.lane[i]) + b.row[r].lane[i] * weight.lane[i]) >> 6; });
  }
  return result;
}

// Row pairs.

inline U8x16x2 loadRows(const std::uint8_t* from0, const std::uint8_t* from1) {
  return {{loadU8x16(from0), loadU8x16(from1)}};
}
inline void storeRows(std::uint8_t* to0, std::uint8_t* to1, U8x16x2 v) {
  store(to0, v.row[0]);
  store(to1, v.row[1]);
}
inline U8x16x2 splatRows(std::uint8_t value) {
  const U8x16 row = forLanes<U8x16>([&](int) { return value; });
  return {{row, row}};
}
/// The chroma row of two luma rows: 8 byte pairs.
using ChromaPairs = U8x16;
inline ChromaPairs loadChromaPairs(const std::uint8_t* from) {
  return loadU8x16(from);
}
/// The same values in both rows.
inline I16x8x2 bothRows(I16x8 v) {
  return {{v, v}};
}

// Chroma terms: one 16-bit lane for each of 8 byte pairs.

inline I16x8 splatI16(std::int16_t value) {
  return forLanes<I16x8>([&](int) { return value; });
}
/// offset + kFirst * first byte + kSecond * second byte of each pair, wrapping.
template <int kFirst, int kSecond>
inline I16x8 weightedPairs(ChromaPairs v, I16x8 offset) {
  return forLanes<I16x8>([&](int i) { return offset.lane[i] + kFirst * v.lane[2 * i] + kSecond * v.lane[2 * i + 1]; });
}
/// 16 columns, the first and the last 8.
struct I16x16 {
  I16x8 low;
  I16x8 high;
};
/// Lanes 0, 0, 1, 1 ... 7, 7.
inline I16x16 duplicateEach(I16x8 v) {
  return {forLanes<I16x8>([&](int i) { return v.lane[i / 2]; }),
          forLanes<I16x8>([&](int i) { return v.lane[4 + i / 2]; })};
}
/// Lanes 0 .. 3 twice, then lanes 4 .. 7 twice.
inline I16x16 duplicateFours(I16x8 v) {
  return {forLanes<I16x8>([&](int i) { return v.lane[i % 4]; }),
          forLanes<I16x8>([&](int i) { return v.lane[4 + i % 4]; })};
}

// Luma of two rows to pixels.

/// The first 8 columns times `factor`.
inline I16x8x2 mulWidenLow(U8x16x2 v, std::uint8_t factor) {
  return {{forLanes<I16x8>([&](int i) { return v.row[0].lane[i] * factor; }),
           forLanes<I16x8>([&](int i) { return v.row[1].lane[i] * factor; })}};
}
/// The last 8 columns times `factor`.
inline I16x8x2 mulWidenHigh(U8x16x2 v, std::uint8_t factor) {
  return {{forLanes<I16x8>([&](int i) { return v.row[0].lane[8 + i] * factor; }),
           forLanes<I16x8>([&](int i) { return v.row[1].lane[8 + i] * factor; })}};
}
inline I16x8x2 add(I16x8x2 a, I16x8x2 b) {
  I16x8x2 result;
  for (int r = 0; r < 2; ++r)
    result.row[r] = forLanes<I16x8>([&](int i) { return a.row[r].lane[i] + b.row[r].lane[i]; });
  return result;
}
/// Sums out of range become the nearest end of it.
inline I16x8x2 addSat(I16x8x2 a, I16x8x2 b) {
  I16x8x2 result;
  for (int r = 0; r < 2; ++r) {
    result.row[r] = forLanes<I16x8>([&](int i) {
      const int sum = a.row[r].lane[i] + b.row[r].lane[i];
      return sum < INT16_MIN ? INT16_MIN : sum > INT16_MAX ? INT16_MAX : sum;
    });
  }
  return result;
}
/// (v + 2^(kBits - 1)) >> kBits without overflow, clamped to 0 .. 255; `low` gives the first 8 columns, `high` the
/// last.
template <int kBits>
inline U8x16x2 roundShiftNarrowSat(I16x8x2 low, I16x8x2 high) {
  U8x16x2 result;
  for (int r = 0; r < 2; ++r) {
    result.row[r] = forLanes<U8x16>([&](int i) {
      const int sum = i < 8 ? low.row[r].lane[i] : high.row[r].lane[i - 8];
      const int value = (sum + (1 << (kBits - 1))) >> kBits;
      return value < 0 ? 0 : value > 255 ? 255 : value;
    });
  }
  return result;
}
/// Writes 16 pixels of each of two rows, channel c0 in the lowest byte.
inline void storePixels(std::uint8_t* to0, std::uint8_t* to1, U8x16x2 c0, U8x16x2 c1, U8x16x2 c2, U8x16x2 c3) {
  for (int r = 0; r < 2; ++r) {
    std::uint8_t* to = r == 0 ? to0 : to1;
    for (int i = 0; i < 16; ++i) {
      to[4 * i] = c0.row[r].lane[i];
      to[4 * i + 1] = c1.row[r].lane[i];
      to[4 * i + 2] = c2.row[r].lane[i];
      to[4 * i + 3] = c3.row[r].lane[i];
    }
  }
}

// Pixels to luma and chroma.

inline Pixels16 loadPixels16(const std::uint8_t* from) {
  return loadLanes<Pixels16>(from);
}
/// Pixels 0, 2, 4 ... 14.
inline Pixels8 evenPixels(const Pixels16& v) {
  return forLanes<Pixels8>([&](int i) { return v.lane[8 * (i / 4) + i % 4]; });
}
/// Weighted channels of pixel i, see ChannelWeights. The sum stays within 0 .. 65535.
template <ChannelWeights k, class Pixels>
inline std::uint8_t weightedPixel(const Pixels& v, int i) {
  return static_cast<std::uint8_t>(
      (k.c0 * v.lane[4 * i] + k.c1 * v.lane[4 * i + 1] + k.c2 * v.lane[4 * i + 2] + k.bias) >> 8);
}
template <ChannelWeights k>
inline U8x16 weightedChannels(const Pixels16& v) {
  return forLanes<U8x16>([&](int i) { return weightedPixel<k>(v, i); });
}
/// Writes first, second, first, second ... of the pixels' channels weighted in two ways. Both biases are the same;
/// without them the sums fit 16 bits with their sign.
template <ChannelWeights kFirst, ChannelWeights kSecond>
inline void storeWeightedPairs(std::uint8_t* to, const Pixels8& v) {
  for (int i = 0; i < 8; ++i) {
    to[2 * i] = weightedPixel<kFirst>(v, i);
    to[2 * i + 1] = weightedPixel<kSecond>(v, i);
  }
}
/// Writes, for each of 16 pixels, the number made of the upper 6 bits of its first three channels; channel c0 is the
/// lowest digit, c1 (the middle one) the next, c2 the highest.
template <int c0, int c2>
inline void storeColorIndices(std::uint32_t* to, const Pixels16& v) {
  for (int i = 0; i < 16; ++i) {
    const auto digit = [&](int channel) { return static_cast<std::uint32_t>(v.lane[4 * i + channel] >> 2); };
    to[i] = digit(c0) | digit(1) << 6 | digit(c2) << 12;
  }
}

// Pixels changed, and chroma in pairs and planes.

/// a - b, or 0 where that is negative.
inline U8x16 subSat(U8x16 a, U8x16 b) {
  return forLanes<U8x16>([&](int i) { return a.lane[i] > b.lane[i] ? a.lane[i] - b.lane[i] : 0; });
}
inline void store(std::uint8_t* to, const Pixels16& v) {
  storeLanes(to, v);
}
/// Each channel of pixel i plus up[i], at most 255, then less down[i], at least 0; the fourth channel stays.
inline Pixels16 shiftedChannels(const Pixels16& v, U8x16 up, U8x16 down) {
  return forLanes<Pixels16>([&](int i) {
    if (i % 4 == 3) return int{v.lane[i]};
    const int raised = v.lane[i] + up.lane[i / 4];
    const int shifted = (raised > 255 ? 255 : raised) - down.lane[i / 4];
    return shifted < 0 ? 0 : shifted;
  });
}
/// The same pixels, the fourth channel being 255.
inline Pixels16 withOpaqueAlpha(const Pixels16& v) {
  return forLanes<Pixels16>([&](int i) { return i % 4 == 3 ? std::uint8_t{255} : v.lane[i]; });
}
/// The mean of each block of 2 x 2 pixels, of two rows of 16: first of the rows, then of the columns, halves rounded up
/// each time.
inline Pixels8 averagedBlocks(const Pixels16& upper, const Pixels16& lower) {
  const auto rows = [&](int i) { return (upper.lane[i] + lower.lane[i] + 1) >> 1; };
  return forLanes<Pixels8>([&](int i) {
    const int left = 8 * (i / 4) + i % 4;
    return (rows(left) + rows(left + 4) + 1) >> 1;
  });
}
/// a0, b0, a1, b1 ...
inline U8x16 interleaved(U8x8 a, U8x8 b) {
  return forLanes<U8x16>([&](int i) { return i % 2 == 0 ? a.lane[i / 2] : b.lane[i / 2]; });
}
/// Bytes 0, 2, 4 ... and 1, 3, 5 ...
inline U8x8 evenBytes(U8x16 v) {
  return forLanes<U8x8>([&](int i) { return v.lane[2 * i]; });
}
inline U8x8 oddBytes(U8x16 v) {
  return forLanes<U8x8>([&](int i) { return v.lane[2 * i + 1]; });
}

}  // namespace vlvk::VLVK_TARGET

#include "simd/blend_by_16.h"    // IWYU pragma: export
#include "simd/scalar/curves.h"  // IWYU pragma: export

#endif
