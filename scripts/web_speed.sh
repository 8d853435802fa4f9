#!/usr/bin/env bash
# How fast the engine is as WebAssembly, in node: the module with vectors against the native engine with SSE2, and against
# the module without. Ratios of medians, in turns, on one processor.
#
#   bash scripts/web_speed.sh [WIDTH HEIGHT]     1280 720 without
#
# Installs nothing; `bash scripts/setup.sh bench web` does.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/quietly.sh

for preset in release wasm wasm-scalar; do
  quietly cmake --preset "$preset"
  quietly cmake --build --preset "$preset" --parallel "$(nproc)" --target vlvk_frame_times
done
pin=()
if taskset -c 1 true 2>/dev/null; then pin=(taskset -c 1); fi
"${pin[@]}" node bench/web/ratios.mjs build-release/vlvk_frame_times build-wasm/vlvk_frame_times \
  build-wasm-scalar/vlvk_frame_times "$@"
