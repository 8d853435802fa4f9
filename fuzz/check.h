/// How a fuzzer ends when it has found something.
#ifndef VLVK_FUZZ_CHECK_H
#define VLVK_FUZZ_CHECK_H

#include <cstdio>
#include <cstdlib>
#include <string>

namespace fuzz {

/// Ends the process with a message, which the fuzzing engine takes as a finding.
[[noreturn]] inline void fail(const std::string& what) {
  std::fprintf(stderr, "%s\n", what.c_str());
  std::abort();
}

inline void check(bool holds, const char* what) {
  if (!holds) fail(what);
}

}  // namespace fuzz

#endif
