#!/usr/bin/env bash
# Tests and checks of the whole project.
#
#   bash scripts/test.sh             the first step below, called quick as well: what a change is tried with
#   bash scripts/test.sh all         every step: what must pass
#   bash scripts/test.sh STEP...     some steps
#
#   release   build with optimisation, warnings being errors, and run the tests, on every target of this processor
#   bench     build the benchmarks, with those of other libraries, and run some for a moment
#   sample    build the program and beautify the sample picture
#   java      build the Java classes, their pages and the Java example, and beautify the sample picture with it
#   video     beautify clips of many kinds and check what comes out, and the lines of docs/video.md
#   plugins   run the plugins in their hosts, with the pipelines of docs/plugins.md
#   readme    compile and run the examples of the README
#   asan      build with the address and undefined-behaviour sanitizers and run the tests
#   tsan      build with the thread sanitizer and run the tests
#   valgrind  frames and the Java entry points under memcheck, as released
#   fuzz      every fuzzer for some seconds, with clang's address and undefined-behaviour sanitizers
#   armhf     build for ARMv7 and run the tests in an emulator
#   aarch64   the same for AArch64
#   android   compile the library for Android without an NDK, make a package of stand-ins for its libraries, and compile
#             the Java lines of docs/android.md
#   web       build and test the engine as WebAssembly, make its npm package, and try that in node, Chromium and Firefox
#   format    layout of the sources (clang-format)
#   tidy      lint of the sources (clang-tidy)
#   docs      make the pages of the public headers, every name described, and follow the links of all pages
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/quietly.sh
export CMAKE_BUILD_PARALLEL_LEVEL="${CMAKE_BUILD_PARALLEL_LEVEL:-$(nproc)}"
export CTEST_PARALLEL_LEVEL="${CTEST_PARALLEL_LEVEL:-$(nproc)}"

all_steps=(release bench sample java video plugins readme asan tsan valgrind fuzz armhf aarch64 android web format tidy docs)

# Sanitizers lay out memory themselves, which some kernels' address randomisation gets in the way of.
fixed_addresses() {
  if setarch -R true 2>/dev/null; then setarch -R "$@"; else "$@"; fi
}

build() {
  quietly cmake --preset "$1"
  quietly fixed_addresses cmake --build --preset "$1"
}

build_and_test() {
  build "$1"
  quietly fixed_addresses ctest --preset "$1"
  sed -n '/tests passed/,$p' "$log"
}

step_release() { build_and_test release; }
step_bench() {
  quietly cmake --preset release -DVLVK_BUILD_BENCHMARKS=ON
  quietly cmake --build --preset release --target vlvk_bench vlvk_java_bench
  quietly build-release/vlvk_bench --size=64x64 --benchmark_filter='^frame/in_place/' --benchmark_min_time=0.001
  grep -q '^frame/in_place/' "$log"
  quietly build-release/vlvk_java_bench --size=64x64
  grep -q '^java/pack_and_process_by_in_place/.* ratio=' "$log"
}
step_sample() { bash scripts/try.sh; }
step_java() {
  bash scripts/try_java.sh
  quietly cmake --build build-try-java --target vlvk_javadoc
}
step_video() { bash scripts/try_video.sh; }
step_plugins() {
  bash scripts/try_gstreamer.sh
  bash scripts/try_frei0r.sh
}
step_readme() {
  quietly cmake --preset release
  quietly cmake --build --preset release --target VLVKMakeupEngine
  bash scripts/check_readme.sh
}
step_asan() { build_and_test asan; }
step_tsan() { build_and_test tsan; }
step_valgrind() { quietly bash scripts/valgrind.sh; }
step_fuzz() { bash scripts/fuzz.sh 10; }
step_armhf() { bash scripts/cross_test.sh armhf; }
step_aarch64() { bash scripts/cross_test.sh aarch64; }
step_android() {
  bash scripts/android_compile.sh
  bash tests/install/android_package.sh
  bash scripts/check_android_page.sh
}
step_web() {
  bash scripts/cross_test.sh wasm wasm-scalar
  bash scripts/web_package.sh out/web
  quietly timeout --kill-after=10 120 npm --prefix web test
  bash scripts/try_web_browsers.sh
}
step_format() { bash scripts/format.sh --check; }
step_tidy() {
  quietly cmake --preset release
  bash scripts/tidy.sh
}
step_docs() {
  bash scripts/check_links.sh
  quietly cmake --preset release
  quietly cmake --build --preset release --target vlvk_api_docs
}

steps=("$@")
case "$*" in
  all) steps=("${all_steps[@]}") ;;
  '' | quick) steps=(release) ;;
esac
for step in "${steps[@]}"; do
  [[ " ${all_steps[*]} " == *" $step "* ]] || {
    echo "test.sh: no step '$step'; there are ${all_steps[*]}; all and quick stand alone" >&2
    exit 2
  }
done

purposes=(program test)
needs() { # PURPOSE STEP...
  for step in "${@:2}"; do
    [[ " ${steps[*]} " != *" $step "* ]] || purposes+=("$1")
  done
}
needs bench bench
needs video video web
needs plugins plugins
needs check format tidy
needs valgrind valgrind
needs fuzz fuzz
needs cross armhf aarch64
needs android android
needs web web
needs browsers web
needs docs docs
bash scripts/setup.sh "${purposes[@]}"
for step in "${steps[@]}"; do
  echo "== $step"
  begin=$SECONDS
  "step_$step"
  echo "== $step passed ($((SECONDS - begin)) s)"
done
echo "All steps passed: ${steps[*]}"
