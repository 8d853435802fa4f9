#!/usr/bin/env bash
# Frames, the Java entry points and a resource's way under valgrind's memcheck: no result depends on a byte that nothing
# wrote, nothing outside of memory is touched, nothing is lost.
#
#   bash scripts/valgrind.sh            as released (the preset release)
#   bash scripts/valgrind.sh PRESET     another build, such as debug, whose reports have line numbers
#
# Every byte that a frame may write is compared with the model, and memcheck reports a comparison that hangs on an
# undefined one: odd sizes, strides wider than rows, every kind of frame, smoothing with and without kernels.
set -euo pipefail
cd "$(dirname "$0")/.."
preset="${1:-release}"

frames='Frame.EveryTinySizeIsSafe:Frame.ColoursFollowTheResource:Frame.RefusedCalls*:Threads/Frames.*/1'
frames+=':Threads/Frames.*/3:*/FramesOfTarget.*:*/BandWorker.*'

checked() {
  valgrind --quiet --error-exitcode=1 --leak-check=full --errors-for-leak-kinds=definite,indirect \
    "build-$preset/$1" --gtest_brief=1 --gtest_filter="$2"
}

if [ ! -f "build-$preset/CMakeCache.txt" ]; then cmake --preset "$preset"; fi
cmake --build --preset "$preset" --target vlvk_tests --target vlvk_bindings_tests
checked vlvk_tests "$frames"
# Not the tests that take all low addresses, where valgrind lives, or ask what is mapped.
checked vlvk_bindings_tests 'Video.*:Resource.*:BitmapTest.*:EngineObject.[WD]*:Handle.OnlyItsLowHalfCounts'
