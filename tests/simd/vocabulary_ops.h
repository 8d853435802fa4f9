/// The vector vocabulary of one target as plain functions on lanes in memory, so that the tests themselves need none of
/// the target's instructions.
#ifndef VLVK_TESTS_SIMD_VOCABULARY_OPS_H
#define VLVK_TESTS_SIMD_VOCABULARY_OPS_H

#include <cstdint>

namespace vocabulary {

/// A vector in memory. One lane alone stands for a scalar argument; `kInMemory` lanes reach the operation as a pointer.
/// No member functions: the linker could keep the copy of a file with instructions that the processor lacks.
template <class T, int kLanes, bool kInMemory = false>
struct Lanes {
  T lane[kLanes];
};
template <class T>
using Scalar = Lanes<T, 1>;
template <class T, int kLanes>
using InMemory = Lanes<T, kLanes, true>;

using Bytes8 = Lanes<std::uint8_t, 8>;
using Bytes16 = Lanes<std::uint8_t, 16>;
using Words = Lanes<std::uint16_t, 8>;
using Shorts = Lanes<std::int16_t, 8>;
using Dwords = Lanes<std::uint32_t, 8>;
using Dwords16 = Lanes<std::uint32_t, 16>;
using Floats = Lanes<float, 8>;
/// The upper row, then the lower one.
using ByteRows = Lanes<std::uint8_t, 32>;
using ShortRows = Lanes<std::int16_t, 16>;
/// Two such pairs of rows.
using ShortRows2 = Lanes<std::int16_t, 32>;
using Bytes64 = InMemory<std::uint8_t, 64>;
using ChromaRow = InMemory<std::uint8_t, 16>;
using PixelRows = Lanes<std::uint8_t, 128>;

template <class Out, class... In>
struct Operation {
  const char* name;
  void (*run)(Out& out, const In&... in);
};

/// X(name of the member, operation, type of the result, types of the arguments ...). Every load and store is part of
/// some.
#define VLVK_VOCABULARY_OPERATIONS(X)                                                                 \
  X(splatWord, splat8, Words, Scalar<std::uint16_t>)                                                  \
  X(splatDword, splat8, Dwords, Scalar<std::uint32_t>)                                                \
  X(splatFloat, splat8, Floats, Scalar<float>)                                                        \
  X(loadLow8, loadLow8, Dwords, InMemory<std::uint64_t, 8>)                                           \
  X(addDifference, addDifference, Words, Words, Bytes8, Bytes8)                                       \
  X(addSquareDifference, addSquareDifference, Dwords, Dwords, Bytes8, Bytes8)                         \
  X(differenceWiden, differenceWiden, Dwords, Words, Words)                                           \
  X(addDwords, add, Dwords, Dwords, Dwords)                                                           \
  X(subDwords, sub, Dwords, Dwords, Dwords)                                                           \
  X(joinHalves, joinHalves, Dwords, Dwords, Dwords)                                                   \
  X(prefixSum, prefixSum, Dwords, Dwords)                                                             \
  X(splatLast, splatLast, Dwords, Dwords)                                                             \
  X(pairStepsOfWords, pairSteps, Dwords16, InMemory<std::uint16_t, 16>, InMemory<std::uint16_t, 16>)  \
  X(pairStepsOfDwords, pairSteps, Dwords16, InMemory<std::uint32_t, 16>, InMemory<std::uint32_t, 16>) \
  X(toFloat, toFloat, Floats, Dwords)                                                                 \
  X(toFloatBelow2To31, toFloatBelow2To31, Floats, Dwords)                                             \
  X(bytesToFloat, toFloat, Floats, Bytes8)                                                            \
  X(toFloatEven, toFloatEven, Floats, Bytes16)                                                        \
  X(toFloatOdd, toFloatOdd, Floats, Bytes16)                                                          \
  X(addFloats, add, Floats, Floats, Floats)                                                           \
  X(subFloats, sub, Floats, Floats, Floats)                                                           \
  X(mulFloats, mul, Floats, Floats, Floats)                                                           \
  X(addProduct, addProduct, Floats, Floats, Floats, Floats)                                           \
  X(subProduct, subProduct, Floats, Floats, Floats, Floats)                                           \
  X(reciprocalEstimate, reciprocalEstimate, Floats, Floats)                                           \
  X(reciprocalEstimateOfNormal, reciprocalEstimateOfNormal, Floats, Floats)                           \
  X(truncToLowBytes, truncToLowBytes, Bytes8, Floats)                                                 \
  X(truncPairsToLowBytes, truncToLowBytes, Bytes16, Floats, Floats)                                   \
  X(splatPair16, splatPair16, Bytes16, Scalar<std::uint8_t>, Scalar<std::uint8_t>)                    \
  X(absDifference, absDifference, Bytes16, Bytes16, Bytes16)                                          \
  X(lookup, lookupIn, Bytes16, Bytes64, Bytes16)                                                      \
  X(mulPairsShift6, mulPairsShift6, Bytes16, Bytes16)                                                 \
  X(mixBy64ths, mixBy64ths, ByteRows, ByteRows, ByteRows, Bytes16)                                    \
  X(splatRows, splatRows, ByteRows, Scalar<std::uint8_t>)                                             \
  X(bothRows, bothRows, ShortRows, Shorts)                                                            \
  X(splatI16, splatI16, ShortRows, Scalar<std::int16_t>)                                              \
  X(redOfVu, (weightedChroma<kYuvToRgb.redV, 0>), ShortRows, ChromaRow, Shorts)                       \
  X(redOfUv, (weightedChroma<0, kYuvToRgb.redV>), ShortRows, ChromaRow, Shorts)                       \
  X(greenOfVu, (weightedChroma<kYuvToRgb.greenV, kYuvToRgb.greenU>), ShortRows, ChromaRow, Shorts)    \
  X(greenOfUv, (weightedChroma<kYuvToRgb.greenU, kYuvToRgb.greenV>), ShortRows, ChromaRow, Shorts)    \
  X(blueOfVu, (weightedChroma<0, kYuvToRgb.blueU>), ShortRows, ChromaRow, Shorts)                     \
  X(blueOfUv, (weightedChroma<kYuvToRgb.blueU, 0>), ShortRows, ChromaRow, Shorts)                     \
  X(duplicateEach, duplicateEach, ShortRows2, Shorts)                                                 \
  X(duplicateFours, duplicateFours, ShortRows2, Shorts)                                               \
  X(mulWidenLow, mulWidenLow, ShortRows, ByteRows, Scalar<std::uint8_t>)                              \
  X(mulWidenHigh, mulWidenHigh, ShortRows, ByteRows, Scalar<std::uint8_t>)                            \
  X(addShortRows, add, ShortRows, ShortRows, ShortRows)                                               \
  X(addShortRowsSat, addSat, ShortRows, ShortRows, ShortRows)                                         \
  X(roundShiftNarrowSat, roundShiftNarrowSat<6>, ByteRows, ShortRows, ShortRows)                      \
  X(storePixels, storePixelRows, PixelRows, ByteRows, ByteRows, ByteRows, ByteRows)                   \
  X(lumaOfRgba, lumaOf<kRgba>, Bytes16, Bytes64)                                                      \
  X(lumaOfBgra, lumaOf<kBgra>, Bytes16, Bytes64)                                                      \
  X(vuOfRgba, (chromaOf<kVThenU, kRgba>), Bytes16, Bytes64)                                           \
  X(vuOfBgra, (chromaOf<kVThenU, kBgra>), Bytes16, Bytes64)                                           \
  X(uvOfRgba, (chromaOf<kUThenV, kRgba>), Bytes16, Bytes64)                                           \
  X(uvOfBgra, (chromaOf<kUThenV, kBgra>), Bytes16, Bytes64)                                           \
  X(colorIndicesOfRgba, colorIndices<kRgba>, Dwords16, Bytes64)                                       \
  X(colorIndicesOfBgra, colorIndices<kBgra>, Dwords16, Bytes64)

struct VocabularyOps {
  const char* target;
#define VLVK_MEMBER(member, operation, ...) Operation<__VA_ARGS__> member;
  VLVK_VOCABULARY_OPERATIONS(VLVK_MEMBER)
#undef VLVK_MEMBER
};

}  // namespace vocabulary

#endif
