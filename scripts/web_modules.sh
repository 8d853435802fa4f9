#!/usr/bin/env bash
# Builds both WebAssembly modules of the package, with vectors and without: web/src/simd.wasm, web/src/scalar.wasm.
#
#   bash scripts/web_modules.sh
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/quietly.sh

bash scripts/setup.sh web
for preset in wasm wasm-scalar; do
  quietly cmake --preset "$preset"
  quietly cmake --build --preset "$preset" --parallel "$(nproc)" --target vlvk_web_module
done
# Renamed into place, because a page may be served from there.
for module in build-wasm/simd.wasm build-wasm-scalar/scalar.wasm; do
  install -m 644 "$module" "web/src/.${module##*/}"
  mv "web/src/.${module##*/}" "web/src/${module##*/}"
done
