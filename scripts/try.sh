#!/usr/bin/env bash
# Builds the program and beautifies the sample picture: out/portrait-compare.png, original and result side by side.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh program
mkdir -p out
{
  cmake -S . -B build-try -DCMAKE_BUILD_TYPE=Release \
    -DVLVK_BUILD_TESTS=OFF -DVLVK_BUILD_BENCHMARKS=OFF -DVLVK_BUILD_JAVA=OFF
  cmake --build build-try --parallel "$(nproc)"
} >out/try.log 2>&1 || {
  cat out/try.log >&2
  exit 1
}
build-try/vlvk-makeup photo samples/portrait.png out/portrait-compare.png --compare
echo "Look at out/portrait-compare.png"
