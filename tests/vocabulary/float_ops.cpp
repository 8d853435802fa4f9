/// Compiled once for each target, with its instructions switched on: VLVK_VOCABULARY is the target's header,
/// VLVK_TARGET a namespace that the library does not use.
#include "tests/vocabulary/float_ops.h"

#include VLVK_VOCABULARY

#include <cstring>

namespace vlvk::VLVK_TARGET {
namespace {

F32x8 loadFloats(const float* from) {
  F32x8 v;
  std::memcpy(&v, from, sizeof v);
  return v;
}

void storeFloats(float* to, const F32x8& v) {
  std::memcpy(to, &v, sizeof v);
}

}  // namespace

extern const FloatOps kFloatOps;
const FloatOps kFloatOps = {
    .name = VLVK_TARGET_NAME,
    .reciprocalEstimate = [](const float* in, float* out) { storeFloats(out, reciprocalEstimate(loadFloats(in))); },
    .reciprocalEstimateOfModest = [](const float* in,
                                     float* out) { storeFloats(out, reciprocalEstimateOfModest(loadFloats(in))); },
    .toFloat = [](const std::uint32_t* in, float* out) { storeFloats(out, toFloat(load8(in))); },
    .toFloatBelow2To31 = [](const std::uint32_t* in, float* out) { storeFloats(out, toFloatBelow2To31(load8(in))); },
    .truncToLowBytes = [](const float* in, std::uint8_t* out) { store(out, truncToLowBytes(loadFloats(in))); },
};

}  // namespace vlvk::VLVK_TARGET
