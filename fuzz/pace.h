/// Keeps a fuzzing engine quick: it tries small things most of the time, and all of a slow kind now and then.
///
/// For the files NAME_fuzzer.cpp alone, which are compiled for the engine and for replays each.
#ifndef VLVK_FUZZ_PACE_H
#define VLVK_FUZZ_PACE_H

#ifdef VLVK_FUZZING_ENGINE
#include <string_view>

namespace fuzz {
inline bool isMerging = false;
}

/// When inputs are chosen for the corpus, each of them runs.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  for (int i = 1; i < *argc; ++i)
    fuzz::isMerging |= std::string_view((*argv)[i]).starts_with("-merge");
  return 0;
}
#endif

namespace fuzz {

/// Whether a slow input runs or is left out: the first one does, so that a finding shows again when it runs alone, and
/// one of 64 that follow. Without an engine all do.
inline bool mayBeSlow() {
#ifdef VLVK_FUZZING_ENGINE
  static int inputs = 0;
  return inputs++ % 64 == 0 || isMerging;
#else
  return true;
#endif
}

}  // namespace fuzz

#endif
