#!/usr/bin/env bash
# Runs the fuzzers, each for some time from its inputs in fuzz/corpus, with the address and undefined-behaviour sanitizers.
# Fails at the first finding and says where the input that shows it lies.
#
#   bash scripts/fuzz.sh [SECONDS [NAME...]]
#
# SECONDS for each fuzzer, 20 without; names are those of fuzz/NAME_fuzzer.cpp, all of them without. Needed are what Debian
# calls clang and libclang-rt-14-dev. New inputs gather in build-fuzz/found; to keep those that reach something new, in as
# few bytes as there are:
#
#   build-fuzz/vlvk_fuzz_NAME -merge=1 -use_counters=0 -use_cmp=0 -max_len=400 fuzz/corpus/NAME build-fuzz/found/NAME
#
# The test fuzz.NAME of ctest runs every input in fuzz/corpus/NAME. An input that has shown a fault belongs there, under
# a name that tells which.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/quietly.sh
seconds="${1:-20}"
names=("${@:2}")
[ ${#names[@]} -gt 0 ] || names=(resource_file cube picture y4m frame target makeup)

command -v clang++ >/dev/null || {
  echo "fuzz.sh: clang++ is missing" >&2
  exit 1
}

build() {
  cmake -S . -B build-fuzz -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVLVK_BUILD_FUZZERS=ON \
    -DVLVK_SANITIZE=address,undefined -DVLVK_WARNINGS_AS_ERRORS=ON -DVLVK_BUILD_TOOLS=ON -DVLVK_HEIF=ON \
    -DVLVK_BUILD_TESTS=OFF -DVLVK_BUILD_BENCHMARKS=OFF -DVLVK_BUILD_JAVA=OFF -DVLVK_JNI_BINDINGS=OFF &&
    cmake --build build-fuzz --parallel "${CMAKE_BUILD_PARALLEL_LEVEL:-$(nproc)}" --target "${names[@]/#/vlvk_fuzz_}"
}
quietly build

for name in "${names[@]}"; do
  mkdir -p "build-fuzz/found/$name"
  # A few bytes describe a frame, and pictures are slow long before they are interesting: no long inputs.
  quietly build-fuzz/vlvk_fuzz_"$name" -max_total_time="$seconds" -max_len=2000 -len_control=0 -timeout=30 \
    -rss_limit_mb=3000 -artifact_prefix="build-fuzz/$name-" "build-fuzz/found/$name" "fuzz/corpus/$name" || {
    echo "fuzz.sh: $name has found something, see 'Test unit written to' above; run it again with" >&2
    echo "  build-fuzz/vlvk_fuzz_$name FILE" >&2
    exit 1
  }
  echo "$name: $(sed -n 's/^Done \([0-9]* runs\) in.*/\1/p' "$log") in $seconds s, nothing found"
done
