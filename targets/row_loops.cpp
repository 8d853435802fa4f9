/// Chooses the set of row loops.
#include "targets/row_loops.h"

#include <cstring>

#include "base/shared_field.h"
#include "targets/target_sets.h"

namespace vlvk {

namespace {

/// The choice, made at the first use. Racing threads make the same one.
const RowLoops* chosen = nullptr;

}  // namespace

const RowLoops* const* availableRowLoops(int& count) {
  static constexpr const RowLoops* kSets[] = {&scalar::kRowLoops};
  count = 1;
  return kSets;
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
