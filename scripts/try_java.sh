#!/usr/bin/env bash
# Builds the library and its Java classes, and beautifies the sample picture with them: out/portrait-java*.png.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/quietly.sh

build() {
  cmake -S . -B build-try-java -DCMAKE_BUILD_TYPE=Release -DVLVK_BUILD_JAVA=ON \
    -DVLVK_BUILD_TOOLS=OFF -DVLVK_BUILD_TESTS=OFF -DVLVK_BUILD_BENCHMARKS=OFF &&
    cmake --build build-try-java --parallel "$(nproc)"
}

bash scripts/setup.sh java
quietly build

example() {
  java -Dcom.velmira.VKMakeup.library=build-try-java/libVLVKMakeupEngine.so \
    -cp build-try-java/VLVKMakeupEngine.jar:build-try-java/examples.jar "$@"
}
example BeautifyPicture samples/portrait.png out/portrait-java.png
example BeautifyFrame samples/portrait.png out/portrait-java-pixels.png out/portrait-java-in-place.png
