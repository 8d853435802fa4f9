#!/usr/bin/env bash
# Builds the library and its tests for ARM and runs them in an emulator, or for WebAssembly and runs them in node.
#
#   bash scripts/cross_test.sh [armhf] [aarch64] [wasm] [wasm-scalar]     without names the first two
#
# Installs nothing; `bash scripts/setup.sh cross web` does. The presets of these names do the same.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/quietly.sh
export CMAKE_BUILD_PARALLEL_LEVEL="${CMAKE_BUILD_PARALLEL_LEVEL:-$(nproc)}"
export CTEST_PARALLEL_LEVEL="${CTEST_PARALLEL_LEVEL:-$(nproc)}"

names=("$@")
[ $# -gt 0 ] || names=(armhf aarch64)
for name in "${names[@]}"; do
  case "$name" in
    armhf) tools=(arm-linux-gnueabihf-g++ qemu-arm) ;;
    aarch64) tools=(aarch64-linux-gnu-g++ qemu-aarch64) ;;
    wasm | wasm-scalar) tools=(clang++-19 wasm-ld-19 node) ;;
    *)
      echo "cross_test.sh: no processor '$name'; there are: armhf aarch64 wasm wasm-scalar" >&2
      exit 2
      ;;
  esac
  for tool in cmake "${tools[@]}"; do
    command -v "$tool" >/dev/null || {
      echo "cross_test.sh: $tool is missing; 'bash scripts/setup.sh cross web' installs what is needed" >&2
      exit 1
    }
  done
done

for name in "${names[@]}"; do
  begin=$SECONDS
  quietly cmake --preset "$name"
  quietly cmake --build --preset "$name"
  built=$SECONDS
  quietly ctest --preset "$name"
  echo "$name: $(grep 'tests passed' "$log"), built in $((built - begin)) s, run in $((SECONDS - built)) s"
done
