/// Chooses the set of row loops.
#include "rows/row_loops.h"

#include <cstring>

#include "base/shared_field.h"
#include "rows/target_sets.h"

namespace vlvk {

namespace {

/// The choice, made at the first use. Racing threads make the same one.
const RowLoops* chosen = nullptr;

}  // namespace

const RowLoops* const* availableRowLoops(int& count) {
#if defined(__x86_64__)
  static constexpr const RowLoops* kSets[] = {&avx2::kRowLoops, &sse2::kRowLoops, &scalar::kRowLoops};
  const int missing = __builtin_cpu_supports("avx2") ? 0 : 1;
#elif defined(__ARM_NEON)
  static constexpr const RowLoops* kSets[] = {&neon::kRowLoops, &scalar::kRowLoops};
  constexpr int missing = 0;
#elif defined(__wasm_simd128__)
  static constexpr const RowLoops* kSets[] = {&wasm128::kRowLoops, &scalar::kRowLoops};
  constexpr int missing = 0;
#else
  static constexpr const RowLoops* kSets[] = {&scalar::kRowLoops};
  constexpr int missing = 0;
#endif
  count = static_cast<int>(sizeof kSets / sizeof kSets[0]) - missing;
  return kSets + missing;
}

const RowLoops& rowLoops() {
  const RowLoops* set = loadShared(chosen);
  if (set == nullptr) {
    forceRowLoops(nullptr);
    set = loadShared(chosen);
  }
  return *set;
}

bool forceRowLoops(const char* name) {
  int count = 0;
  const RowLoops* const* sets = availableRowLoops(count);
  for (int i = 0; i < count; ++i) {
    if (name == nullptr || std::strcmp(sets[i]->name, name) == 0) {
      storeShared(chosen, sets[i]);
      return true;
    }
  }
  return false;
}

}  // namespace vlvk
