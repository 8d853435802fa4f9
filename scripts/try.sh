#!/usr/bin/env bash
# Builds the program and beautifies the sample picture: out/portrait-compare.png, original and result side by side.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/quietly.sh

build() {
  cmake -S . -B build-try -DCMAKE_BUILD_TYPE=Release -DVLVK_BUILD_TOOLS=ON -DVLVK_HEIF=ON \
    -DVLVK_VIDEO_FILES=ON \
    -DVLVK_BUILD_TESTS=OFF -DVLVK_BUILD_BENCHMARKS=OFF -DVLVK_BUILD_JAVA=OFF -DVLVK_JNI_BINDINGS=OFF &&
    cmake --build build-try --parallel "$(nproc)"
}

bash scripts/setup.sh program
quietly build
build-try/vlvk-makeup photo samples/portrait.png out/portrait-compare.png --compare
echo "Look at out/portrait-compare.png"
