#!/usr/bin/env bash
# Builds the library and its Java classes, and beautifies the sample picture with them: out/portrait-java.png.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh java
mkdir -p out
{
  cmake -S . -B build-try-java -DCMAKE_BUILD_TYPE=Release \
    -DVLVK_BUILD_TOOLS=OFF -DVLVK_BUILD_TESTS=OFF -DVLVK_BUILD_BENCHMARKS=OFF
  cmake --build build-try-java --parallel "$(nproc)"
} >out/try_java.log 2>&1 || {
  cat out/try_java.log >&2
  exit 1
}
java -Dcom.velmira.VKMakeup.library=build-try-java/libVLVKMakeupEngine.so \
  -cp build-try-java/VLVKMakeupEngine.jar:build-try-java/BeautifyPicture.jar \
  BeautifyPicture samples/portrait.png out/portrait-java.png
