#!/usr/bin/env bash
# Compiles and links the whole library for Android without an NDK, warnings being errors, and checks what comes out.
#
#   bash scripts/android_compile.sh [ABI...]     without names arm64-v8a armeabi-v7a x86_64
#
# cmake/toolchains/android_headers.cmake says what stands in for an NDK. Installs nothing; `bash scripts/setup.sh android`
# does. The libraries, build-android-headers/ABI/libVLVKMakeupEngine.so, are for looking at: they load nowhere.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/quietly.sh
export CMAKE_BUILD_PARALLEL_LEVEL="${CMAKE_BUILD_PARALLEL_LEVEL:-$(nproc)}"

# What the library takes from Android's libc, libm and libjnigraphics: all of it is there at API level 21. Look up the
# level of a function before it is added here; the headers of another C library know functions that Android's lacks.
platform=(AndroidBitmap_getInfo AndroidBitmap_lockPixels AndroidBitmap_unlockPixels __sched_cpucount calloc
  clock_gettime exp floor free getpid malloc memcmp memcpy memmove memset mmap munmap nextafterf pthread_cond_broadcast
  pthread_cond_destroy pthread_cond_signal pthread_cond_wait pthread_create pthread_join pthread_mutex_destroy
  pthread_mutex_lock pthread_mutex_unlock pthread_sigmask sched_getaffinity sched_getcpu sched_setaffinity sigdelset
  sigfillset strcmp syscall sysconf vsnprintf)

# Names that the C++ runtime and the compiler's own library have, which an NDK links in.
runtime='^(_Z.*|__cxa_.*|__gxx_personality_v0|_Unwind_.*|__aeabi_.*)$'

abis=("$@")
[ $# -gt 0 ] || abis=(arm64-v8a armeabi-v7a x86_64)
for tool in cmake clang++ ld.lld llvm-nm llvm-readelf; do
  command -v "$tool" >/dev/null || {
    echo "android_compile.sh: $tool is missing; 'bash scripts/setup.sh android' installs what is needed" >&2
    exit 1
  }
done

for abi in "${abis[@]}"; do
  begin=$SECONDS
  folder=build-android-headers/$abi
  quietly cmake -S . -B "$folder" -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/android_headers.cmake -DANDROID_ABI="$abi" \
    -DCMAKE_BUILD_TYPE=Release -DVLVK_WARNINGS_AS_ERRORS=ON -DVLVK_BUILD_TOOLS=OFF -DVLVK_BUILD_TESTS=OFF \
    -DVLVK_BUILD_BENCHMARKS=OFF -DVLVK_BUILD_JAVA=OFF
  quietly cmake --build "$folder" --target VLVKMakeupEngine

  library=$folder/libVLVKMakeupEngine.so
  pointer_bytes=8
  [ "$abi" != armeabi-v7a ] || pointer_bytes=4
  quietly cmake -DNM=llvm-nm -DREADELF=llvm-readelf -DLIBRARY="$library" -DLIST=tests/install/exported_symbols.txt \
    -DPOINTER_BYTES=$pointer_bytes -DSTATIC_RUNTIME=0 -DANDROID_JNI=1 -P tests/install/check_library_file.cmake
  taken=$(llvm-nm -D -j --undefined-only "$library")
  unknown=$(grep -vE "$runtime" <<<"$taken" | grep -vxF "$(printf '%s\n' "${platform[@]}")" || true)
  [ -z "$unknown" ] || {
    echo "android_compile.sh: $abi takes from the platform what this script does not list: ${unknown//$'\n'/, }" >&2
    exit 1
  }
  echo "$abi: compiled, linked and checked in $((SECONDS - begin)) s"
done
