/// Compiled once for each target, with its instructions switched on: VLVK_VOCABULARY is the target's header,
/// VLVK_TARGET a namespace that the library does not use.
#include "tests/simd/vocabulary_ops.h"

#include VLVK_VOCABULARY

namespace vlvk::VLVK_TARGET {
namespace {

using namespace vocabulary;  // NOLINT(google-build-using-namespace): inside this file's own namespace

struct Memory {
  template <class T, int kLanes>
  static const T* load(const InMemory<T, kLanes>& m) {
    return m.lane;
  }
  static U8x8 load(const Bytes8& m) { return loadU8x8(m.lane); }
  static U8x16 load(const Bytes16& m) { return loadU8x16(m.lane); }
  static U16x8 load(const Words& m) { return load8(m.lane); }
  static U32x8 load(const Dwords& m) { return load8(m.lane); }
  static F32x8 load(const Floats& m) { return load8(m.lane); }

  template <class Out, class V>
  static void save(Out& out, const V& v) {
    store(out.lane, v);
  }
  static void save(Dwords16& out, const PairSteps& v) {
    store(out.lane, v.pair);
    store(out.lane + 8, v.odd);
  }
};

}  // namespace

#define VLVK_INITIALISER(member, operation, ...) \
  {#member, [](auto& out, const auto&... in) { Memory::save(out, operation(Memory::load(in)...)); }},

extern const VocabularyOps kVocabularyOps;
constinit const VocabularyOps kVocabularyOps = {VLVK_TARGET_NAME, VLVK_VOCABULARY_OPERATIONS(VLVK_INITIALISER)};

}  // namespace vlvk::VLVK_TARGET
