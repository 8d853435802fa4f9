#!/usr/bin/env bash
# Counts the instructions that the hot loops take for a pixel on ARM, and prints them beside what they must not exceed
# and what is aimed at. Fails where one exceeds what it must not.
#
#   bash scripts/arm_instructions.sh
#
# The loops are cross-built and run under an emulator with a counting plugin: twice, so that the difference is free of
# start-up. Sizes and settings stand in bench/arm/count_rows.cpp. Needed are what Debian calls g++-arm-linux-gnueabihf,
# g++-aarch64-linux-gnu and qemu-user.
set -euo pipefail
shopt -s inherit_errexit
cd "$(dirname "$0")/.."
. scripts/quietly.sh
build=build-arm-count

for tool in cc cmake qemu-arm qemu-aarch64 arm-linux-gnueabihf-g++ aarch64-linux-gnu-g++; do
  command -v "$tool" >/dev/null || {
    echo "arm_instructions.sh: $tool is missing; 'bash scripts/setup.sh cross' installs what is needed" >&2
    exit 1
  }
done

# Arguments: CMake's name of the processor, the compiler.
cross_build() {
  cmake -S . -B "$build/$1" -DCMAKE_BUILD_TYPE=Release -DCMAKE_SYSTEM_NAME=Linux -DCMAKE_SYSTEM_PROCESSOR="$1" \
    -DCMAKE_CXX_COMPILER="$2" -DCMAKE_EXE_LINKER_FLAGS=-static -DVLVK_BUILD_TOOLS=OFF -DVLVK_BUILD_TESTS=OFF \
    -DVLVK_BUILD_JAVA=OFF -DVLVK_JNI_BINDINGS=OFF &&
    cmake --build "$build/$1" --parallel "$(nproc)" --target vlvk_count_rows
}

quietly cross_build arm arm-linux-gnueabihf-g++
quietly cross_build aarch64 aarch64-linux-gnu-g++
quietly cc -shared -fPIC -O2 bench/arm/insn_count.c -o "$build/insn_count.so"

# Instructions of a run. Arguments: processor, unit, repetitions.
count() {
  "qemu-$1" -plugin "$build/insn_count.so" -d plugin "$build/$1/vlvk_count_rows" "$2" "$3" 2>&1 >/dev/null |
    sed -n 's/^guest instructions: \([0-9]*\).*/\1/p'
}

# Instructions for a pixel. Arguments: processor, unit.
per_pixel() {
  local pixels once twice
  pixels=$("qemu-$1" "$build/$1/vlvk_count_rows" "$2" 0)
  once=$(count "$1" "$2" 1)
  twice=$(count "$1" "$2" 2)
  [ "${once:-0}" -lt "${twice:-0}" ] || {
    echo "arm_instructions.sh: nothing was counted for $2 on $1; is the emulator's plugin interface another?" >&2
    return 1
  }
  awk -v more="$((twice - once))" -v pixels="$pixels" 'BEGIN { printf "%.2f", more / pixels }'
}

status=0
# Prints a count beside its limits. Arguments: processor, unit, what it must not exceed, what is aimed at; - for none.
show_on() {
  local counted
  counted=$(per_pixel "$1" "$2")
  printf ' %10s %6s %5s' "$counted" "$3" "$4"
  [ "$3" = - ] || awk -v count="$counted" -v must="$3" 'BEGIN { exit count > must }' || status=1
}

# Arguments: unit, its limits on ARMv7, its limits on AArch64.
show() {
  printf '%-16s' "$1"
  show_on arm "$1" "$2" "$3"
  show_on aarch64 "$1" "$4" "$5"
  echo
}

printf '%-16s %10s %6s %5s %10s %6s %5s\n' unit ARMv7 must aim AArch64 must aim
show smoothing 12 11 10.8 10.0
show nv21_to_rgba 2.5 2 - -
show rgba_to_nv21 1.5 1.2 - - # luma and chroma
show table_lookup 5 4 - -
show tone_curves - - 5 3.5
show blend - - - -
show frame_in_place - - - -
exit "$status"
