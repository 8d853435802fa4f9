/// The arithmetic of one target's vector vocabulary as plain functions on lanes in memory, so that the tests themselves
/// need none of the target's instructions. Tests of the kernels give all other operations every input that matters.
#ifndef VLVK_TESTS_SIMD_VOCABULARY_OPS_H
#define VLVK_TESTS_SIMD_VOCABULARY_OPS_H

#include <cstdint>

namespace vocabulary {

/// A vector in memory. No member functions: the linker could keep the copy of a file with instructions that the
/// processor lacks.
template <class T, int kLanes>
struct Lanes {
  T lane[kLanes];
};

using Bytes8 = Lanes<std::uint8_t, 8>;
using Bytes16 = Lanes<std::uint8_t, 16>;
using Dwords = Lanes<std::uint32_t, 8>;
using Floats = Lanes<float, 8>;

template <class Out, class... In>
struct Operation {
  const char* name;
  void (*run)(Out& out, const In&... in);
};

/// X(name of the member, operation, type of the result, types of the arguments ...)
#define VLVK_VOCABULARY_OPERATIONS(X)                                       \
  X(toFloat, toFloat, Floats, Dwords)                                       \
  X(toFloatBelow2To31, toFloatBelow2To31, Floats, Dwords)                   \
  X(addProduct, addProduct, Floats, Floats, Floats, Floats)                 \
  X(subProduct, subProduct, Floats, Floats, Floats, Floats)                 \
  X(div, div, Floats, Floats, Floats)                                       \
  X(min, min, Floats, Floats, Floats)                                       \
  X(max, max, Floats, Floats, Floats)                                       \
  X(reciprocalEstimate, reciprocalEstimate, Floats, Floats)                 \
  X(reciprocalEstimateOfNormal, reciprocalEstimateOfNormal, Floats, Floats) \
  X(truncToLowBytes, truncToLowBytes, Bytes8, Floats)                       \
  X(truncPairsToLowBytes, truncToLowBytes, Bytes16, Floats, Floats)         \
  X(roundHalfUpToLowBytes, roundHalfUpToLowBytes, Bytes8, Floats)

struct VocabularyOps {
  const char* target;
#define VLVK_MEMBER(member, operation, ...) Operation<__VA_ARGS__> member;
  VLVK_VOCABULARY_OPERATIONS(VLVK_MEMBER)
#undef VLVK_MEMBER
};

}  // namespace vocabulary

#endif
