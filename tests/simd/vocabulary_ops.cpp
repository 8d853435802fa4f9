/// Compiled once for each target, with its instructions switched on: VLVK_VOCABULARY is the target's header,
/// VLVK_TARGET a namespace that the library does not use.
#include "tests/simd/vocabulary_ops.h"

#include VLVK_VOCABULARY

#include <cstring>

#include "rows/bt601.h"
#include "rows/pixel_orders.h"

namespace vlvk::VLVK_TARGET {
namespace {

using namespace vocabulary;  // NOLINT(google-build-using-namespace): inside this file's own namespace

/// For vectors without loads or stores of their own. Their bytes lie in lane order.
template <class To, class From>
To sameBytes(const From& from) {
  static_assert(sizeof(To) == sizeof(From));
  To to;
  std::memcpy(&to, &from, sizeof to);
  return to;
}

struct Memory {
  template <class T>
  static T load(const Scalar<T>& m) {
    return m.lane[0];
  }
  template <class T, int kLanes>
  static const T* load(const InMemory<T, kLanes>& m) {
    return m.lane;
  }
  static U8x8 load(const Bytes8& m) { return loadU8x8(m.lane); }
  static U8x16 load(const Bytes16& m) { return loadU8x16(m.lane); }
  static U16x8 load(const Words& m) { return load8(m.lane); }
  static U32x8 load(const Dwords& m) { return load8(m.lane); }
  static F32x8 load(const Floats& m) { return load8(m.lane); }
  /// There is no such load: 1 * low byte + (127 + 129) * high byte.
  static I16x8 load(const Shorts& m) {
    const ChromaPairs bytes = loadChromaPairs(sameBytes<ChromaRow>(m).lane);
    return weightedPairs<0, 129>(bytes, weightedPairs<1, 127>(bytes, splatI16(0)));
  }
  static U8x16x2 load(const ByteRows& m) { return loadRows(m.lane, m.lane + 16); }
  static I16x8x2 load(const ShortRows& m) { return sameBytes<I16x8x2>(m); }

  static void save(Bytes8& m, const U8x8& v) { store(m.lane, v); }
  static void save(Bytes16& m, const U8x16& v) { store(m.lane, v); }
  static void save(Words& m, const U16x8& v) { store(m.lane, v); }
  static void save(Dwords& m, const U32x8& v) { store(m.lane, v); }
  static void save(Floats& m, const F32x8& v) { store(m.lane, v); }
  static void save(Dwords16& m, const PairSteps& v) {
    store(m.lane, v.pair);
    store(m.lane + 8, v.odd);
  }
  static void save(ByteRows& m, const U8x16x2& v) { storeRows(m.lane, m.lane + 16, v); }
  static void save(ShortRows& m, const I16x8x2& v) { m = sameBytes<ShortRows>(v); }
  static void save(ShortRows& m, const I16x8& v) { save(m, bothRows(v)); }
  static void save(ShortRows2& m, const I16x16& v) {
    const I16x8x2 rows[] = {bothRows(v.low), bothRows(v.high)};
    m = sameBytes<ShortRows2>(rows);
  }
};

// What is no single call on vectors.

U8x16 lookupIn(const std::uint8_t* table, U8x16 index) {
  return lookup(loadTable64(table), index);
}
template <int kFirst, int kSecond>
I16x8 weightedChroma(const std::uint8_t* pairs, I16x8 offset) {
  return weightedPairs<kFirst, kSecond>(loadChromaPairs(pairs), offset);
}
template <PixelOrder kPixels>
constexpr ChannelWeights rounded(const RgbWeights& k, int offset) {
  return {kPixels == kRgba ? k.red : k.blue, k.green, kPixels == kRgba ? k.blue : k.red, offset * 256 + 128};
}
template <PixelOrder kPixels>
U8x16 lumaOf(const std::uint8_t* pixels) {
  return weightedChannels<rounded<kPixels>(kRgbToLuma, kLumaOffset)>(loadPixels16(pixels));
}
template <ChromaOrder kChroma, PixelOrder kPixels>
void chromaOf(std::uint8_t* to, const std::uint8_t* pixels) {
  constexpr ChannelWeights kU = rounded<kPixels>(kRgbToU, kChromaOffset);
  constexpr ChannelWeights kV = rounded<kPixels>(kRgbToV, kChromaOffset);
  storeWeightedPairs<kChroma == kVThenU ? kV : kU, kChroma == kVThenU ? kU : kV>(to, evenPixels(loadPixels16(pixels)));
}
template <PixelOrder kPixels>
void colorIndices(std::uint32_t* to, const std::uint8_t* pixels) {
  storeColorIndices<kPixels == kRgba ? 0 : 2, kPixels == kRgba ? 2 : 0>(to, loadPixels16(pixels));
}
void storePixelRows(std::uint8_t* to, U8x16x2 c0, U8x16x2 c1, U8x16x2 c2, U8x16x2 c3) {
  storePixels(to, to + 64, c0, c1, c2, c3);
}

}  // namespace

// Loads the arguments, stores the result where the operation does not.
#define VLVK_INITIALISER(member, operation, ...)                             \
  {#member, [](auto& out, const auto&... in) {                               \
     if constexpr (requires { operation(out.lane, Memory::load(in)...); }) { \
       operation(out.lane, Memory::load(in)...);                             \
     } else {                                                                \
       Memory::save(out, operation(Memory::load(in)...));                    \
     }                                                                       \
   }},

extern const VocabularyOps kVocabularyOps;
constinit const VocabularyOps kVocabularyOps = {VLVK_TARGET_NAME, VLVK_VOCABULARY_OPERATIONS(VLVK_INITIALISER)};

}  // namespace vlvk::VLVK_TARGET
