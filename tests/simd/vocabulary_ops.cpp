/// Compiled once for each target, with its instructions switched on: VLVK_VOCABULARY is the target's header,
/// VLVK_TARGET a namespace that the library does not use.
#include "tests/simd/vocabulary_ops.h"

#include VLVK_VOCABULARY

namespace vlvk::VLVK_TARGET {
namespace {

using namespace vocabulary;  // NOLINT(google-build-using-namespace): inside this file's own namespace

struct Memory {
  static U32x8 load(const Dwords& m) { return load8(m.lane); }
  static F32x8 load(const Floats& m) { return load8(m.lane); }
};

}  // namespace

#define VLVK_INITIALISER(member, operation, ...) \
  {#member, [](auto& out, const auto&... in) { store(out.lane, operation(Memory::load(in)...)); }},

extern const VocabularyOps kVocabularyOps;
constinit const VocabularyOps kVocabularyOps = {VLVK_TARGET_NAME, VLVK_VOCABULARY_OPERATIONS(VLVK_INITIALISER)};

}  // namespace vlvk::VLVK_TARGET
